// Taking and comparing prints.

#include "tools/sheet/sheet_print.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/sheet/cell_block.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr int64_t mostCells = 1 << 24;  // that are asked of a server for one sheet
constexpr int64_t bandCells = 1 << 16;  // and at once

uint64_t mixed(uint64_t bits)
{
  bits = (bits ^ (bits >> 33)) * 0xFF51AFD7ED558CCDU;
  bits = (bits ^ (bits >> 33)) * 0xC4CEB9FE1A85EC53U;
  return bits ^ (bits >> 33);
}

uint64_t bitsOf(VARIANT const & value)
{
  switch (value.vt) {
    case VT_R8:
      return std::bit_cast<uint64_t>(value.dblVal);
    case VT_BSTR:
      return std::hash<std::u16string_view>()(zp::ViewOf(value.bstrVal));
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE ? 1 : 0;
    case VT_ERROR:
      return static_cast<uint64_t>(value.scode);
    default:
      return 0;
  }
}

constexpr uint64_t placeOf(int row, int column)
{
  return static_cast<uint64_t>(row) << 32 | static_cast<uint32_t>(column);
}

int rowOf(uint64_t place)
{
  return static_cast<int>(place >> 32);
}

int columnOf(uint64_t place)
{
  return static_cast<int>(place & UINT32_MAX);
}

std::string nameOf(uint64_t place)
{
  return NameOfBlock({rowOf(place), columnOf(place), rowOf(place), columnOf(place)});
}

void forEachFilled(GPWorkSheet & sheet, CellBlock const & block,
                   std::function<void(int row, int column, VARIANT const &)> const & take)
{
  int row = block.firstRow;
  ForEachRow(sheet, block, [&](RowValues const & values) {
    for (size_t i = 0; i < values.Count(); ++i)
      if (values[i].vt != VT_EMPTY) take(row, block.firstColumn + static_cast<int>(i), values[i]);
    ++row;
  });
}

}  // namespace

SheetPrint SheetPrint::Of(GPWorkSheet & sheet)
{
  SheetPrint print;
  CellBlock const used = UsedBlock(sheet);
  print.m_bWhole = used.CountCells() <= mostCells;
  if (print.m_bWhole)
    forEachFilled(sheet, used, [&](int row, int column, VARIANT const & value) { print.Add(row, column, value); });
  return print;
}

SheetPrint::Cell SheetPrint::Cell::Of(int row, int column, VARIANT const & value)
{
  return {placeOf(row, column), mixed(bitsOf(value) + mixed(value.vt))};
}

void SheetPrint::Add(int row, int column, VARIANT const & value)
{
  if (value.vt != VT_EMPTY) m_Cells.push_back(Cell::Of(row, column, value));
}

std::string SheetPrint::FindDifference(GPWorkSheet & sheet) const
{
  if (!m_bWhole) return {};
  for (auto first = m_Cells.begin(); first != m_Cells.end();) {
    Band const band = BandFrom(first);
    std::optional<uint64_t> found;
    forEachFilled(sheet, band.block, [&](int row, int column, VARIANT const & value) {
      if (found) return;
      Cell const cell = Cell::Of(row, column, value);
      if (first == band.end)
        found = cell.place;
      else if (*first == cell)
        ++first;
      else
        found = std::min(cell.place, first->place);
    });
    if (!found && first != band.end) found = first->place;
    if (found) return nameOf(*found);
  }
  return FindSurplus(UsedBlock(sheet));
}

// Whole rows with as many cells as can be asked for at once; at least one.
SheetPrint::Band SheetPrint::BandFrom(Place first) const
{
  CellBlock band = {rowOf(first->place), 1, rowOf(first->place), 1};
  Place end = first;
  while (end != m_Cells.end()) {
    CellBlock next = band;
    Place rowEnd = end;
    next.lastRow = rowOf(end->place);
    for (; rowEnd != m_Cells.end() && rowOf(rowEnd->place) == next.lastRow; ++rowEnd)
      next.lastColumn = std::max(next.lastColumn, columnOf(rowEnd->place));
    if (end != first && next.CountCells() > bandCells) break;
    band = next;
    end = rowEnd;
  }
  return {end, band};
}

// The corner of the filled cells, where that lies beyond the rows and columns that were kept.
std::string SheetPrint::FindSurplus(CellBlock const & used) const
{
  int lastRow = 1;
  int lastColumn = 1;
  for (Cell const & cell : m_Cells) {
    lastRow = std::max(lastRow, rowOf(cell.place));
    lastColumn = std::max(lastColumn, columnOf(cell.place));
  }
  bool const isMore = used.lastRow > lastRow || used.lastColumn > lastColumn;
  return isMore ? NameOfBlock({used.lastRow, used.lastColumn, used.lastRow, used.lastColumn}) : std::string();
}

SheetPrints PrintSheets(WorkbookLink & workbook)
{
  SheetPrints prints;
  if (workbook.IsNew()) return prints;
  workbook.ForEachWorksheet(
      [&](std::string const & name, GPWorkSheet & sheet) { prints.emplace_back(name, SheetPrint::Of(sheet)); });
  return prints;
}

void RequireSaved(WorkbookLink & saved, SheetPrints const & added, SheetPrints const & former)
{
  struct Expected {
    SheetPrint const * print;
    bool isNew;
  };
  std::map<std::string, Expected> expected;
  for (auto const & [name, print] : former) expected[name] = {&print, false};
  for (auto const & [name, print] : added) expected[name] = {&print, true};
  std::string lost;
  saved.ForEachWorksheet([&](std::string const & name, GPWorkSheet & sheet) {
    auto const found = expected.extract(name);
    std::string const cell = found.empty() ? "" : found.mapped().print->FindDifference(sheet);
    if (cell.empty()) return;
    std::string const told = fmt::format(
        "{}: was written, but {} of the sheet \"{}\" isn't what it was before: the spreadsheet server, or the "
        "format of the file, doesn't keep every value",
        saved.GetName(), cell, name);
    if (found.mapped().isNew)
      lost = told;
    else
      Tell("warning: " + told);
  });
  if (!expected.empty())
    throw Failure(fmt::format("{}: was written, but has no sheet \"{}\"", saved.GetName(), expected.begin()->first));
  if (!lost.empty()) throw Failure(lost);
}
