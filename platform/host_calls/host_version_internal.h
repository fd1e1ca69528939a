// The host's release as a version.
#pragma once

#include <zpbase/platform/facts.h>

namespace zp {

// "6.1.76" as 6, 1 and 76, with the host's own words on its build. False if the host doesn't tell.
bool HostVersion(OSVERSIONINFOA & version);

}  // namespace zp
