// The texts that the cells of a package share, by number.
#pragma once

#include <string>
#include <vector>

#include "servers/embedded/cell.h"
#include "servers/embedded/package.h"
#include "servers/embedded/unkept.h"

namespace embedded {

// Throws BookFailure for a part that is damaged or beyond a bound.
std::vector<SharedText> ReadSharedStrings(PartStream part, UnkeptList & unkept);

}  // namespace embedded
