// Writing cells.

#include "servers/embedded/sheet_writer.h"

#include <vector>

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
