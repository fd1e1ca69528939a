// Reading and making names of cells.

#include "servers/common/cell_names.h"

#include <algorithm>

namespace servers {
namespace {

constexpr uint32_t letters = 26;

void skipDollar(std::string_view & rest)
{
  if (!rest.empty() && rest.front() == '$') rest.remove_prefix(1);
}

// The number that leading letters tell, from 1; 0 where there is none or it is off the grid.
uint32_t takeColumn(std::string_view & rest)
{
  uint32_t column = 0;
  while (!rest.empty()) {
    auto const letter = static_cast<uint32_t>(static_cast<unsigned char>(rest.front()) | 0x20U) - 'a';
    if (letter >= letters) break;
    column = column * letters + letter + 1;
    if (column > mostColumns) return 0;
    rest.remove_prefix(1);
  }
  return column;
}

uint32_t takeRow(std::string_view & rest)
{
  uint32_t row = 0;
  while (!rest.empty() && rest.front() >= '0' && rest.front() <= '9') {
    row = row * 10 + static_cast<uint32_t>(rest.front() - '0');
    if (row > mostRows) return 0;
    rest.remove_prefix(1);
  }
  return row;
}

}  // namespace

std::optional<Place> ReadCellName(std::string_view name)
{
  skipDollar(name);
  uint32_t const column = takeColumn(name);
  skipDollar(name);
  uint32_t const row = takeRow(name);
  if (column == 0 || row == 0 || !name.empty()) return std::nullopt;
  return Place{row - 1, column - 1};
}

std::optional<Block> ReadBlockName(std::string_view name)
{
  size_t const colon = name.find(':');
  auto const first = ReadCellName(name.substr(0, colon));
  auto const last = colon == std::string_view::npos ? first : ReadCellName(name.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  return Block{std::min(first->row, last->row), std::min(first->column, last->column), std::max(first->row, last->row),
               std::max(first->column, last->column)};
}

std::string MakeColumnName(uint32_t column)
{
  std::string name;
  for (uint32_t rest = column + 1; rest > 0; rest = (rest - 1) / letters) {
    name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % letters));
  }
  return name;
}

std::string MakeCellName(uint32_t row, uint32_t column)
{
  return MakeColumnName(column) + std::to_string(row + 1);
}

}  // namespace servers
