// The host's own status of files, with its finest times, for those who watch for a change.
#pragma once

#include "file.h"
#include "host_calls.h"

namespace zp {

// Whether name leads to a file, and its status if it does.
ZP_API Presence GetPresence(char const * name, HostStatus & status);

// Gives a file that was just written a time after the one before, where the clock's step left it the same: so its status tells
// that it was written. Only the file's owner can.
ZP_API void KeepTimesApart(char const * name, HostTime const & before);

}  // namespace zp
