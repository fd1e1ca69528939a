// The part of a worksheet, which holds its cells.
#pragma once

#include <vector>

#include "servers/embedded/package.h"
#include "servers/embedded/workbook.h"

namespace embedded {

// Reads the cells into sheet, and what it holds besides into unkept. Throws BookFailure for a part that is damaged, beyond a
// bound, or no worksheet; the sheet then holds some of the cells.
void ReadSheetPart(PartStream part, std::vector<SharedText> const & texts, bool from1904, Sheet & sheet, UnkeptList & unkept);

}  // namespace embedded
