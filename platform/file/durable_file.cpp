// Replaces whole files so that readers and crashes meet the old bytes or the new ones, never a mixture.

#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/paths.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/file/durable_file_internal.h"

namespace zp {
namespace {

constexpr char const * temporaryEnd = ".zp-new";
constexpr mode_t newFileMode = 0666;

std::string folderOf(std::string const & hostFile)
{
  size_t const slash = hostFile.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : hostFile.substr(0, slash);
}

int writeAll(int file, std::string_view content)
{
  while (!content.empty()) {
    ssize_t const written = write(file, content.data(), content.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) content.remove_prefix(static_cast<size_t>(written));
  }
  return 0;
}

// A new file under a name that nothing but a crash can have left behind. The former file's mode and owner pass to it.
int writeTemporary(std::string const & temporary, std::string const & target, std::string_view content)
{
  unlink(temporary.c_str());
  int const file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
  if (file < 0) return errno;
  struct stat former;
  int error = 0;
  if (stat(target.c_str(), &former) == 0) {
    bool const sameOwner = fchown(file, former.st_uid, former.st_gid) == 0;
    if (fchmod(file, former.st_mode & (sameOwner ? 07777 : 0777)) != 0) error = errno;
  }
  if (error == 0) error = writeAll(file, content);
  if (error == 0 && fsync(file) != 0) error = errno;
  if (close(file) != 0 && error == 0) error = errno;
  return error;
}

int syncFile(std::string const & hostFile)
{
  int const file = open(hostFile.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return errno;
  int const error = fsync(file) != 0 ? errno : 0;
  close(file);
  return error;
}

int renameInto(FolderLock const & lock, std::string const & from, std::string const & to)
{
  if (rename(from.c_str(), to.c_str()) != 0) return errno;
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

int replaceDurably(std::string_view target, std::string_view content)
{
  std::string file;
  if (!ToHostPath(target, file)) return ENOENT;
  file = FollowLinks(file);
  FolderLock const lock(file);
  return lock.GetError() != 0 ? lock.GetError() : ReplaceLockedFile(lock, file, content);
}

bool report(int result, int * error)
{
  if (error != nullptr) *error = result;
  return result == 0;
}

}  // namespace

FolderLock::FolderLock(std::string const & hostFile)
    : m_hFolder(open(folderOf(hostFile).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), m_nError(m_hFolder < 0 ? errno : 0)
{
  if (m_hFolder < 0) return;
  while (flock(m_hFolder, LOCK_EX) != 0 && errno == EINTR) {
  }
}

FolderLock::~FolderLock()
{
  if (m_hFolder >= 0) close(m_hFolder);
}

bool FolderLock::Sync() const
{
  return fsync(m_hFolder) == 0 || errno == EINVAL;  // some file systems can't sync folders and say so
}

std::string FollowLinks(std::string const & hostFile)
{
  std::unique_ptr<char, decltype(&std::free)> const target(realpath(hostFile.c_str(), nullptr), &std::free);
  return target ? target.get() : hostFile;
}

int ReplaceLockedFile(FolderLock const & lock, std::string const & hostFile, std::string_view content)
{
  std::string const temporary = hostFile + temporaryEnd;
  int error = writeTemporary(temporary, hostFile, content);
  if (error == 0) error = renameInto(lock, temporary, hostFile);
  if (error != 0) unlink(temporary.c_str());
  return error;
}

}  // namespace zp

bool ReplaceFileDurably(char const * target, std::string_view content, int * error)
{
  return zp::report(zp::replaceDurably(target, content), error);
}

bool MoveFileDurably(char const * written, char const * target, int * error)
{
  return zp::report(zp::moveDurably(written, target), error);
}
