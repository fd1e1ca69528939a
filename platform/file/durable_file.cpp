// Replaces whole files so that readers and crashes meet the old bytes or the new ones, never a mixture.

#include <zpbase/platform/durable_file.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <zpbase/platform/paths.h>

#include "platform/file/durable_file_internal.h"

namespace zp {
namespace {

constexpr std::string_view temporaryEnd = ".zp-new";
constexpr size_t mostNameBytes = 255;  // that file systems take
constexpr unsigned int newFileMode = 0666;
constexpr LONGLONG mostWaitNanos = 10'000'000'000;
constexpr int waitMilliseconds = 2;

std::string folderOf(std::string const & hostFile)
{
  size_t const slash = hostFile.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : hostFile.substr(0, slash);
}

// Beside the file; of a name that is too long for the end, its beginning.
std::string temporaryOf(std::string const & hostFile)
{
  size_t const name = hostFile.rfind('/') + 1;
  return hostFile.substr(0, name + mostNameBytes - temporaryEnd.size()).append(temporaryEnd);
}

// A new file under a name that nothing but a crash can have left behind. The former file's mode and owner pass to it.
int writeTemporary(std::string const & temporary, std::string const & target, std::string_view content)
{
  HostCalls const & host = GetHostCalls();
  host.Remove(temporary.c_str());
  Descriptor file(host.Open(temporary.c_str(), hostWrite | hostCreate | hostNew, newFileMode));
  if (!file.IsOpen()) return errno;
  HostStatus former;
  if (host.GetStatusOf(target.c_str(), former) == 0) {
    bool const sameOwner = host.SetOwner(file.Get(), former.user, former.group) == 0;
    if (host.SetMode(file.Get(), former.mode & (sameOwner ? 07777 : 0777)) != 0) return errno;
  }
  if (int const error = WriteAll(file.Get(), content); error != 0) return error;
  if (host.Sync(file.Get()) != 0) return errno;
  return host.Close(file.Take()) != 0 ? errno : 0;
}

int syncFile(std::string const & hostFile)
{
  Descriptor const file(GetHostCalls().Open(hostFile.c_str(), hostRead, 0));
  return !file.IsOpen() || GetHostCalls().Sync(file.Get()) != 0 ? errno : 0;
}

int renameInto(FolderLock const & lock, std::string const & from, std::string const & to)
{
  if (GetHostCalls().Rename(from.c_str(), to.c_str()) != 0) return errno;
  return lock.Sync() ? 0 : errno;
}

int moveDurably(std::string_view written, std::string_view target)
{
  std::string from;
  std::string to;
  if (!ToHostPath(written, from) || !ToHostPath(target, to)) return ENOENT;
  to = FollowLinks(to);
  FolderLock const lock(to);
  if (lock.GetError() != 0) return lock.GetError();
  int const error = syncFile(from);
  return error != 0 ? error : renameInto(lock, from, to);
}

int replaceDurably(std::string_view target, std::string_view content, MayReplace const & mayReplace)
{
  std::string file;
  if (!ToHostPath(target, file)) return ENOENT;
  file = FollowLinks(file);
  FolderLock const lock(file);
  return lock.GetError() != 0 ? lock.GetError() : ReplaceLockedFile(lock, file, content, mayReplace);
}

// Not without end: whoever can read a folder can lock it.
int waitForLock(int folder)
{
  HostCalls const & host = GetHostCalls();
  LONGLONG const end = host.SteadyClock() + mostWaitNanos;
  while (host.Lock(folder, HostLock::Exclusive) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return 0;  // the file system knows no locks
    if (host.SteadyClock() >= end) return EWOULDBLOCK;
    host.Pause(waitMilliseconds);
  }
  return 0;
}

bool report(int result, int * error)
{
  if (error != nullptr) *error = result;
  return result == 0;
}

}  // namespace

FolderLock::FolderLock(std::string const & hostFile)
    : m_Folder(GetHostCalls().Open(folderOf(hostFile).c_str(), hostRead | hostFolder, 0)), m_nError(m_Folder.IsOpen() ? 0 : errno)
{
  if (m_Folder.IsOpen()) m_nError = waitForLock(m_Folder.Get());
}

bool FolderLock::Sync() const
{
  return GetHostCalls().Sync(m_Folder.Get()) == 0 || errno == EINVAL;  // some file systems can't sync folders and say so
}

std::string FollowLinks(std::string const & hostFile)
{
  std::unique_ptr<char, decltype(&std::free)> const target(GetHostCalls().ResolveLinks(hostFile.c_str()), &std::free);
  return target ? target.get() : hostFile;
}

int ReplaceLockedFile(FolderLock const & lock, std::string const & hostFile, std::string_view content,
                      MayReplace const & mayReplace)
{
  std::string const temporary = temporaryOf(hostFile);
  if (temporary == hostFile) return ENAMETOOLONG;
  int error = writeTemporary(temporary, hostFile, content);
  if (error == 0 && mayReplace && !mayReplace(temporary)) error = ECANCELED;
  if (error == 0) error = renameInto(lock, temporary, hostFile);
  if (error != 0) GetHostCalls().Remove(temporary.c_str());
  return error;
}

}  // namespace zp

bool ReplaceFileDurably(char const * target, std::string_view content, int * error)
{
  return zp::report(zp::replaceDurably(target, content, nullptr), error);
}

bool ReplaceFileDurablyIf(char const * target, std::string_view content,
                          std::function<bool(std::string const & written)> const & mayReplace, int * error)
{
  return zp::report(zp::replaceDurably(target, content, mayReplace), error);
}

bool MoveFileDurably(char const * written, char const * target, int * error)
{
  return zp::report(zp::moveDurably(written, target), error);
}
