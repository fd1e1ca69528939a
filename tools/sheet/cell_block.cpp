// Names of blocks, and fetching their values.

#include "tools/sheet/cell_block.h"

#include <algorithm>

#include <fmt/format.h>
#include <zpbase/platform/ascii.h>

#include "tools/program.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr int letterCount = 26;
constexpr int blockCellsAtOnce = 1 << 16;

struct Place {
  int row;
  int column;
};

// Zeroes for what is no cell.
Place parsePlace(std::string_view name)
{
  Place place = {0, 0};
  for (; !name.empty() && zp::IsLetter(name.front()) && place.column <= mostColumns; name.remove_prefix(1))
    place.column = place.column * letterCount + (name.front() | 0x20) - 'a' + 1;
  for (; !name.empty() && zp::IsDigit(name.front()) && place.row <= mostRows; name.remove_prefix(1))
    place.row = place.row * 10 + name.front() - '0';
  bool const isCell = name.empty() && place.column >= 1 && place.column <= mostColumns && place.row >= 1 && place.row <= mostRows;
  return isCell ? place : Place{0, 0};
}

std::string nameOf(int row, int column)
{
  std::string name;
  for (; column > 0; column = (column - 1) / letterCount)
    name.insert(name.begin(), static_cast<char>('A' + (column - 1) % letterCount));
  return name + std::to_string(row);
}

COleVariant valuesOf(GPWorkSheet & sheet, CellBlock const & block)
{
  std::string const name = NameOfBlock(block);
  VARIANT value = Attached<GPRange>(sheet.GetCell(COleVariant(name.c_str()))).GetValue();
  COleVariant owned;
  owned.Attach(value);
  return owned;
}

// The first of the values that a server gave for a block, which must be as many as the block has cells.
VARIANT const * requireValues(COleVariant const & values, int rows, int columns)
{
  if (rows == 1 && columns == 1) return &values;
  SAFEARRAY const * const array = values.vt == (VT_ARRAY | VT_VARIANT) ? values.parray : nullptr;
  bool const fits = array != nullptr && array->cDims == 2 && array->rgsabound[0].cElements == static_cast<DWORD>(columns) &&
                    array->rgsabound[1].cElements == static_cast<DWORD>(rows);
  if (!fits) throw Failure("the spreadsheet server gives a block of another size than was asked for");
  return static_cast<VARIANT const *>(array->pvData);
}

}  // namespace

CellBlock ParseBlock(std::string_view name)
{
  size_t const colon = name.find(':');
  Place const first = parsePlace(name.substr(0, colon));
  Place const last = colon == std::string_view::npos ? first : parsePlace(name.substr(colon + 1));
  if (first.row == 0 || last.row == 0)
    throw Failure(fmt::format("\"{}\": a block is a cell, or two with a colon between, such as A1:CV50", name), exitUsage);
  return {std::min(first.row, last.row), std::min(first.column, last.column), std::max(first.row, last.row),
          std::max(first.column, last.column)};
}

std::string NameOfBlock(CellBlock const & block)
{
  std::string const first = nameOf(block.firstRow, block.firstColumn);
  std::string const last = nameOf(block.lastRow, block.lastColumn);
  return first == last ? first : first + ":" + last;
}

CellBlock UsedBlock(GPWorkSheet & sheet)
{
  auto used = Attached<GPRange>(sheet.GetUsedRange());
  int const row = static_cast<int>(used.GetRow());
  int const column = static_cast<int>(used.GetColumn());
  return {row, column, row + static_cast<int>(Attached<GPRange>(used.GetRows()).GetCount()) - 1,
          column + static_cast<int>(Attached<GPRange>(used.GetColumns()).GetCount()) - 1};
}

void ForEachRow(GPWorkSheet & sheet, CellBlock const & block, std::function<void(RowValues const & row)> const & take)
{
  int const rowsAtOnce = std::max(1, blockCellsAtOnce / block.Columns());
  for (int first = block.firstRow; first <= block.lastRow; first += rowsAtOnce) {
    int const rows = std::min(rowsAtOnce, block.lastRow - first + 1);
    COleVariant const values = valuesOf(sheet, {first, block.firstColumn, first + rows - 1, block.lastColumn});
    VARIANT const * const cells = requireValues(values, rows, block.Columns());
    for (int row = 0; row < rows; ++row)
      take(RowValues(cells + row, static_cast<size_t>(rows), static_cast<size_t>(block.Columns())));
  }
}
