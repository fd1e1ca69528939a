// What the rooms of files share.

#pragma once

#include <cerrno>
#include <string>

#include <zpbase/platform/types.h>

namespace zp {

struct HostStatus;
struct HostTime;

// What a failure on a name is to whoever asked: the cause of a file exception and the system's error number.
struct FileFailure {
  int cause;
  LONG systemError;
};

// A value of errno for a host path. A name that isn't there is badPath if its folder is missing.
FileFailure FailureOfName(int error, std::string const & hostPath);

// Whether an error of a look at a name says that nothing is there; any other says nothing of that.
inline bool SaysMissing(int error)
{
  return error == ENOENT || error == ENOTDIR;
}

// Whether a file that is written now may get the same time again: times advance in steps of the host's clock.
bool IsJustWritten(HostTime const & written);

// False where the file was written, exchanged or given another name or other times in between, as far as the steps of the host's
// clock tell.
bool IsUnchanged(HostStatus const & now, HostStatus const & before);

inline constexpr unsigned int ownerMayWrite = 0200;  // of the permission bits

// Whether a host path leads to a folder.
bool IsFolder(std::string const & hostPath);

}  // namespace zp
