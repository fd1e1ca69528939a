// zp store compact: the store is compacted as a copy, the copy is compared record by record, and the two files are exchanged.

#include <filesystem>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/records/object_json.h"
#include "tools/store/check.h"
#include "tools/store/exchange.h"
#include "tools/store/session.h"
#include "tools/store/store_commands.h"

namespace {

constexpr UINT pieceBytes = 0x100000;

struct Gain {
  unsigned long long m_nBefore = 0;
  unsigned long long m_nAfter = 0;
  std::string m_strTidied;
};

class Interrupted {};

void requirePlainFiles(StoreNames const & names)
{
  for (std::string const & file : {names.m_strRecord, names.m_strIndex}) {
    std::error_code ignored;
    if (std::filesystem::is_symlink(file, ignored)) {
      throw Failure(fmt::format("{}: is a link; name the file that it leads to", file));
    }
  }
}

// Both new files, gone again unless they took the old ones' place.
class CompactCopy {
 public:
  explicit CompactCopy(StoreNames const & names)
      : m_Old(names), m_New{TemporaryName(names.m_strIndex), TemporaryName(names.m_strRecord)}
  {
  }
  ~CompactCopy()
  {
    std::error_code ignored;
    if (m_bSwapped) return;
    std::filesystem::remove(m_New.m_strIndex, ignored);
    std::filesystem::remove(m_New.m_strRecord, ignored);
  }
  CompactCopy(CompactCopy const &) = delete;
  CompactCopy & operator=(CompactCopy const &) = delete;

  void Make(CFile const & recordFile)
  {
    CFile index;
    index.Open(FromHostPath(m_Old.m_strIndex), CFile::modeRead | CFile::shareDenyNone);
    Copy(index, m_Old.m_strIndex, m_New.m_strIndex);
    Copy(recordFile, m_Old.m_strRecord, m_New.m_strRecord);
    GPDataFile store(FromHostPath(m_New.m_strIndex), FromHostPath(m_New.m_strRecord), CFile::modeReadWrite, nullptr);
    if (!store.DegasRecFile()) throw Failure(fmt::format("{}: can't be compacted", m_Old.m_strRecord));
    store.Close();
  }

  // Every record of the old file must stand in the new ones.
  void Compare(CFile const & recordFile, CheckReport const & report)
  {
    StoreSession session(m_New, StoreAccess::Read);
    Progress progress("comparing", report.m_Survey.m_nFileLength);
    size_t count = 0;
    for (SurveyBlock const & at : report.m_Survey.m_Blocks) {
      if (InterruptGuard::IsInterrupted()) throw Interrupted();
      progress.Reach(at.m_Block.nPosition);
      if (at.m_Block.bFree) continue;
      ++count;
      if (session.Load(at.m_Block.nRecID) != ReadPayload(recordFile, at.m_Block)) Differ();
    }
    if (session.GetIDs().size() != count) Differ();
  }

  void Swap()
  {
    m_bSwapped = true;
    SwapIn(m_Old);
  }

  unsigned long long GetSize() const { return std::filesystem::file_size(m_New.m_strRecord); }

 private:
  [[noreturn]] void Differ() const
  {
    throw Failure(fmt::format("{}: the compacted copy differs; is the disk full? The store is as it was", m_Old.m_strRecord));
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
  for (SurveyBlock const & at : report.m_Survey.m_Blocks) {
    if (!at.m_Block.bFree) size += zp::BlockChain::headerSize + at.m_Block.nLength;
  }
  return size;
}

void requireSound(StoreNames const & names, CheckReport const & report)
{
  if (report.m_Index.m_State == StoreIndex::UnknownClass) {
    throw Failure(
        fmt::format("{}: {}; compact it with a program that knows the class", names.m_strIndex, report.m_Index.m_strProblem));
  }
  if (report.m_Faults.empty()) return;
  StoreFault const & first = report.m_Faults.front();
  throw Failure(
      fmt::format("{}: {}; see zp store check, and zp store recover for a sound copy", first.m_strFile, first.m_strText));
}

Gain compactStore(StoreNames const & names)
{
  requirePlainFiles(names);
  Gain gain;
  CFile recordFile;
  if (FileExists(names.m_strRecord)) OpenRecordFile(recordFile, names, StoreAccess::Write);
  gain.m_strTidied = TidySwap(names);
  if (recordFile.m_hFile != CFile::hFileNull) recordFile.Close();
  OpenRecordFile(recordFile, names, StoreAccess::Write);
  CheckReport const report = CheckStore(names, recordFile);
  requireSound(names, report);
  gain.m_nBefore = report.m_Survey.m_nFileLength;
  gain.m_nAfter = compactedSize(report);
  if (gain.m_nAfter == gain.m_nBefore) return gain;
  CompactCopy copy(names);
  copy.Make(recordFile);
  copy.Compare(recordFile, report);
  if (InterruptGuard::IsInterrupted()) throw Interrupted();
  copy.Swap();
  return gain;
}

void compact(StoreArguments const & arguments, int & status)
{
  StoreNames const names = arguments.GetNames();
  InterruptGuard const guard;
  try {
    Gain const gain = compactStore(names);
    if (arguments.m_bJson) {
      return Print(Json{{"before", gain.m_nBefore}, {"after", gain.m_nAfter}, {"tidied", gain.m_strTidied}}.dump(2) + "\n");
    }
    if (!gain.m_strTidied.empty()) Print(gain.m_strTidied + "\n");
    unsigned long long const won = gain.m_nBefore - gain.m_nAfter;
    if (won == 0) return Print(fmt::format("{}: {} bytes, nothing to win\n", names.m_strRecord, gain.m_nBefore));
    Print(fmt::format("{}: {} bytes instead of {}, {:.1f}% won\n", names.m_strRecord, gain.m_nAfter, gain.m_nBefore,
                      100.0 * static_cast<double>(won) / static_cast<double>(gain.m_nBefore)));
  } catch (Interrupted const &) {
    status = exitInterrupted;
  }
}

}  // namespace

void AddCompactCommand(CLI::App & store, int & status)
{
  auto const arguments = std::make_shared<StoreArguments>();
  CLI::App * const command =
      AddStoreCommand(store, *arguments, "compact", "Win back free space; also ends a compaction that was interrupted");
  command->callback([arguments, &status] { compact(*arguments, status); });
}
