// Names of cells and blocks such as "XFD1048576" and "A1:CV50": letters in either case, with or without dollar signs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace servers {

inline constexpr uint32_t mostRows = 1048576;
inline constexpr uint32_t mostColumns = 16384;

// Rows and columns from 0; the last ones belong to the block.
struct Block {
  uint32_t firstRow;
  uint32_t firstColumn;
  uint32_t lastRow;
  uint32_t lastColumn;

  uint64_t GetRows() const { return uint64_t{lastRow} - firstRow + 1; }
  uint64_t GetColumns() const { return uint64_t{lastColumn} - firstColumn + 1; }
  uint64_t GetCells() const { return GetRows() * GetColumns(); }
};

struct Place {
  uint32_t row;
  uint32_t column;
};

// Nothing for what is no name of a cell on the grid.
std::optional<Place> ReadCellName(std::string_view name);

// A cell, or two with a colon between in any order. Nothing for what is neither.
std::optional<Block> ReadBlockName(std::string_view name);

std::string MakeColumnName(uint32_t column);
std::string MakeCellName(uint32_t row, uint32_t column);

}  // namespace servers
