// Writing numbers and texts.

#include "tools/text/csv_output.h"

#include "tools/records/csv_table.h"
#include "tools/shown_text.h"
#include "tools/text/cell_text.h"

namespace {

constexpr size_t csvOutputBytes = 0x10000;

}  // namespace

void CsvOutput::AddHead()
{
  if (m_Shape.head.empty()) return;
  std::vector<std::string> names;
  for (size_t i = 0; i < (m_Shape.chosen.empty() ? m_Shape.head.size() : m_Shape.chosen.size()); ++i) {
    size_t const column = m_Shape.ColumnOf(i);
    names.push_back(column < m_Shape.head.size() ? Visible(m_Shape.head[column]) : "");
  }
  std::vector<std::string_view> const fields(names.begin(), names.end());
  AppendCsvLine(m_strPiece, fields);
}

void CsvOutput::Add(std::vector<Cell> const & cells)
{
  for (Cell const & cell : cells) {
    if (&cell != &cells.front()) m_strPiece += ',';
    if (!m_Shape.texts.empty() && m_Shape.IsText(m_Shape.ColumnOf(static_cast<size_t>(&cell - cells.data())))) {
      AppendText(CellText(cell));
    } else {
      m_Reader.Read(cell);
      m_Reader.AppendTo(m_strPiece);
    }
  }
  m_strPiece += '\n';
  if (m_strPiece.size() >= csvOutputBytes) Flush();
}

void CsvOutput::AppendText(std::string const & text)
{
  std::string const shown = Visible(text);
  std::string_view const field = shown;
  AppendCsvLine(m_strPiece, {&field, 1});
  m_strPiece.pop_back();
}

void CsvOutput::Flush()
{
  Print(m_strPiece);
  m_strPiece.clear();
}
