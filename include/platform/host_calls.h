// Everything that the platform asks of the host, in one table of functions: another host supplies each of them, and a test can
// replace one to see what its failure does. Paths are the host's own. Where nothing else is said a function gives 0 or more on
// success, and -1 with errno set on failure; names that it takes end in a zero.
#pragma once

#include <ctime>

#include "types.h"

struct _OSVERSIONINFOA;

namespace zp {

// How a file is opened: one of the first three, or'ed with the others. No child process inherits it.
enum HostOpen : unsigned int {
  hostRead = 0,
  hostWrite = 1,
  hostReadWrite = 2,
  hostCreate = 4,
  hostNew = 8,      // with hostCreate: a name that exists is EEXIST
  hostNoWait = 16,  // a pipe without a writer isn't waited for
  hostFolder = 32   // anything but a folder is ENOTDIR
};

// An advisory lock on a whole file or folder. A lock that another open has taken is EWOULDBLOCK.
enum class HostLock { Shared, Exclusive };

struct HostTime {
  LONGLONG seconds = 0;  // since 1970-01-01 UTC
  int nanoseconds = 0;

  bool operator==(HostTime const &) const = default;
};

struct HostStatus {
  enum Kind { Other, File, Folder };

  Kind kind = Other;
  uint64_t file = 0;  // together with device the file's identity; no file has 0
  uint64_t device = 0;
  uint64_t links = 0;     // names that lead to it
  LONGLONG size = 0;      // bytes
  unsigned int mode = 0;  // the permission bits, 07777
  unsigned int user = 0;
  unsigned int group = 0;
  HostTime modified;
  HostTime changed;
  HostTime accessed;

  bool IsSameFile(HostStatus const & other) const { return file == other.file && device == other.device; }
};

struct HostCalls {
  // Open files.
  int (*Open)(char const * path, unsigned int how, unsigned int mode);  // the descriptor; mode for a new file
  int (*Close)(int file);
  int (*Duplicate)(int file);  // a second descriptor on the same open file
  long (*Read)(int file, void * buffer, size_t count);
  long (*Write)(int file, void const * buffer, size_t count);
  long (*ReadAt)(int file, void * buffer, size_t count, LONGLONG position);  // of a pipe the next bytes
  long (*WriteAt)(int file, void const * buffer, size_t count, LONGLONG position);
  int (*SetLength)(int file, LONGLONG length);
  int (*Sync)(int file);
  int (*Lock)(int file, HostLock lock);
  int (*GetStatus)(int file, HostStatus & status);
  int (*SetOwner)(int file, unsigned int user, unsigned int group);
  int (*SetMode)(int file, unsigned int mode);

  // Names.
  int (*GetStatusOf)(char const * path, HostStatus & status);      // of what a link leads to
  int (*GetStatusOfLink)(char const * path, HostStatus & status);  // of the link itself
  int (*SetModeOf)(char const * path, unsigned int mode);
  int (*SetTimesOf)(char const * path, HostTime const * accessed, HostTime const * modified);  // null keeps the time
  int (*Rename)(char const * from, char const * to);                                           // replaces to
  int (*RenameNew)(char const * from, char const * to);  // an existing to is EEXIST; EINVAL or ENOSYS if that can't be promised
  int (*Link)(char const * from, char const * to);
  int (*Remove)(char const * path);
  int (*MakeFolder)(char const * path, unsigned int mode);
  void * (*OpenFolder)(char const * path);   // null on failure
  char const * (*NextEntry)(void * folder);  // null at the end; valid until the next call
  int (*CloseFolder)(void * folder);

  // Texts in blocks that the caller releases with std::free, or null.
  char * (*ResolveLinks)(char const * path);
  char * (*CurrentFolder)();
  char * (*ModuleFile)(void const * address);  // the file that was loaded there; null stands for the program

  // Modules, known by an address inside them. Null where path can't be loaded; one that is loaded already is counted.
  void * (*LoadModule)(char const * path);
  int (*FreeModule)(void const * address);

  // Terminals.
  int (*IsTerminal)(int file);              // 1 for one
  int (*Columns)(int file);                 // 0 if it has none
  int (*WaitForInput)(int file, int most);  // milliseconds; above 0 when there is input or its end

  // Clocks.
  HostTime (*WallClock)();
  LONGLONG (*SteadyClock)();                              // nanoseconds from some fixed moment on; never goes back
  void (*Pause)(int milliseconds);                        // may end early
  bool (*LocalTime)(LONGLONG seconds, std::tm & fields);  // of the user's time zone

  // The system.
  bool (*GetVersion)(_OSVERSIONINFOA & version);
  int (*UseLargePages)(void * pages, size_t size);  // a hint; both in whole large pages of 2 MB
  int (*OfferPages)(void * pages, size_t size);     // a hint: their content may go, until they are written anew
};

ZP_API HostCalls & GetHostCalls();

}  // namespace zp
