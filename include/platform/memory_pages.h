// The host's pages behind large blocks of memory.
#pragma once

#include <cstddef>

#include "types.h"

namespace zp {

// Says that a block is going to be filled as a whole, so that the system may back a large one with large pages.
ZP_API void PreferLargePages(void * block, size_t size);

}  // namespace zp
