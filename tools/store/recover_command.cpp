// zp store recover: a new store from the block headers of one whose index is lost, stale or damaged.

#include <filesystem>
#include <map>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/object_json.h"
#include "tools/records/payload.h"
#include "tools/store/exchange.h"
#include "tools/store/session.h"
#include "tools/store/store_commands.h"
#include "tools/store/survey.h"

namespace {

struct RecoverArguments : StoreArguments {
  std::string m_strTo;
};

struct Verdict {
  enum State { Kept, Suspect, Lost };

  int m_nID;
  State m_State;
  unsigned long long m_nPosition;
  std::string m_strWhy;
  zp::RecordBlock m_Block;
};

constexpr char const * stateNames[] = {"kept", "suspect", "lost"};

class Recovery {
 public:
  explicit Recovery(StoreNames const & names) : m_Names(names) {}

  void Examine()
  {
    OpenRecordFile(m_File, m_Names, StoreAccess::Read);
    m_Index = ReadIndex(m_Names.m_strIndex);
    m_Survey = SurveyRecordFile(m_File, m_Index);
    Progress progress("examining", m_Survey.m_nFileLength);
    for (SurveyBlock const & at : m_Survey.m_Blocks) {
      progress.Reach(at.m_Block.nPosition);
      if (!at.m_Block.bFree) Judge(at);
    }
    AddMissing();
  }

  std::vector<Verdict> const & GetVerdicts() const { return m_Verdicts; }

  // What is said of the header object; empty if it was found.
  std::string HeaderLoss() const
  {
    if (m_Index.m_bHeaderRead) return "";
    if (m_Index.m_State == StoreIndex::Missing) return "there is no index file to take it from";
    return m_Index.m_strProblem;
  }

  size_t Count(Verdict::State state) const
  {
    size_t count = 0;
    for (Verdict const & verdict : m_Verdicts) count += verdict.m_State == state ? 1 : 0;
    return count;
  }

  // Stores what isn't lost in new files. False after Ctrl-C.
  bool Write(StoreNames const & to)
  {
    StoreSession session(to, StoreAccess::Create);
    if (m_Index.m_bHeaderRead) session.SetHeader(std::move(m_Index.m_pHeader));
    bool const whole = ForEachStep("recovering", m_Verdicts.size(), [&](size_t i) {
      Verdict const & verdict = m_Verdicts[i];
      if (verdict.m_State != Verdict::Lost) session.Store(verdict.m_nID, ReadPayload(m_File, verdict.m_Block));
    });
    session.Close();
    return whole;
  }

 private:
  LiveEntry const * EntryOf(int id) const
  {
    for (LiveEntry const & entry : m_Index.m_Live) {
      if (entry.m_nRecID == id) return &entry;
    }
    return nullptr;
  }

  // Of two blocks of one id the one that the index has is the record, else the first one.
  void Judge(SurveyBlock const & at)
  {
    Verdict verdict = JudgeBlock(at);
    auto const [former, isNew] = m_Places.try_emplace(verdict.m_nID, m_Verdicts.size());
    if (!isNew && verdict.m_State != Verdict::Lost) {
      Verdict & other = m_Verdicts[former->second];
      LiveEntry const * const entry = EntryOf(verdict.m_nID);
      bool const wins = other.m_State == Verdict::Lost || (entry != nullptr && entry->m_nPosition == verdict.m_nPosition);
      Verdict & loser = wins ? other : verdict;
      if (loser.m_State != Verdict::Lost) {
        loser.m_State = Verdict::Lost;
        loser.m_strWhy = fmt::format("another block of this id stands at {}", (wins ? verdict : other).m_nPosition);
      }
      if (wins) former->second = m_Verdicts.size();
    }
    m_Verdicts.push_back(std::move(verdict));
  }

  Verdict JudgeBlock(SurveyBlock const & at) const
  {
    zp::RecordBlock const & block = at.m_Block;
    Verdict verdict = {block.nRecID, Verdict::Kept, block.nPosition, "", block};
    if (block.nLength == 0) return Lose(verdict, "it has no bytes");
    std::vector<BYTE> const bytes = ReadPayload(m_File, block);
    if (block.nLength > block.nCapacity && !Repair(verdict)) {
      return Lose(verdict, fmt::format("its length {} is above the capacity {}", block.nLength, block.nCapacity));
    }
    if (block.nLength <= block.nCapacity && bytes.size() < block.nLength) {
      return Lose(verdict, fmt::format("the file ends after {} of its {} bytes", bytes.size(), block.nLength));
    }
    Payload const payload = DecodePayload(ReadPayload(m_File, verdict.m_Block));
    if (payload.m_State == Payload::Damaged) {
      verdict.m_State = Verdict::Suspect;
      verdict.m_strWhy = fmt::format("its {} is unreadable: {}", payload.m_strClass, payload.m_strProblem);
    } else if (!at.m_bTrusted) {
      verdict.m_State = Verdict::Suspect;
      verdict.m_strWhy = "it stands behind a break of the chain";
    }
    return verdict;
  }

  // A capacity word that is too small, where the index and the header agree on the length.
  bool Repair(Verdict & verdict) const
  {
    LiveEntry const * const entry = EntryOf(verdict.m_nID);
    if (entry == nullptr || entry->m_nPosition != verdict.m_nPosition || entry->m_nLength != verdict.m_Block.nLength)
      return false;
    verdict.m_Block.nCapacity = verdict.m_Block.nLength;
    return true;
  }

  static Verdict Lose(Verdict verdict, std::string why)
  {
    verdict.m_State = Verdict::Lost;
    verdict.m_strWhy = std::move(why);
    return verdict;
  }

  // Records that the index has and no block is.
  void AddMissing()
  {
    for (LiveEntry const & entry : m_Index.m_Live) {
      if (m_Places.contains(entry.m_nRecID)) continue;
      m_Verdicts.push_back(
          {entry.m_nRecID, Verdict::Lost, entry.m_nPosition, "the index has it, but no live block of that id is left", {}});
      m_Places.emplace(entry.m_nRecID, m_Verdicts.size() - 1);
    }
  }

  StoreNames m_Names;
  CFile m_File;
  StoreIndex m_Index;
  Survey m_Survey;
  std::vector<Verdict> m_Verdicts;
  std::map<int, size_t> m_Places;  // of each id's record among the verdicts
};

void printVerdicts(Recovery const & recovery)
{
  for (Verdict const & verdict : recovery.GetVerdicts()) {
    Print(fmt::format("{:<7}  record {:>5}  at {:>9}  {:>5} bytes{}{}\n", stateNames[verdict.m_State], verdict.m_nID,
                      verdict.m_nPosition, verdict.m_Block.nLength, verdict.m_strWhy.empty() ? "" : "  ", verdict.m_strWhy));
  }
  if (!recovery.HeaderLoss().empty()) Print("lost     the header object: " + recovery.HeaderLoss() + "\n");
  Print(fmt::format("{} kept, {} suspect, {} lost\n", recovery.Count(Verdict::Kept), recovery.Count(Verdict::Suspect),
                    recovery.Count(Verdict::Lost)));
}

void printVerdictsAsJson(Recovery const & recovery, std::string const & to)
{
  Json json = {{"records", Json::array()}, {"header_lost", !recovery.HeaderLoss().empty()}, {"written_to", to}};
  for (Verdict const & verdict : recovery.GetVerdicts()) {
    json["records"].push_back({{"id", verdict.m_nID},
                               {"state", stateNames[verdict.m_State]},
                               {"position", verdict.m_nPosition},
                               {"bytes", verdict.m_Block.nLength},
                               {"why", verdict.m_strWhy}});
  }
  Print(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

StoreNames newStore(StoreNames const & from, std::string const & name)
{
  StoreNames const to = ResolveStore(name, "");
  for (std::string const & file : {to.m_strIndex, to.m_strRecord}) {
    if (FileExists(file) || file == from.m_strIndex || file == from.m_strRecord) {
      throw Failure(fmt::format("{}: exists; recovery writes new files only, so name others", file));
    }
  }
  return to;
}

void recover(RecoverArguments const & arguments, int & status)
{
  StoreNames const names = arguments.GetNames();
  RequireNoSwap(names);
  StoreNames const to = arguments.m_strTo.empty() ? StoreNames() : newStore(names, arguments.m_strTo);
  Recovery recovery(names);
  recovery.Examine();
  arguments.m_bJson ? printVerdictsAsJson(recovery, to.m_strIndex) : printVerdicts(recovery);
  bool const whole = recovery.Count(Verdict::Kept) == recovery.GetVerdicts().size() && recovery.HeaderLoss().empty();
  status = whole ? exitDone : exitWanting;
  if (arguments.m_strTo.empty()) {
    if (!arguments.m_bJson) Print("nothing was written; --to NEW writes what is kept and suspect into new files\n");
    return;
  }
  InterruptGuard const guard;
  if (recovery.Write(to)) {
    if (!arguments.m_bJson) Print(fmt::format("written to {} and {}\n", to.m_strIndex, to.m_strRecord));
    return;
  }
  std::filesystem::remove(to.m_strIndex);
  std::filesystem::remove(to.m_strRecord);
  status = exitInterrupted;
}

}  // namespace

void AddRecoverCommand(CLI::App & store, int & status)
{
  auto const arguments = std::make_shared<RecoverArguments>();
  CLI::App * const command =
      AddStoreCommand(store, *arguments, "recover", "Tell what the block headers still hold, and with --to save it in new files");
  command->add_option("--to", arguments->m_strTo, "Stem of the new files; without it nothing is written");
  command->callback([arguments, &status] { recover(*arguments, status); });
}
