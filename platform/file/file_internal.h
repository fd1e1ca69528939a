// What the rooms of files share.

#pragma once

#include <string>

#include <zpbase/platform/types.h>

namespace zp {

// What a failure on a name is to whoever asked: the cause of a file exception and the system's error number.
struct FileFailure {
  int cause;
  LONG systemError;
};

// A value of errno for a host path. A name that isn't there is badPath if its folder is missing.
FileFailure FailureOfName(int error, std::string const & hostPath);

// Whether a host path leads to a folder.
bool IsFolder(std::string const & hostPath);

}  // namespace zp
