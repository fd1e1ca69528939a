// The clocks of the host, replaceable so that time can be stopped.
#pragma once

#include "types.h"

namespace zp {

struct ClockCalls {
  LONGLONG (*WallSeconds)();         // since 1970-01-01 UTC
  LONGLONG (*SteadyMilliseconds)();  // from some fixed moment on; never goes back
};
ZP_API ClockCalls & GetClockCalls();

}  // namespace zp
