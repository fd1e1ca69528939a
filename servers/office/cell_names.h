// Names of cells and blocks as people write them: "B12", "$A$1:CV50".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace office {

inline constexpr int32_t mostColumns = 16384;
inline constexpr int32_t mostRows = 1048576;

// A block of cells; columns and rows count from 0, the last ones belong to it.
struct Area {
  int32_t firstColumn;
  int32_t firstRow;
  int32_t lastColumn;
  int32_t lastRow;

  int32_t Columns() const { return lastColumn - firstColumn + 1; }
  int32_t Rows() const { return lastRow - firstRow + 1; }
  bool IsCell() const { return firstColumn == lastColumn && firstRow == lastRow; }
  bool Holds(int32_t column, int32_t row) const
  {
    return column >= firstColumn && column <= lastColumn && row >= firstRow && row <= lastRow;
  }
};

// The block of a name in letters of any case, with its corners in any order; nothing for anything else, such as a name that a
// workbook defines, and for what lies beyond the sheet.
std::optional<Area> ParseArea(std::u16string_view name);

}  // namespace office
