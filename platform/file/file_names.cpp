// CFile on names: status, times, renaming and removing, and the parts of a file's name.

#include <zpbase/platform/file.h>

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "platform/file/file_internal.h"

namespace {

[[noreturn]] void fail(int error, char const * name, std::string const & hostPath)
{
  int const cause = zp::CauseOfOpenError(error, hostPath);
  AfxThrowFileException(cause, cause == CFileException::badPath ? 3 : zp::SystemErrorOfError(error), name);
}

std::string hostPathOf(char const * name)
{
  std::string hostPath;
  if (!ToHostPath(name, hostPath)) AfxThrowFileException(CFileException::badPath, 3, name);
  return hostPath;
}

void fillStatus(CFileStatus & status, struct stat const & host, CString const & name)
{
  status.m_ctime = host.st_ctim.tv_sec;
  status.m_mtime = host.st_mtim.tv_sec;
  status.m_atime = host.st_atim.tv_sec;
  status.m_size = host.st_size;
  status.m_attribute = CFileStatus::archive;
  if ((host.st_mode & S_IWUSR) == 0) status.m_attribute |= CFileStatus::readOnly;
  if (S_ISDIR(host.st_mode)) status.m_attribute |= CFileStatus::directory;
  status.m_szFullName = name;
}

// Where the file system can't refuse an existing new name by itself, a hard link does, and else a look beforehand.
int renameUnlessThere(char const * from, char const * to)
{
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;
  if (link(from, to) == 0) return unlink(from);
  if (errno == EEXIST) return -1;
  struct stat there;
  if (lstat(to, &there) == 0) {
    errno = EEXIST;
    return -1;
  }
  return rename(from, to);
}

// A file that someone has open under a lock is neither renamed nor removed.
void refuseInUse(std::string const & hostPath, char const * name)
{
  int const file = open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (file < 0) return;
  bool const inUse = flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  close(file);
  if (inUse) fail(EWOULDBLOCK, name, hostPath);
}

void setReadOnly(std::string const & hostPath, mode_t mode, bool readOnly, char const * name)
{
  mode_t const wanted = readOnly ? mode & ~mode_t{0222} : mode | S_IWUSR;
  if (wanted != mode && chmod(hostPath.c_str(), wanted & 07777) != 0) fail(errno, name, hostPath);
}

timespec timeOrKeep(LONGLONG seconds)
{
  return {static_cast<time_t>(seconds), seconds != 0 ? 0 : UTIME_OMIT};
}

}  // namespace

namespace zp {

int CauseOfOpenError(int error, std::string const & hostPath)
{
  if (error != ENOENT) return CauseOfError(error);
  size_t const slash = hostPath.rfind('/');
  if (slash == std::string::npos || slash == 0) return CFileException::fileNotFound;
  struct stat folder;
  bool const there = stat(hostPath.substr(0, slash).c_str(), &folder) == 0 && S_ISDIR(folder.st_mode);
  return there ? CFileException::fileNotFound : CFileException::badPath;
}

bool IsSameFile(char const * first, char const * second)
{
  std::string a;
  std::string b;
  struct stat one;
  struct stat other;
  return ToHostPath(first, a) && ToHostPath(second, b) && stat(a.c_str(), &one) == 0 && stat(b.c_str(), &other) == 0 &&
         one.st_ino == other.st_ino && one.st_dev == other.st_dev;
}

}  // namespace zp

CString CFile::GetFileName() const
{
  return m_strFileName.Mid(m_strFileName.ReverseFind('\\') + 1);
}

CString CFile::GetFileTitle() const
{
  CString const name = GetFileName();
  int const point = name.ReverseFind('.');
  return point > 0 ? name.Left(point) : name;
}

CString CFile::GetFilePath() const
{
  return m_strFileName;
}

void CFile::SetFilePath(char const * name)
{
  m_strFileName = name;
}

BOOL CFile::GetStatus(CFileStatus & status) const
{
  struct stat host;
  if (m_hFile == hFileNull || fstat(m_hFile, &host) != 0) return FALSE;
  fillStatus(status, host, m_strFileName);
  return TRUE;
}

BOOL CFile::GetStatus(char const * name, CFileStatus & status)
{
  std::string hostPath;
  struct stat host;
  if (!ToHostPath(name, hostPath) || stat(hostPath.c_str(), &host) != 0) return FALSE;
  fillStatus(status, host, CString(name));
  return TRUE;
}

void CFile::SetStatus(char const * name, CFileStatus const & status)
{
  std::string const hostPath = hostPathOf(name);
  struct stat host;
  if (stat(hostPath.c_str(), &host) != 0) fail(errno, name, hostPath);
  timespec const times[2] = {timeOrKeep(status.m_atime), timeOrKeep(status.m_mtime)};
  if (utimensat(AT_FDCWD, hostPath.c_str(), times, 0) != 0) fail(errno, name, hostPath);
  setReadOnly(hostPath, host.st_mode, (status.m_attribute & CFileStatus::readOnly) != 0, name);
}

void CFile::Rename(char const * oldName, char const * newName)
{
  std::string const from = hostPathOf(oldName);
  std::string const to = hostPathOf(newName);
  refuseInUse(from, oldName);
  if (renameUnlessThere(from.c_str(), to.c_str()) != 0) fail(errno, oldName, from);
}

void CFile::Remove(char const * name)
{
  std::string const hostPath = hostPathOf(name);
  refuseInUse(hostPath, name);
  if (unlink(hostPath.c_str()) != 0) fail(errno, name, hostPath);
}
