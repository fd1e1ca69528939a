// Cells of a workbook in memory as automation's values, and back.
#pragma once

#include "servers/common/value_blocks.h"
#include "servers/embedded/workbook.h"

namespace embedded {

// Empty, VT_R8, VT_BSTR, VT_BOOL, or VT_ERROR; the caller owns it.
VARIANT ReadCell(CellStore const & cells, servers::Place const & place);
void ReadBlock(CellStore const & cells, servers::Block const & block, servers::MadeBlock & values);

// An empty value clears a cell, and what is no finite number becomes #NUM!. Refuses a value that a cell can't hold, and leaves
// all cells as they were then.
void WriteBlock(Workbook const & book, CellStore & cells, servers::Block const & block, servers::GivenValues const & values);

}  // namespace embedded
