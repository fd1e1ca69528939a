// Opening, reading and writing a store on behalf of a user.

#include "tools/store/session.h"

#include <algorithm>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/progress.h"
#include "tools/store/exchange.h"
#include "tools/store/index_reader.h"

namespace {

constexpr unsigned int readMode = CFile::modeRead | CFile::shareDenyWrite;
constexpr unsigned int writeMode = CFile::modeReadWrite | CFile::shareDenyWrite;

std::string failureOfOpen(std::string const & name, char const * what, CFileException const & problem)
{
  switch (problem.m_cause) {
    case CFileException::fileNotFound:
    case CFileException::badPath:
      return fmt::format("{}: there is no such {}; check the name", name, what);
    case CFileException::sharingViolation:
    case CFileException::lockViolation:
      return fmt::format("{}: the {} is in use by another program; try again when that has ended", name, what);
    case CFileException::accessDenied:
      return fmt::format("{}: the {} can't be opened: access is denied; check its permissions", name, what);
    default:
      return fmt::format("{}: the {} can't be opened: {}", name, what, Describe(problem));
  }
}

void requireSoundIndex(StoreNames const & names)
{
  StoreIndex const index = ReadIndex(names.m_strIndex);
  if (index.m_State == StoreIndex::Damaged || index.m_State == StoreIndex::UnknownClass) {
    throw Failure(fmt::format("{}: {}; the records can still be listed (zp store list) and saved (zp store recover)",
                              names.m_strIndex, index.m_strProblem));
  }
}

bool requireFiles(StoreNames const & names, StoreAccess access)
{
  RequireNoSwap(names);
  bool const hasRecord = RequireFile(names.m_strRecord, "record file", access == StoreAccess::Read ? readMode : writeMode, true);
  bool const hasIndex = FileExists(names.m_strIndex);
  if (hasIndex) RequireFile(names.m_strIndex, "index file", readMode);
  if (hasRecord && !hasIndex) {
    throw Failure(fmt::format("{}: there is no such index file beside {}; make a new one with zp store recover", names.m_strIndex,
                              names.m_strRecord));
  }
  if (hasIndex && !hasRecord) {
    throw Failure(fmt::format("{}: there is no such record file beside {}; bring it back or move the index file away",
                              names.m_strRecord, names.m_strIndex));
  }
  if (!hasRecord && access != StoreAccess::Create) {
    throw Failure(failureOfOpen(names.m_strRecord, "record file", CFileException(CFileException::fileNotFound)));
  }
  return hasRecord;
}

}  // namespace

bool RequireFile(std::string const & name, char const * what, unsigned int mode, bool mayBeMissing)
{
  CFile file;
  CFileException problem;
  if (file.Open(FromHostPath(name), mode, &problem)) return true;
  bool const missing = problem.m_cause == CFileException::fileNotFound;
  if (missing && mayBeMissing) return false;
  throw Failure(failureOfOpen(name, what, problem));
}

void OpenRecordFile(CFile & file, StoreNames const & names, StoreAccess access)
{
  CFileException problem;
  unsigned int const mode = access == StoreAccess::Read ? readMode : writeMode;
  if (file.Open(FromHostPath(names.m_strRecord), mode, &problem)) return;
  throw Failure(failureOfOpen(names.m_strRecord, "record file", problem));
}

// The record file is locked by the first access to it, after the index was read: an index that changed in between belongs to
// another program's work.
StoreSession::StoreSession(StoreNames const & names, StoreAccess access) : m_Names(names)
{
  bool const exists = requireFiles(names, access);
  std::string const before = exists ? ReadWholeFile(names.m_strIndex) : std::string();
  try {
    m_pStore = std::make_unique<GPDataFile>(FromHostPath(names.m_strIndex), FromHostPath(names.m_strRecord),
                                            access == StoreAccess::Read ? readMode : writeMode, nullptr);
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    requireSoundIndex(names);
    throw Failure(
        fmt::format("{}: the index file can't be read: {}; look with zp store check", names.m_strIndex, Describe(*caught)));
  }
  BYTE byte;
  if (exists && m_pStore->GetRecCount() > 0) m_pStore->LoadRec(&byte, 0, static_cast<int>(m_pStore->GetFirstRecID()));
  if (exists && ReadWholeFile(names.m_strIndex) != before) {
    throw Failure(fmt::format("{}: the store is in use by another program; try again when that has ended", names.m_strIndex));
  }
}

std::vector<int> StoreSession::GetIDs() const
{
  std::vector<int> ids;
  for (int id = 0; id <= maxRecordID; ++id) {
    if (m_pStore->GetRecLength(id) > 0) ids.push_back(id);
  }
  return ids;
}

void StoreSession::SetHeader(std::unique_ptr<CObject> header)
{
  delete m_pStore->m_pHeader;
  m_pStore->m_pHeader = header.release();
}

std::vector<BYTE> StoreSession::Load(int id)
{
  std::vector<BYTE> bytes(m_pStore->GetRecLength(id));
  if (bytes.empty()) {
    throw Failure(fmt::format("{}: there is no record {}; see zp store list", m_Names.m_strIndex, id));
  }
  if (m_pStore->LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id) != bytes.size()) {
    throw Failure(
        fmt::format("{}: record {} of {} bytes can't be read; look with zp store check", m_Names.m_strRecord, id, bytes.size()));
  }
  return bytes;
}

// The store doesn't tell of a write that failed, so the record is read back.
void StoreSession::Store(int id, std::span<BYTE const> bytes)
{
  auto const length = static_cast<unsigned int>(bytes.size());
  std::vector<BYTE> stored(bytes.size());
  if (m_pStore->StoreRec(bytes.data(), length, id) && m_pStore->LoadRec(stored.data(), length, id) == length &&
      std::equal(bytes.begin(), bytes.end(), stored.begin())) {
    return;
  }
  throw Failure(
      fmt::format("{}: record {} of {} bytes can't be stored; a record has 1 to 65535 bytes in a file that can be "
                  "written: check room and permissions, then zp store check",
                  m_Names.m_strRecord, id, bytes.size()));
}

void StoreSession::Delete(int id)
{
  if (m_pStore->DeleteRec(id)) return;
  throw Failure(fmt::format("{}: record {} can't be deleted; look with zp store check", m_Names.m_strRecord, id));
}

void StoreSession::Close()
{
  size_t const count = static_cast<size_t>(m_pStore->GetRecCount());
  m_pStore->Close();
  StoreIndex const index = ReadIndex(m_Names.m_strIndex);
  bool const unwritten = index.m_State == StoreIndex::Missing && count == 0;
  if (unwritten || (index.m_State == StoreIndex::Sound && index.m_Live.size() == count)) return;
  throw Failure(
      fmt::format("{}: the index can't be written; make room, then rebuild it with zp store recover", m_Names.m_strIndex));
}

bool ForEachStep(char const * label, size_t count, std::function<void(size_t)> const & step)
{
  Progress progress(label, count);
  for (size_t i = 0; i < count; ++i) {
    if (InterruptGuard::IsInterrupted()) return false;
    step(i);
    progress.Reach(i);
  }
  return true;
}
