// zp store compact: the store is compacted as a copy, the copy is compared record by record, and the two files are exchanged.

#include "tools/store/store_arguments.h"

#include <filesystem>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/object_json.h"
#include "tools/store/file_exchange.h"
#include "tools/store/store_check.h"
#include "tools/store/stored_records.h"

namespace {

constexpr UINT pieceBytes = 0x100000;

struct Gain {
  unsigned long long before = 0;
  unsigned long long after = 0;
  std::string tidied;
};

class Interrupted {};

void requirePlainFiles(StoreNames const & names)
{
  for (std::string const & file : {names.record, names.index}) {
    std::error_code ignored;
    if (std::filesystem::is_symlink(file, ignored)) {
      throw Failure(fmt::format("{}: is a link; name the file that it leads to", file));
    }
  }
}

// Both new files, gone again unless they took the old ones' place.
class CompactCopy {
 public:
  explicit CompactCopy(StoreNames const & names) : m_Old(names), m_New{TemporaryName(names.index), TemporaryName(names.record)} {}
  ~CompactCopy()
  {
    std::error_code ignored;
    if (m_bSwapped) return;
    std::filesystem::remove(m_New.index, ignored);
    std::filesystem::remove(m_New.record, ignored);
  }
  CompactCopy(CompactCopy const &) = delete;
  CompactCopy & operator=(CompactCopy const &) = delete;

  void Make(CFile const & recordFile)
  {
    CFile index;
    index.Open(FromHostPath(m_Old.index), CFile::modeRead | CFile::shareDenyNone);
    Copy(index, m_Old.index, m_New.index);
    Copy(recordFile, m_Old.record, m_New.record);
    GPDataFile store(FromHostPath(m_New.index), FromHostPath(m_New.record), CFile::modeReadWrite, nullptr);
    if (!store.DegasRecFile()) throw Failure(fmt::format("{}: can't be compacted", m_Old.record));
    store.Close();
  }

  // Every record of the old file must stand in the new ones.
  void Compare(CFile const & recordFile, CheckReport const & report)
  {
    StoredRecords const records(m_New);
    Progress progress("comparing", report.survey.fileLength);
    size_t count = 0;
    for (SurveyBlock const & at : report.survey.blocks) {
      if (InterruptGuard::IsInterrupted()) throw Interrupted();
      progress.Reach(at.block.position);
      if (at.block.isFree) continue;
      ++count;
      if (records.Load(at.block.id) != ReadPayload(recordFile, at.block)) Differ();
    }
    if (records.GetIDs().size() != count) Differ();
  }

  void Swap()
  {
    m_bSwapped = true;
    SwapIn(m_Old);
  }

  unsigned long long GetSize() const { return std::filesystem::file_size(m_New.record); }

 private:
  [[noreturn]] void Differ() const
  {
    throw Failure(fmt::format("{}: the compacted copy differs; is the disk full? The store is as it was", m_Old.record));
  }

  static void Copy(CFile const & from, std::string const & fromName, std::string const & toName)
  {
    CFile to;
    CFileException problem;
    if (!to.Open(FromHostPath(toName), CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite, &problem)) {
      throw Failure(fmt::format("{}: can't be written: {}", toName, Describe(problem)));
    }
    std::vector<BYTE> piece(pieceBytes);
    Progress progress("copying", from.GetLength());
    ULONGLONG at = 0;
    while (UINT const count = from.ReadAt(at, piece.data(), pieceBytes)) {
      if (InterruptGuard::IsInterrupted()) throw Interrupted();
      to.WriteAt(at, piece.data(), count);
      at += count;
      progress.Reach(at);
    }
    std::filesystem::permissions(toName, std::filesystem::status(fromName).permissions());
  }

  StoreNames m_Old;
  StoreNames m_New;
  bool m_bSwapped = false;
};

unsigned long long compactedSize(CheckReport const & report)
{
  unsigned long long size = 0;
  for (SurveyBlock const & at : report.survey.blocks) {
    if (!at.block.isFree) size += zp::BlockHeader::byteCount + at.block.length;
  }
  return size;
}

void requireSound(StoreNames const & names, StoreIndex const & index, CheckReport const & report)
{
  if (index.state == StoreIndex::UnknownClass) {
    throw Failure(fmt::format("{}: {}; compact it with a program that knows the class", names.index, index.problem));
  }
  if (report.faults.empty()) return;
  StoreFault const & first = report.faults.front();
  throw Failure(fmt::format("{}: {}; see zp store check, and zp store recover for a sound copy", first.file, first.text));
}

Gain compactStore(StoreNames const & names)
{
  requirePlainFiles(names);
  OpenStore store(names, StoreAccess::Replace);
  CheckReport const report = CheckStore(store);
  requireSound(names, store.GetIndex(), report);
  Gain gain = {report.survey.fileLength, compactedSize(report), store.GetEndedExchange()};
  if (gain.after == gain.before) return gain;
  CompactCopy copy(names);
  copy.Make(store.GetRecordFile());
  copy.Compare(store.GetRecordFile(), report);
  if (InterruptGuard::IsInterrupted()) throw Interrupted();
  copy.Swap();
  return gain;
}

void printGain(StoreNames const & names, Gain const & gain)
{
  if (!gain.tidied.empty()) Print(gain.tidied + "\n");
  unsigned long long const won = gain.before - gain.after;
  if (won == 0) return Print(fmt::format("{}: {} bytes, nothing to win\n", names.record, gain.before));
  Print(fmt::format("{}: {} bytes instead of {}, {:.1f}% won\n", names.record, gain.after, gain.before,
                    100.0 * static_cast<double>(won) / static_cast<double>(gain.before)));
}

struct CompactCommand : StoreArguments {
  static constexpr char const * name = "compact";
  static constexpr char const * help = "Win back free space; also ends a compaction that was interrupted";

  ExitStatus Run() const
  {
    InterruptGuard const guard;
    try {
      Gain const gain = compactStore(GetNames());
      if (json) {
        Print(Json{{"before", gain.before}, {"after", gain.after}, {"tidied", gain.tidied}}.dump(2) + "\n");
      } else {
        printGain(GetNames(), gain);
      }
      return exitDone;
    } catch (Interrupted const &) {
      return exitInterrupted;
    }
  }
};

}  // namespace

void AddCompactCommand(CLI::App & family, int & status)
{
  AddCommand<CompactCommand>(family, status);
}
