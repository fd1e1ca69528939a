// CFile: opening under a lock, bytes at a position of its own, length. What works on names alone is in file_names.cpp.

#include <zpbase/platform/file.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/file/descriptor_internal.h"
#include "platform/file/file_internal.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

namespace {

constexpr UINT accessMask = 3;
constexpr UINT shareMask = 0x70;
constexpr int openTries = 10;

int hostAccess(UINT flags)
{
  switch (flags & accessMask) {
    case CFile::modeRead:
      return O_RDONLY;
    case CFile::modeWrite:
      return O_WRONLY;
    default:
      return O_RDWR;
  }
}

// The lock that the share flags ask for; 0 for none.
int lockOf(UINT flags)
{
  UINT const share = flags & shareMask;
  if (share == CFile::shareDenyNone) return 0;
  return share == CFile::shareDenyWrite && (flags & accessMask) == CFile::modeRead ? LOCK_SH : LOCK_EX;
}

// True when path still leads to the file that is open.
bool leadsTo(char const * path, struct stat const & open)
{
  struct stat now;
  return stat(path, &now) == 0 && now.st_ino == open.st_ino && now.st_dev == open.st_dev;
}

// Opens and locks path; the descriptor, or -1 with errno set. A file that was replaced before the lock was had is opened anew.
int openLocked(char const * path, UINT flags)
{
  int const create = (flags & CFile::modeCreate) != 0 ? O_CREAT : 0;
  int const lock = lockOf(flags);
  for (int i = 0; i < openTries; ++i) {
    zp::Descriptor file(open(path, hostAccess(flags) | create | O_CLOEXEC | O_NOCTTY, 0666));
    if (file.Get() < 0) return -1;
    struct stat status;
    if (fstat(file.Get(), &status) != 0) return -1;
    if (S_ISDIR(status.st_mode)) {
      errno = EISDIR;
      return -1;
    }
    // Only a lock that another holds refuses the file; a file system without locks is no sharing violation.
    if (lock != 0 && flock(file.Get(), lock | LOCK_NB) != 0 && errno == EWOULDBLOCK) return -1;
    if (lock == 0 || !S_ISREG(status.st_mode) || leadsTo(path, status)) return file.Take();
  }
  errno = EWOULDBLOCK;
  return -1;
}

int openAndTruncate(char const * path, UINT flags)
{
  zp::Descriptor file(openLocked(path, flags));
  if (file.Get() < 0) return -1;
  bool const truncate = (flags & CFile::modeCreate) != 0 && (flags & CFile::modeNoTruncate) == 0;
  struct stat status;
  if (truncate && fstat(file.Get(), &status) == 0 && status.st_size != 0 && S_ISREG(status.st_mode) &&
      zp::GetFileCalls().SetLength(file.Get(), 0) != 0)
    return -1;
  return file.Take();
}

void setProblem(CFileException * problem, int error, char const * name, std::string const & hostPath)
{
  if (problem == nullptr) return;
  problem->m_cause = zp::CauseOfOpenError(error, hostPath);
  problem->m_lOsError = problem->m_cause == CFileException::badPath ? 3 : zp::SystemErrorOfError(error);
  problem->m_strFileName = name;
}

long readHost(int file, void * buffer, size_t count, LONGLONG position)
{
  long const got = pread(file, buffer, count, position);
  return got < 0 && errno == ESPIPE ? read(file, buffer, count) : got;
}

long writeHost(int file, void const * buffer, size_t count, LONGLONG position)
{
  long const put = pwrite(file, buffer, count, position);
  return put < 0 && errno == ESPIPE ? write(file, buffer, count) : put;
}

int setLengthHost(int file, LONGLONG length)
{
  return ftruncate(file, length);
}

int closeHost(int file)
{
  return close(file);
}

}  // namespace

namespace zp {

FileCalls & GetFileCalls()
{
  static FileCalls calls = {readHost, writeHost, setLengthHost, closeHost};
  return calls;
}

}  // namespace zp

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
  m_hFile = valid ? openAndTruncate(hostPath.c_str(), flags) : hFileNull;
  if (m_hFile == hFileNull) setProblem(problem, valid ? errno : ENOTDIR, name, hostPath);
  return m_hFile != hFileNull;
}

CFile * CFile::Duplicate() const
{
  RequireOpen();
  auto copy = std::make_unique<CFile>();
  copy->m_hFile = fcntl(m_hFile, F_DUPFD_CLOEXEC, 0);
  if (copy->m_hFile < 0) Fail(errno);
  copy->m_strFileName = m_strFileName;
  copy->m_nPosition = m_nPosition;
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
    AfxThrowFileException(CFileException::badSeek, 131, m_strFileName);
  return m_nPosition = static_cast<ULONGLONG>(position);
}

void CFile::SetLength(ULONGLONG length)
{
  RequireOpen();
  ++m_nChanges;
  if (zp::GetFileCalls().SetLength(m_hFile, static_cast<LONGLONG>(length)) != 0) Fail(errno);
  m_nPosition = length;
}

ULONGLONG CFile::GetLength() const
{
  RequireOpen();
  struct stat status;
  if (fstat(m_hFile, &status) != 0) Fail(errno);
  return static_cast<ULONGLONG>(status.st_size);
}

UINT CFile::ReadAt(ULONGLONG position, void * buffer, UINT count) const
{
  RequireOpen();
  auto const call = zp::GetFileCalls().Read;
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
  auto const call = zp::GetFileCalls().Write;
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
  AfxThrowFileException(CFileException::lockViolation, 33, m_strFileName);
}

void CFile::UnlockRange(ULONGLONG, ULONGLONG)
{
  AfxThrowFileException(CFileException::lockViolation, 158, m_strFileName);
}

void CFile::Abort()
{
  if (m_hFile == hFileNull) return;
  zp::GetFileCalls().Close(std::exchange(m_hFile, hFileNull));
}

void CFile::Flush()
{
  RequireOpen();
}

void CFile::Close()
{
  RequireOpen();
  if (zp::GetFileCalls().Close(std::exchange(m_hFile, hFileNull)) != 0) Fail(errno);
}

UINT CFile::GetBufferPtr(UINT, UINT, void **, void **)
{
  return 0;
}
