// CFile: opening under a lock, bytes at a position of its own, length. What works on names alone is in file_names.cpp.

#include <zpbase/platform/file.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "platform/file/descriptor_internal.h"
#include "platform/file/file_internal.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

namespace {

constexpr UINT accessMask = 3;
constexpr UINT shareMask = 0x70;
constexpr int openTries = 10;
constexpr unsigned int newFileMode = 0666;

unsigned int hostAccess(UINT flags)
{
  switch (flags & accessMask) {
    case CFile::modeRead:
      return zp::hostRead;
    case CFile::modeWrite:
      return zp::hostWrite;
    default:
      return zp::hostReadWrite;
  }
}

// The lock that the share flags ask for, if any.
std::optional<zp::HostLock> lockOf(UINT flags)
{
  UINT const share = flags & shareMask;
  if (share == CFile::shareDenyNone) return std::nullopt;
  bool const shared = share == CFile::shareDenyWrite && (flags & accessMask) == CFile::modeRead;
  return shared ? zp::HostLock::Shared : zp::HostLock::Exclusive;
}

// 1 when path still leads to the file that is open, 0 when it doesn't, -1 with errno set when that can't be told.
int leadsTo(char const * path, zp::HostStatus const & open)
{
  zp::HostStatus now;
  if (zp::GetHostCalls().GetStatusOf(path, now) == 0) return now.IsSameFile(open);
  return zp::SaysMissing(errno) ? 0 : -1;
}

// Makes a call again that a signal has broken off.
template <class Call>
int untilDone(Call call)
{
  int result;
  do result = call();
  while (result < 0 && errno == EINTR);
  return result;
}

struct OpenedFile {
  zp::Descriptor file;  // not open, with errno set, on failure
  zp::HostStatus status = {};
  bool isLocked = false;
};

// Opens and locks path and tells what it leads to. A file that was replaced before the lock was had is opened anew.
OpenedFile openLocked(char const * path, UINT flags)
{
  zp::HostCalls const & host = zp::GetHostCalls();
  unsigned int const create = (flags & CFile::modeCreate) != 0 ? unsigned{zp::hostCreate} : 0;
  auto const lock = lockOf(flags);
  for (int i = 0; i < openTries; ++i) {
    OpenedFile opened{zp::Descriptor(untilDone([&] { return host.Open(path, hostAccess(flags) | create, newFileMode); }))};
    int const file = opened.file.Get();
    if (!opened.file.IsOpen() || host.GetStatus(file, opened.status) != 0) return {};
    if (opened.status.kind == zp::HostStatus::Folder) {
      errno = EISDIR;
      return {};
    }
    // Only a lock that another holds refuses the file; a file system without locks is no sharing violation.
    bool const isLocked = lock && untilDone([&] { return host.Lock(file, *lock); }) == 0;
    if (lock && !isLocked && errno == EWOULDBLOCK) return {};
    if (!lock || opened.status.kind != zp::HostStatus::File) return opened;
    opened.isLocked = isLocked;
    int const stays = leadsTo(path, opened.status);
    if (stays > 0) return opened;
    if (stays < 0) return {};
  }
  errno = EWOULDBLOCK;
  return {};
}

// The lock comes first, then the truncation: a refused open leaves the file as it is.
OpenedFile openAndTruncate(char const * path, UINT flags)
{
  OpenedFile opened = openLocked(path, flags);
  bool const truncate = (flags & CFile::modeCreate) != 0 && (flags & CFile::modeNoTruncate) == 0;
  if (!opened.file.IsOpen() || !truncate || opened.status.kind != zp::HostStatus::File) return opened;
  int const file = opened.file.Get();
  if (zp::GetHostCalls().GetStatus(file, opened.status) == 0 && opened.status.size == 0) return opened;
  if (untilDone([&] { return zp::GetHostCalls().SetLength(file, 0); }) != 0) return {};
  return opened;
}

}  // namespace

CFile::~CFile()
{
  if (m_hFile != hFileNull) CFile::Abort();
}

void CFile::Fail(int error) const
{
  AfxThrowFileException(zp::CauseOfError(error), zp::SystemErrorOfError(error), m_strFileName);
}

void CFile::RequireOpen() const
{
  if (m_hFile == hFileNull) Fail(EBADF);
}

BOOL CFile::Open(char const * name, UINT, CAtlTransactionManager *, CFileException * problem)
{
  if (problem != nullptr) {
    problem->m_cause = CFileException::genericException;
    problem->m_strFileName = name;
  }
  return FALSE;
}

BOOL CFile::Open(char const * name, UINT flags, CFileException * problem)
{
  m_strFileName = name;
  m_nPosition = 0;
  m_bDuplicated = false;
  std::string hostPath;
  bool const valid = ToHostPath(m_strFileName.View(), hostPath);
  OpenedFile opened = valid ? openAndTruncate(hostPath.c_str(), flags) : OpenedFile();
  m_hFile = opened.file.Take();
  m_bLocked = opened.isLocked;
  if (m_hFile == hFileNull && problem != nullptr) {
    zp::FileFailure const failure = zp::FailureOfName(valid ? errno : ENOTDIR, hostPath);
    problem->m_cause = failure.cause;
    problem->m_lOsError = failure.systemError;
    problem->m_strFileName = name;
  }
  return m_hFile != hFileNull;
}

CFile * CFile::Duplicate() const
{
  RequireOpen();
  auto copy = std::make_unique<CFile>();
  copy->m_hFile = zp::GetHostCalls().Duplicate(m_hFile);
  if (copy->m_hFile < 0) Fail(errno);
  copy->m_strFileName = m_strFileName;
  copy->m_nPosition = m_nPosition;
  copy->m_bLocked = m_bLocked;
  copy->m_bDuplicated = m_bDuplicated = true;
  return copy.release();
}

ULONGLONG CFile::GetPosition() const
{
  RequireOpen();
  return m_nPosition;
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from)
{
  RequireOpen();
  ULONGLONG const origin = from == begin ? 0 : from == current ? m_nPosition : GetLength();
  LONGLONG position;
  if (__builtin_add_overflow(static_cast<LONGLONG>(origin), offset, &position) || position < 0)
    AfxThrowFileException(CFileException::badSeek, ERROR_NEGATIVE_SEEK, m_strFileName);
  return m_nPosition = static_cast<ULONGLONG>(position);
}

void CFile::SetLength(ULONGLONG length)
{
  RequireOpen();
  ++m_nChanges;
  if (untilDone([&] { return zp::GetHostCalls().SetLength(m_hFile, static_cast<LONGLONG>(length)); }) != 0) Fail(errno);
  m_nPosition = length;
}

ULONGLONG CFile::GetLength() const
{
  RequireOpen();
  zp::HostStatus status;
  if (zp::GetHostCalls().GetStatus(m_hFile, status) != 0) Fail(errno);
  return static_cast<ULONGLONG>(status.size);
}

UINT CFile::ReadAt(ULONGLONG position, void * buffer, UINT count) const
{
  RequireOpen();
  auto const call = zp::GetHostCalls().ReadAt;
  UINT done = 0;
  while (done < count) {
    long const got = call(m_hFile, static_cast<BYTE *>(buffer) + done, count - done, static_cast<LONGLONG>(position + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(errno);
    if (got == 0) break;
    done += static_cast<UINT>(got);
  }
  return done;
}

void CFile::WriteAt(ULONGLONG position, void const * buffer, UINT count)
{
  RequireOpen();
  ++m_nChanges;
  auto const call = zp::GetHostCalls().WriteAt;
  for (UINT done = 0; done < count;) {
    long const put =
        call(m_hFile, static_cast<BYTE const *>(buffer) + done, count - done, static_cast<LONGLONG>(position + done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) Fail(errno);
    if (put == 0) Fail(ENOSPC);
    done += static_cast<UINT>(put);
  }
}

UINT CFile::Read(void * buffer, UINT count)
{
  UINT const got = ReadAt(m_nPosition, buffer, count);
  m_nPosition += got;
  return got;
}

void CFile::Write(void const * buffer, UINT count)
{
  WriteAt(m_nPosition, buffer, count);
  m_nPosition += count;
}

void CFile::LockRange(ULONGLONG, ULONGLONG)
{
  AfxThrowFileException(CFileException::lockViolation, ERROR_LOCK_VIOLATION, m_strFileName);
}

void CFile::UnlockRange(ULONGLONG, ULONGLONG)
{
  AfxThrowFileException(CFileException::lockViolation, ERROR_NOT_LOCKED, m_strFileName);
}

void CFile::Abort()
{
  if (m_hFile == hFileNull) return;
  zp::GetHostCalls().Close(std::exchange(m_hFile, hFileNull));
}

void CFile::Flush()
{
  RequireOpen();
}

void CFile::Close()
{
  RequireOpen();
  if (zp::GetHostCalls().Close(std::exchange(m_hFile, hFileNull)) != 0) Fail(errno);
}

UINT CFile::GetBufferPtr(UINT, UINT, void **, void **)
{
  return 0;
}
