// Writes .xlsx files. The same workbook gives the same bytes.
#pragma once

#include <string>

#include "servers/embedded/workbook.h"

namespace embedded {

// Writes the workbook whole beside the path and exchanges it; a former file of that name is gone then, and stands untouched
// after a failure. The path is the host's. Throws BookFailure with a sentence.
void WriteWorkbook(Workbook const & book, std::string const & path);

// The bytes of the file. Throws BookFailure for a workbook without a sheet, and for one that is too large to be read again.
std::string PackWorkbook(Workbook const & book);

}  // namespace embedded
