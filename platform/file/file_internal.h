// What the rooms of files share.

#pragma once

#include <string>

namespace zp {

// The cause of a failed open: as CauseOfError, but a missing file in a missing folder is badPath.
int CauseOfOpenError(int error, std::string const & hostPath);

}  // namespace zp
