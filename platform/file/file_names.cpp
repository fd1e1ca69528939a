// CFile on names: setting status and times, renaming and removing, and the parts of a file's name.

#include <zpbase/platform/file.h>

#include <cerrno>

#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "platform/file/descriptor_internal.h"
#include "platform/file/file_internal.h"

namespace {

constexpr unsigned int anybodyMayWrite = 0222;

[[noreturn]] void fail(int error, char const * name, std::string const & hostPath)
{
  zp::FileFailure const failure = zp::FailureOfName(error, hostPath);
  AfxThrowFileException(failure.cause, failure.systemError, name);
}

std::string hostPathOf(char const * name)
{
  std::string hostPath;
  if (!ToHostPath(name, hostPath)) AfxThrowFileException(CFileException::badPath, ERROR_PATH_NOT_FOUND, name);
  return hostPath;
}

// Where the file system can't refuse an existing new name by itself, a hard link does, and else a look beforehand.
int renameUnlessThere(char const * from, char const * to)
{
  zp::HostCalls const & host = zp::GetHostCalls();
  if (host.RenameNew(from, to) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;
  if (host.Link(from, to) == 0) return host.Remove(from);
  if (errno == EEXIST) return -1;
  zp::HostStatus there;
  if (host.GetStatusOfLink(to, there) == 0) {
    errno = EEXIST;
    return -1;
  }
  return host.Rename(from, to);
}

// A file that someone has open under a lock is neither renamed nor removed.
void refuseInUse(std::string const & hostPath, char const * name)
{
  zp::HostCalls const & host = zp::GetHostCalls();
  zp::Descriptor file(host.Open(hostPath.c_str(), zp::hostRead | zp::hostNoWait, 0));
  if (!file.IsOpen()) {
    if (errno == EIO || errno == EMFILE || errno == ENFILE) fail(errno, name, hostPath);  // it can't be told
    return;
  }
  bool const inUse = host.Lock(file.Get(), zp::HostLock::Exclusive) != 0 && errno == EWOULDBLOCK;
  file.Close();
  if (inUse) fail(EWOULDBLOCK, name, hostPath);
}

void setReadOnly(std::string const & hostPath, unsigned int mode, bool readOnly, char const * name)
{
  unsigned int const wanted = readOnly ? mode & ~anybodyMayWrite : mode | zp::ownerMayWrite;
  if (wanted != mode && zp::GetHostCalls().SetModeOf(hostPath.c_str(), wanted) != 0) fail(errno, name, hostPath);
}

// Whether the folder that a host path lies in is missing; one that can't be looked at isn't.
bool isFolderMissing(std::string const & hostPath)
{
  size_t const slash = hostPath.rfind('/');
  if (slash == std::string::npos || slash == 0) return false;
  zp::HostStatus status;
  if (zp::GetHostCalls().GetStatusOf(hostPath.substr(0, slash).c_str(), status) != 0) return zp::SaysMissing(errno);
  return status.kind != zp::HostStatus::Folder;
}

}  // namespace

namespace zp {

FileFailure FailureOfName(int error, std::string const & hostPath)
{
  if (error == ENOENT && isFolderMissing(hostPath)) return {CFileException::badPath, ERROR_PATH_NOT_FOUND};
  return {CauseOfError(error), SystemErrorOfError(error)};
}

bool IsFolder(std::string const & hostPath)
{
  HostStatus status;
  return GetHostCalls().GetStatusOf(hostPath.c_str(), status) == 0 && status.kind == HostStatus::Folder;
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

void CFile::SetStatus(char const * name, CFileStatus const & status)
{
  std::string const hostPath = hostPathOf(name);
  zp::HostCalls const & calls = zp::GetHostCalls();
  zp::HostStatus host;
  if (calls.GetStatusOf(hostPath.c_str(), host) != 0) fail(errno, name, hostPath);
  zp::HostTime const accessed{status.m_atime, 0};
  zp::HostTime const modified{status.m_mtime, 0};
  int const result =
      calls.SetTimesOf(hostPath.c_str(), status.m_atime != 0 ? &accessed : nullptr, status.m_mtime != 0 ? &modified : nullptr);
  if (result != 0) fail(errno, name, hostPath);
  setReadOnly(hostPath, host.mode, (status.m_attribute & CFileStatus::readOnly) != 0, name);
}

void CFile::Rename(char const * oldName, char const * newName)
{
  std::string const from = hostPathOf(oldName);
  std::string const to = hostPathOf(newName);
  refuseInUse(from, oldName);
  if (renameUnlessThere(from.c_str(), to.c_str()) == 0) return;
  int const error = errno;
  fail(error, oldName, error == ENOENT && isFolderMissing(to) ? to : from);
}

void CFile::Remove(char const * name)
{
  std::string const hostPath = hostPathOf(name);
  refuseInUse(hostPath, name);
  if (zp::GetHostCalls().Remove(hostPath.c_str()) != 0) fail(errno, name, hostPath);
}
