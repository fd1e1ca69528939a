// The names of cells and blocks that all servers have, for those here.
#pragma once

#include "servers/common/cell_names.h"
namespace embedded {
using servers::Block;
using servers::MakeCellName;
using servers::MakeColumnName;
using servers::mostColumns;
using servers::mostRows;
using servers::Place;
using servers::ReadBlockName;
using servers::ReadCellName;
}  // namespace embedded
