// Writes .xlsx files. The same workbook gives the same bytes.
#pragma once

#include <string>

#include "servers/common/book_files.h"
#include "servers/embedded/workbook.h"

namespace embedded {

// Writes the workbook whole beside the path and exchanges it for the file that bears the stamp, or for none; a file of that name
// stands untouched after a failure. Gives the stamp of the file that was written. The path is the host's. Throws BookFailure with
// a sentence, also where another file stands there than the one that is to be replaced.
servers::FileStamp WriteWorkbook(Workbook const & book, std::string const & path, servers::FileStamp const & former);

// The bytes of the file. Throws BookFailure for a workbook without a sheet, and for one that is too large to be read again.
std::string PackWorkbook(Workbook const & book);

}  // namespace embedded
