// Texts of cells as people read them.
#pragma once

#include <string>
#include <string_view>

#include "tools/text/cells.h"

// Text of a file in UTF-8, whichever of that and Windows-1252 it is in.
std::string InUtf8(std::string_view bytes);

// What the cell holds, in UTF-8: without the quotes around it, and those in it single.
std::string CellText(Cell const & cell);
