// Reads .xlsx files.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "servers/embedded/workbook.h"

namespace embedded {

// The path is the host's. Throws BookFailure with a sentence where the file can't be read whole: there is no half of a workbook.
Workbook ReadWorkbook(std::string const & path);

// The same from bytes in memory, borrowed for the call.
Workbook ReadWorkbook(std::span<std::byte const> bytes);

}  // namespace embedded
