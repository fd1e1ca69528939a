// Writing cells.

#include "servers/embedded/sheet_writer.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>
#include <zpbase/spreadsheet.h>

#include "servers/embedded/cell_names.h"
#include "servers/embedded/cell_text.h"
#include "servers/embedded/number_text.h"

namespace embedded {
namespace {

constexpr size_t bytesOfCell = 40;  // about, of a number with all its digits

void appendText(std::string & xml, std::string_view text)
{
  xml += HasOuterBlanks(text) ? "<is><t xml:space=\"preserve\">" : "<is><t>";
  AppendContent(xml, text);
  xml += "</t></is>";
}

void appendValue(std::string & xml, Cell const & cell)
{
  switch (cell.GetKind()) {
    case CellKind::Number:
      xml += "\"><v>";
      AppendNumber(xml, cell.GetNumber());
      xml += "</v>";
      return;
    case CellKind::Text:
      xml += "\" t=\"inlineStr\">";
      appendText(xml, cell.GetText());
      return;
    case CellKind::Boolean:
      xml += cell.GetBoolean() ? "\" t=\"b\"><v>1</v>" : "\" t=\"b\"><v>0</v>";
      return;
    case CellKind::Error: {
      char const * const text = zp::CellErrorText(cell.GetError());
      xml += "\" t=\"e\"><v>";
      xml += text != nullptr ? text : "#UNKNOWN!";
      xml += "</v>";
      return;
    }
  }
}

class RowWriter {
 public:
  explicit RowWriter(std::string & xml) : m_Xml(xml) {}

  void Add(Cell const & cell)
  {
    if (!m_bOpen || cell.GetRow() != m_nRow) Open(cell.GetRow());
    m_Xml += "<c r=\"";
    m_Xml += NameOf(cell.GetColumn());
    m_Xml += m_strRow;
    appendValue(m_Xml, cell);
    m_Xml += "</c>";
  }

  void Close()
  {
    if (m_bOpen) m_Xml += "</row>";
    m_bOpen = false;
  }

 private:
  void Open(uint32_t row)
  {
    Close();
    m_bOpen = true;
    m_nRow = row;
    m_strRow = std::to_string(row + 1);
    m_Xml += "<row r=\"";
    m_Xml += m_strRow;
    m_Xml += "\">";
  }

  std::string const & NameOf(uint32_t column)
  {
    while (m_Columns.size() <= column) m_Columns.push_back(MakeColumnName(static_cast<uint32_t>(m_Columns.size())));
    return m_Columns[column];
  }

  std::string & m_Xml;
  std::vector<std::string> m_Columns;  // names of the columns so far
  std::string m_strRow;
  uint32_t m_nRow = 0;
  bool m_bOpen = false;
};

// Columns grow with their texts up to a bound, and never below what a program gives them by itself.
constexpr size_t usualWidth = 8;  // characters
constexpr size_t mostWidth = 40;
constexpr size_t shownDigits = 12;  // of a number that has no format

size_t countOfLongestLine(std::string_view text)
{
  size_t longest = 0;
  for (;;) {
    size_t const end = text.find('\n');
    std::string_view const line = text.substr(0, end);
    longest = std::max(longest, line.size() > mostWidth * 4 ? mostWidth : CountUnits(line));
    if (end == std::string_view::npos || longest >= mostWidth) return longest;
    text.remove_prefix(end + 1);
  }
}

// At most what a column can want; atLeast spares the counting of what is no longer.
size_t widthOf(Cell const & cell, size_t atLeast)
{
  switch (cell.GetKind()) {
    case CellKind::Text:
      if (cell.GetText().size() <= atLeast || atLeast >= mostWidth) return 0;
      return std::min(countOfLongestLine(cell.GetText()), mostWidth);
    case CellKind::Number: {
      std::string digits;
      if (atLeast < shownDigits) AppendNumber(digits, cell.GetNumber());
      return std::min(digits.size(), shownDigits);
    }
    case CellKind::Boolean:
    case CellKind::Error:
      break;
  }
  return usualWidth;
}

void appendColumns(std::string & xml, CellStore const & cells)
{
  std::vector<size_t> widths;
  cells.ForEachFrom(0, [&](Cell const & cell) {
    if (widths.size() <= cell.GetColumn()) widths.resize(cell.GetColumn() + 1, usualWidth);
    size_t & width = widths[cell.GetColumn()];
    width = std::max(width, widthOf(cell, width));
    return true;
  });
  std::string columns;
  for (size_t i = 0; i < widths.size(); ++i) {
    if (widths[i] > usualWidth)
      columns += fmt::format("<col min=\"{0}\" max=\"{0}\" width=\"{1}\" bestFit=\"1\"/>", i + 1, widths[i] + 1);
  }
  if (!columns.empty()) xml += "<cols>" + columns + "</cols>";
}

// What stands in front of the cells, in the format's order.
void appendFrame(std::string & xml, Sheet const & sheet)
{
  if (!sheet.tabColor.empty()) xml += "<sheetPr><tabColor" + sheet.tabColor + "/></sheetPr>";
  if (auto const used = sheet.cells.GetUsed()) {
    xml += "<dimension ref=\"" + MakeCellName(used->firstRow, used->firstColumn) + ":" +
           MakeCellName(used->lastRow, used->lastColumn) + "\"/>";
  }
  if (sheet.rightToLeft) xml += "<sheetViews><sheetView rightToLeft=\"1\" workbookViewId=\"0\"/></sheetViews>";
  if (sheet.defaultWidth > 0.0) {
    xml += "<sheetFormatPr defaultColWidth=\"";
    AppendNumber(xml, sheet.defaultWidth);
    xml += "\" defaultRowHeight=\"15\"/>";
  }
  appendColumns(xml, sheet.cells);
}

}  // namespace

std::string MakeSheetPart(Sheet const & sheet)
{
  std::string xml(xmlHead);
  xml.reserve(xml.size() + (sheet.cells.GetCount() + 8) * bytesOfCell);
  xml += "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
  appendFrame(xml, sheet);
  xml += "<sheetData>";
  RowWriter rows(xml);
  sheet.cells.ForEachFrom(0, [&](Cell const & cell) {
    rows.Add(cell);
    return true;
  });
  rows.Close();
  xml += "</sheetData></worksheet>";
  return xml;
}

}  // namespace embedded
