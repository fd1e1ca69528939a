// zp store recover: a new store from the block headers of one whose index is lost, stale or damaged.

#include "tools/interrupt_guard.h"
#include "tools/store/store_arguments.h"

#include <unordered_map>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/json_pieces.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/payload.h"
#include "tools/store/block_survey.h"
#include "tools/store/store_writer.h"

namespace {

struct Verdict {
  enum State { Kept, Suspect, Lost };

  int id;
  State state;
  unsigned long long position;
  std::string why;
  zp::RecordBlock block;
};

constexpr char const * stateNames[] = {"kept", "suspect", "lost"};

class Recovery {
 public:
  explicit Recovery(StoreNames const & names) : m_Store(names, StoreAccess::Look), m_Index(m_Store.GetIndex())
  {
    for (LiveEntry const & entry : m_Index.live) m_Entries.try_emplace(entry.id, &entry);
  }

  void Examine()
  {
    m_Survey = SurveyRecordFile(m_Store.GetRecordFile(), m_Index);
    Progress progress("examining", m_Survey.fileLength);
    for (SurveyBlock const & at : m_Survey.blocks) {
      progress.Reach(at.block.position);
      if (!at.block.isFree) Judge(at);
    }
    AddMissing();
  }

  std::vector<Verdict> const & GetVerdicts() const { return m_Verdicts; }

  // What is said of the header object; empty if it was found.
  std::string HeaderLoss() const
  {
    if (m_Index.isHeaderRead) return "";
    if (m_Index.state == StoreIndex::Missing) return "there is no index file to take it from";
    return m_Index.problem;
  }

  size_t Count(Verdict::State state) const
  {
    size_t count = 0;
    for (Verdict const & verdict : m_Verdicts) count += verdict.state == state ? 1 : 0;
    return count;
  }

  // By Write; without any there are no new files.
  size_t GetWritten() const { return m_nWritten; }

  // Stores in new files what is kept, and what is suspect unless that is to be left. False after Ctrl-C.
  bool Write(StoreNames const & to, bool leaveSuspect)
  {
    StoreWriter writer(to, StoreAccess::Create);
    if (m_Index.isHeaderRead) writer.SetHeader(std::move(m_Index.header));
    bool const whole = ForEachStep("recovering", m_Verdicts.size(), [&](size_t i) {
      Verdict const & verdict = m_Verdicts[i];
      bool const isWanted = verdict.state == Verdict::Kept || (verdict.state == Verdict::Suspect && !leaveSuspect);
      if (!isWanted) return;
      writer.Store(verdict.id, ReadPayload(m_Store.GetRecordFile(), verdict.block));
      ++m_nWritten;
    });
    writer.Close();
    return whole;
  }

 private:
  LiveEntry const * EntryOf(int id) const
  {
    auto const found = m_Entries.find(id);
    return found != m_Entries.end() ? found->second : nullptr;
  }

  bool IsIndexed(Verdict const & verdict) const
  {
    LiveEntry const * const entry = EntryOf(verdict.id);
    return entry != nullptr && entry->position == verdict.position;
  }

  // Of two blocks of one id the one that is proved is the record, then the one that the index has, else the first one.
  void Judge(SurveyBlock const & at)
  {
    Verdict verdict = JudgeBlock(at);
    auto const [former, isNew] = m_Places.try_emplace(verdict.id, m_Verdicts.size());
    if (!isNew && verdict.state != Verdict::Lost) {
      Verdict & other = m_Verdicts[former->second];
      bool const wins = other.state != verdict.state ? verdict.state < other.state : IsIndexed(verdict);
      Verdict & loser = wins ? other : verdict;
      if (loser.state != Verdict::Lost) {
        loser.state = Verdict::Lost;
        loser.why = fmt::format("another block of this id stands at {}", (wins ? verdict : other).position);
      }
      if (wins) former->second = m_Verdicts.size();
    }
    m_Verdicts.push_back(std::move(verdict));
  }

  // Lost is a block whose bytes aren't all there, suspect one whose bytes are but may not be what counts.
  Verdict JudgeBlock(SurveyBlock const & at) const
  {
    zp::RecordBlock const & block = at.block;
    Verdict verdict = {block.id, Verdict::Kept, block.position, "", block};
    std::vector<BYTE> const bytes = ReadPayload(m_Store.GetRecordFile(), block);
    if (block.length > block.capacity && !Repair(verdict)) {
      return Lose(verdict, fmt::format("its length {} is above the capacity {}", block.length, block.capacity));
    }
    if (block.length <= block.capacity && bytes.size() < block.length) {
      return Lose(verdict, fmt::format("the file ends after {} of its {} bytes", bytes.size(), block.length));
    }
    Payload const payload = DecodePayload(ReadPayload(m_Store.GetRecordFile(), verdict.block));
    if (payload.state == Payload::Damaged) {
      verdict.state = Verdict::Suspect;
      verdict.why = fmt::format("its {} is unreadable: {}", payload.className, payload.problem);
    } else if (!at.isTrusted) {
      verdict.state = Verdict::Suspect;
      verdict.why = "it stands where the chain of blocks breaks";
    }
    return verdict;
  }

  // A capacity word that is too small, where the index and the header agree on the length.
  bool Repair(Verdict & verdict) const
  {
    if (!IsIndexed(verdict) || EntryOf(verdict.id)->length != verdict.block.length) return false;
    verdict.block.capacity = verdict.block.length;
    return true;
  }

  static Verdict Lose(Verdict verdict, std::string why)
  {
    verdict.state = Verdict::Lost;
    verdict.why = std::move(why);
    return verdict;
  }

  // Records that the index has and no block is.
  void AddMissing()
  {
    for (LiveEntry const & entry : m_Index.live) {
      if (m_Places.contains(entry.id)) continue;
      m_Verdicts.push_back(
          {entry.id,
           Verdict::Lost,
           entry.position,
           entry.HasPlace() ? "the index has it, but no live block of that id is left" : "its bytes never reached the file",
           {}});
      m_Places.emplace(entry.id, m_Verdicts.size() - 1);
    }
  }

  OpenStore m_Store;
  StoreIndex & m_Index;
  Survey m_Survey;
  size_t m_nWritten = 0;
  std::vector<Verdict> m_Verdicts;
  std::unordered_map<int, LiveEntry const *> m_Entries;  // of the index, by id
  std::unordered_map<int, size_t> m_Places;              // of each id's record among the verdicts
};

void printEach(std::vector<Verdict> const & verdicts)
{
  for (Verdict const & verdict : verdicts) {
    PrintLine(fmt::format("{:<7}  record {:>5}  at {:>9}  {:>5} bytes{}{}", stateNames[verdict.state], verdict.id,
                          verdict.position, verdict.block.length, verdict.why.empty() ? "" : "  ", verdict.why));
  }
}

void printVerdicts(Recovery const & recovery, bool each)
{
  if (each) printEach(recovery.GetVerdicts());
  if (!recovery.HeaderLoss().empty()) PrintShown("lost     the header object: " + recovery.HeaderLoss() + "\n");
  PrintLine(fmt::format("{} kept, {} suspect, {} lost", recovery.Count(Verdict::Kept), recovery.Count(Verdict::Suspect),
                        recovery.Count(Verdict::Lost)));
}
void printVerdictsAsJson(Recovery const & recovery, std::string const & to)
{
  JsonPieces json(Print);
  json.BeginList("records");
  for (Verdict const & verdict : recovery.GetVerdicts()) {
    json.Element({{"id", verdict.id},
                  {"state", stateNames[verdict.state]},
                  {"position", verdict.position},
                  {"bytes", verdict.block.length},
                  {"why", verdict.why}});
  }
  json.EndList();
  json.Member("header_lost", !recovery.HeaderLoss().empty());
  json.Member("written_to", to);
  json.End();
  Print("\n");
}

StoreNames newStore(StoreNames const & from, std::string const & name)
{
  StoreNames to = ResolveStore(name, "");
  for (std::string const & file : {to.index, to.record}) {
    if (FileExists(file) || file == from.index || file == from.record) {
      throw Failure(fmt::format("{}: exists; recovery writes new files only, so name others", file));
    }
  }
  return to;
}

// False, and nothing is left, if it was interrupted.
bool write(Recovery & recovery, StoreNames const & to, bool withoutSuspect)
{
  InterruptGuard const guard;
  if (recovery.Write(to, withoutSuspect)) return true;
  DropFile(to.index);
  DropFile(to.record);
  return false;
}

struct RecoverCommand : StoreArguments {
  static constexpr char const * name = "recover";
  static constexpr char const * help = "Tell what the block headers still hold, and with --to save it in new files";
  static constexpr char const * example = "zp store recover job --to rescued";

  void AddOptions(CLI::App & command)
  {
    StoreArguments::AddOptions(command);
    RequireNamed(command.add_option("--to", to, "Stem of the new files; without it nothing is written"));
    command.add_flag("--leave-suspect", leaveSuspect, "Write only what is proved; the new store passes zp store check");
    command.add_flag("--list", each, "Tell of each record");
  }

  ExitStatus Run() const
  {
    StoreNames const names = GetNames();
    StoreNames const written = to.empty() ? StoreNames() : newStore(names, to);
    Recovery recovery(names);
    recovery.Examine();
    if (!to.empty() && !write(recovery, written, leaveSuspect)) return exitInterrupted;
    if (json)
      printVerdictsAsJson(recovery, recovery.GetWritten() > 0 ? written.index : "");
    else
      Tell(recovery, written);
    bool const isWhole = recovery.Count(Verdict::Kept) == recovery.GetVerdicts().size() && recovery.HeaderLoss().empty();
    return isWhole ? exitDone : exitWanting;
  }

  void Tell(Recovery const & recovery, StoreNames const & written) const
  {
    printVerdicts(recovery, each);
    bool const isLeft = leaveSuspect && recovery.Count(Verdict::Suspect) > 0;
    if (to.empty())
      Print("nothing was written; --to NEW writes what is kept and suspect into new files\n");
    else if (recovery.GetWritten() == 0)
      Print("nothing to save, nothing was written\n");
    else
      PrintLine(fmt::format("{}written to {} and {}", isLeft ? "without what is suspect " : "", written.index, written.record));
  }

  std::string to;
  bool leaveSuspect = false;
  bool each = false;
};

}  // namespace

void AddRecoverCommand(CLI::App & family, int & status)
{
  AddCommand<RecoverCommand>(family, status);
}
