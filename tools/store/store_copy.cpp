// Copying, comparing and exchanging.

#include "tools/store/store_copy.h"

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>

#include "tools/host_file.h"
#include "tools/interrupt_guard.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/store/file_exchange.h"
#include "tools/store/store_backup.h"
#include "tools/store/stored_records.h"

namespace {

constexpr UINT copiedPieceBytes = 0x100000;

void requireNoLink(StoreNames const & names)
{
  for (std::string const & file : {names.record, names.index}) {
    if (IsLink(file)) throw Failure(fmt::format("{}: is a link; name the file that it leads to", file));
  }
}

}  // namespace

StoreCopy::StoreCopy(OpenStore & old, CheckReport const & report)
    : m_Old(old), m_Report(report), m_New{TemporaryName(old.GetNames().index), TemporaryName(old.GetNames().record)}
{
  requireNoLink(old.GetNames());
  CFile index;
  CFileException problem;
  if (!index.Open(InsidePath(old.GetNames().index), CFile::modeRead | CFile::shareDenyNone, &problem)) {
    FailOpening(old.GetNames().index, "index file", problem);
  }
  try {
    Copy(index, old.GetNames().index, m_New.index);
    Copy(old.GetRecordFile(), old.GetNames().record, m_New.record);
  } catch (...) {
    DropExchange(m_New);
    throw;
  }
}

StoreCopy::~StoreCopy()
{
  if (!m_bSwapped) DropExchange(m_New);
}

void StoreCopy::Copy(CFile const & from, std::string const & fromName, std::string const & toName)
{
  CFile to;
  try {
    CFileException problem;
    if (!to.Open(InsidePath(toName), CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite, &problem)) {
      throw Failure(fmt::format("{}: can't be written: {}", toName, Describe(problem)));
    }
    TakePermissions(toName, fromName);
    std::vector<BYTE> piece(copiedPieceBytes);
    Progress progress("copying", from.GetLength());
    ULONGLONG at = 0;
    while (UINT const count = from.ReadAt(at, piece.data(), copiedPieceBytes)) {
      if (InterruptGuard::IsInterrupted()) throw Interrupted();
      to.WriteAt(at, piece.data(), count);
      at += count;
      progress.Reach(at);
    }
    to.Close();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    Differ(Describe(*caught));
  }
}

void StoreCopy::Differ(std::string const & how) const
{
  throw Failure(fmt::format("{}: can't be copied and changed: {}; the store is as it was", m_Old.GetNames().record, how));
}

// The store is silent on writes that failed, so the system is asked whether it takes any more.
void StoreCopy::DifferInBytes(std::string const & how) const
{
  std::string why;
  try {
    for (std::string const & name : {m_New.record, m_New.index}) {
      CFile file;
      bool const isOpen = why.empty() && file.Open(InsidePath(name), CFile::modeReadWrite | CFile::shareDenyNone);
      if (isOpen) why = WhyNoRoom(file, zp::BlockHeader::byteCount + zp::maxRecordLength);
    }
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    why = Describe(*caught);
  }
  Differ(why.empty() ? how : why);
}

void StoreCopy::Change(std::function<void(GPDataFile & tables)> const & change)
{
  try {
    GPDataFile tables(InsidePath(m_New.index), InsidePath(m_New.record), CFile::modeReadWrite, nullptr);
    change(tables);
    tables.Close();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    Differ(Describe(*caught));
  }
}

void StoreCopy::Check(size_t count, Other const & other)
{
  {
    OpenStore copy(m_New, StoreAccess::Look);
    CheckReport const report = CheckStore(copy, CheckDepth::Blocks);
    if (!report.faults.empty()) DifferInBytes("its copy is damaged: " + report.faults.front().text);
    if (report.records != count) DifferInBytes("its copy has other records");
  }
  StoredRecords const records(m_New);
  Progress progress("comparing", m_Report.survey.fileLength);
  for (SurveyBlock const & at : m_Report.survey.blocks) {
    if (InterruptGuard::IsInterrupted()) throw Interrupted();
    progress.Reach(at.block.position);
    if (at.block.isFree || other(at.block.id) != nullptr) continue;
    if (records.Load(at.block.id) != ReadPayload(m_Old.GetRecordFile(), at.block)) DifferInBytes("its copy differs");
  }
  for (int const id : records.GetIDs()) {
    std::vector<BYTE> const * const bytes = other(id);
    if (bytes != nullptr && records.Load(id) != *bytes) DifferInBytes("its copy differs");
  }
}

unsigned long long StoreCopy::GetSize() const
{
  return SizeOf(m_New.record);
}

void StoreCopy::PutInPlace()
{
  m_bSwapped = true;
  SwapIn(m_Old.GetNames());
}
