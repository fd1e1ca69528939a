// Taking and comparing prints.

#include "tools/sheet/sheet_print.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <optional>
#include <string_view>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/sheet/cell_block.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr int64_t mostCells = 1 << 24;  // that are asked of a server for one sheet

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

std::string nameOf(uint64_t place)
{
  int const row = static_cast<int>(place >> 32);
  int const column = static_cast<int>(place & UINT32_MAX);
  return NameOfBlock({row, column, row, column});
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
  auto next = m_Cells.begin();
  std::optional<uint64_t> found;
  forEachFilled(sheet, UsedBlock(sheet), [&](int row, int column, VARIANT const & value) {
    if (found) return;
    Cell const cell = Cell::Of(row, column, value);
    if (next == m_Cells.end())
      found = cell.place;
    else if (*next == cell)
      ++next;
    else
      found = std::min(cell.place, next->place);
  });
  if (!found && next != m_Cells.end()) found = next->place;
  return found ? nameOf(*found) : std::string();
}

SheetPrints PrintSheets(WorkbookLink & workbook)
{
  SheetPrints prints;
  if (workbook.IsNew()) return prints;
  for (std::string const & name : workbook.ListWorksheets()) {
    GPWorkSheet sheet = workbook.FindWorksheet(name);
    prints.emplace_back(name, SheetPrint::Of(sheet));
  }
  return prints;
}

void RequireSaved(WorkbookLink & saved, SheetPrints const & added, SheetPrints const & former)
{
  auto const toldDifference = [&](std::string const & name, SheetPrint const & print) {
    GPWorkSheet sheet = saved.FindWorksheet(name);
    std::string const cell = print.FindDifference(sheet);
    if (cell.empty()) return cell;
    return fmt::format(
        "{}: was written, but {} of the sheet \"{}\" isn't what it was before: the spreadsheet server, or the "
        "format of the file, doesn't keep every value",
        saved.GetName(), cell, name);
  };
  for (auto const & [name, print] : former)
    if (std::string const told = toldDifference(name, print); !told.empty()) Tell("warning: " + told);
  for (auto const & [name, print] : added)
    if (std::string const told = toldDifference(name, print); !told.empty()) throw Failure(told);
}
