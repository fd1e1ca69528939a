// A block of cells in the office's numbers.
#pragma once

#include <cstdint>

#include "servers/common/cell_names.h"

namespace office {

// Columns and rows count from 0, the last ones belong to it.
struct Area {
  int32_t firstColumn;
  int32_t firstRow;
  int32_t lastColumn;
  int32_t lastRow;

  int32_t Columns() const { return lastColumn - firstColumn + 1; }
  int32_t Rows() const { return lastRow - firstRow + 1; }
  bool Holds(int32_t column, int32_t row) const
  {
    return column >= firstColumn && column <= lastColumn && row >= firstRow && row <= lastRow;
  }
};

inline Area AreaOf(servers::Block const & block)
{
  return {static_cast<int32_t>(block.firstColumn), static_cast<int32_t>(block.firstRow), static_cast<int32_t>(block.lastColumn),
          static_cast<int32_t>(block.lastRow)};
}

}  // namespace office
