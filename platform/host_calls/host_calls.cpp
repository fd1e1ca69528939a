// The table of host calls on a POSIX host: the one room that calls it.

#include <zpbase/platform/host_calls.h>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <poll.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "platform/host_calls/host_version_internal.h"

namespace zp {
namespace {

int openFile(char const * path, unsigned int how, unsigned int mode)
{
  int flags = O_CLOEXEC | O_NOCTTY;
  flags |= (how & hostReadWrite) != 0 ? O_RDWR : (how & hostWrite) != 0 ? O_WRONLY : O_RDONLY;
  if ((how & hostCreate) != 0) flags |= O_CREAT;
  if ((how & hostNew) != 0) flags |= O_EXCL;
  if ((how & hostNoWait) != 0) flags |= O_NONBLOCK;
  if ((how & hostFolder) != 0) flags |= O_DIRECTORY;
  return open(path, flags, mode);
}

int duplicate(int file)
{
  return fcntl(file, F_DUPFD_CLOEXEC, 0);
}

long readAt(int file, void * buffer, size_t count, LONGLONG position)
{
  long const got = pread(file, buffer, count, position);
  return got < 0 && errno == ESPIPE ? read(file, buffer, count) : got;
}

long writeAt(int file, void const * buffer, size_t count, LONGLONG position)
{
  long const put = pwrite(file, buffer, count, position);
  return put < 0 && errno == ESPIPE ? write(file, buffer, count) : put;
}

int setLength(int file, LONGLONG length)
{
  return ftruncate(file, length);
}

int lockFile(int file, HostLock lock)
{
  return flock(file, (lock == HostLock::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB);
}

HostTime timeOf(timespec const & time)
{
  return {time.tv_sec, static_cast<int>(time.tv_nsec)};
}

int give(int result, struct stat const & host, HostStatus & status)
{
  if (result != 0) return result;
  status.kind = S_ISREG(host.st_mode) ? HostStatus::File : S_ISDIR(host.st_mode) ? HostStatus::Folder : HostStatus::Other;
  status.file = host.st_ino;
  status.device = host.st_dev;
  status.links = host.st_nlink;
  status.size = host.st_size;
  status.mode = host.st_mode & 07777;
  status.user = host.st_uid;
  status.group = host.st_gid;
  status.modified = timeOf(host.st_mtim);
  status.changed = timeOf(host.st_ctim);
  status.accessed = timeOf(host.st_atim);
  return 0;
}

int getStatus(int file, HostStatus & status)
{
  struct stat host;
  return give(fstat(file, &host), host, status);
}

int getStatusOf(char const * path, HostStatus & status)
{
  struct stat host;
  return give(stat(path, &host), host, status);
}

int getStatusOfLink(char const * path, HostStatus & status)
{
  struct stat host;
  return give(lstat(path, &host), host, status);
}

timespec timeOrKeep(HostTime const * time)
{
  return time != nullptr ? timespec{static_cast<time_t>(time->seconds), time->nanoseconds} : timespec{0, UTIME_OMIT};
}

int setTimesOf(char const * path, HostTime const * accessed, HostTime const * modified)
{
  timespec const times[2] = {timeOrKeep(accessed), timeOrKeep(modified)};
  return utimensat(AT_FDCWD, path, times, 0);
}

int renameNew(char const * from, char const * to)
{
  return renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

void * openFolder(char const * path)
{
  return opendir(path);
}

char const * nextEntry(void * folder)
{
  dirent const * const entry = readdir(static_cast<DIR *>(folder));
  return entry != nullptr ? entry->d_name : nullptr;
}

int closeFolder(void * folder)
{
  return closedir(static_cast<DIR *>(folder));
}

char * resolveLinks(char const * path)
{
  return realpath(path, nullptr);
}

char * currentFolder()
{
  return getcwd(nullptr, 0);
}

// The program's own link stays readable after its file was replaced, and tells the name that it was started under.
char * moduleFile(void const * address)
{
  if (address == nullptr) {
    char target[PATH_MAX];
    ssize_t const length = readlink("/proc/self/exe", target, sizeof target);
    return length > 0 ? strndup(target, static_cast<size_t>(length)) : nullptr;
  }
  Dl_info found;
  if (dladdr(address, &found) == 0 || found.dli_fname == nullptr) return nullptr;
  char * const full = realpath(found.dli_fname, nullptr);
  return full != nullptr ? full : strdup(found.dli_fname);
}

// The handle of a module stands in front of the program's map of it; what is told outside is the address of a section inside.
void * loadModule(char const * path)
{
  void * const handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  link_map * map = nullptr;
  if (handle == nullptr || dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0) return handle != nullptr ? map->l_ld : nullptr;
  dlclose(handle);
  return nullptr;
}

// Looking the module up by its file takes one more count, which is given back with the caller's.
int freeModule(void const * address)
{
  Dl_info found;
  if (dladdr(address, &found) == 0) return -1;
  void * const handle = dlopen(found.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr) return -1;
  dlclose(handle);
  return dlclose(handle) == 0 ? 0 : -1;
}

int columns(int file)
{
  winsize size{};
  return ioctl(file, TIOCGWINSZ, &size) == 0 ? size.ws_col : -1;
}

int waitForInput(int file, int most)
{
  pollfd input{file, POLLIN, 0};
  return poll(&input, 1, most);
}

HostTime wallClock()
{
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return timeOf(now);
}

LONGLONG steadyClock()
{
  constexpr LONGLONG nanosPerSecond = 1'000'000'000;
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * nanosPerSecond + now.tv_nsec;
}

void pauseFor(int milliseconds)
{
  timespec const time{milliseconds / 1000, milliseconds % 1000 * 1'000'000L};
  nanosleep(&time, nullptr);
}

bool localTime(LONGLONG seconds, std::tm & fields)
{
  auto const time = static_cast<time_t>(seconds);
  tzset();
  return localtime_r(&time, &fields) != nullptr;
}

int useLargePages(void * pages, size_t size)
{
  return madvise(pages, size, MADV_HUGEPAGE);
}

int offerPages(void * pages, size_t size)
{
  return madvise(pages, size, MADV_FREE);
}

}  // namespace

HostCalls & GetHostCalls()
{
  static constinit HostCalls calls = {
      .Open = openFile,
      .Close = close,
      .Duplicate = duplicate,
      .Read = read,
      .Write = write,
      .ReadAt = readAt,
      .WriteAt = writeAt,
      .SetLength = setLength,
      .Sync = fsync,
      .Lock = lockFile,
      .GetStatus = getStatus,
      .SetOwner = fchown,
      .SetMode = fchmod,
      .GetStatusOf = getStatusOf,
      .GetStatusOfLink = getStatusOfLink,
      .SetModeOf = chmod,
      .SetTimesOf = setTimesOf,
      .Rename = rename,
      .RenameNew = renameNew,
      .Link = link,
      .Remove = unlink,
      .MakeFolder = mkdir,
      .OpenFolder = openFolder,
      .NextEntry = nextEntry,
      .CloseFolder = closeFolder,
      .ResolveLinks = resolveLinks,
      .CurrentFolder = currentFolder,
      .ModuleFile = moduleFile,
      .LoadModule = loadModule,
      .FreeModule = freeModule,
      .IsTerminal = isatty,
      .Columns = columns,
      .WaitForInput = waitForInput,
      .WallClock = wallClock,
      .SteadyClock = steadyClock,
      .Pause = pauseFor,
      .LocalTime = localTime,
      .GetVersion = HostVersion,
      .UseLargePages = useLargePages,
      .OfferPages = offerPages,
  };
  return calls;
}

}  // namespace zp
