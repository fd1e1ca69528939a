// Column labels, cells with their names and values, and blocks of cells.

#include <zpbase/spreadsheet.h>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/exceptions.h>

namespace {

constexpr int letters = 26;
constexpr int labelCount = letters + letters * letters;

// The letter of an ordinal, 'A' being 1.
char letterOf(int ordinal)
{
  return static_cast<char>('A' - 1 + ordinal);
}

CString nameOf(int column, int row)
{
  CString label;
  BuildExcelColLabel(label, column);
  CString name;
  name.Format("%s%u", label.GetString(), static_cast<unsigned int>(row));
  return name;
}

COleVariant integerOf(unsigned int value)
{
  return COleVariant(static_cast<short>(value));
}

}  // namespace

int BuildExcelColLabel(CString & label, int column)
{
  if (column < 0 || column >= labelCount) return 0;
  char const last = letterOf(column % letters + 1);
  int const first = column / letters;
  label.Empty();
  if (first != 0) label += letterOf(first);
  label += last;
  return 1;
}

GPCell::GPCell(int column, int row) : m_nColumn(column), m_nRow(row)
{
  BuildName();
}

GPCell::GPCell(int column, int row, int const & value) : GPCell(column, row)
{
  m_Value = integerOf(static_cast<unsigned int>(value));
}

GPCell::GPCell(int column, int row, unsigned int const & value) : GPCell(column, row)
{
  m_Value = integerOf(value);
}

GPCell::GPCell(int column, int row, double const & value) : GPCell(column, row)
{
  m_Value = value;
}

GPCell::GPCell(int column, int row, char const * value) : GPCell(column, row)
{
  m_Value = COleVariant(value);
}

GPCell::GPCell(int column, int row, CString const & value) : GPCell(column, row)
{
  m_Value = value;
}

GPCell::GPCell(CString & label, int row, double const & value) : m_nColumn(0), m_nRow(row), m_Value(value)
{
  GetColIndex(m_nColumn, label);
  m_strName.Format("%s%u", label.GetString(), static_cast<unsigned int>(row));
}

void GPCell::BuildName()
{
  m_strName = nameOf(m_nColumn, m_nRow);
}

void GPCell::GetCellAddress(int & column, int & row) const
{
  column = m_nColumn;
  row = m_nRow;
}

void GPCell::SetCellAddress(int column, int row)
{
  m_nColumn = column;
  m_nRow = row;
  BuildName();
}

int GPCell::ChangeType(unsigned short type)
{
  if (m_Value.vt == type) return 1;
  if (m_Value.vt == VT_EMPTY || m_Value.vt == VT_BSTR) return 0;
  try {
    m_Value.ChangeType(type);
    return 1;
  } catch (COleException * raised) {
    zp::ExceptionGuard const guard(raised);
    return 0;
  }
}

int GPCell::GetValue(int & out)
{
  int const done = ChangeType(VT_I2);
  out = done != 0 ? m_Value.iVal : 0;
  return done;
}

int GPCell::GetValue(unsigned int & out)
{
  int const done = ChangeType(VT_I2);
  out = done != 0 ? static_cast<WORD>(m_Value.iVal) : 0;
  return done;
}

int GPCell::GetValue(double & out)
{
  int const done = ChangeType(VT_R8);
  out = done != 0 ? m_Value.dblVal : 0.0;
  return done;
}

int GPCell::GetValue(CString & out)
{
  int const done = ChangeType(VT_BSTR);
  out = done != 0 ? zp::BstrToText(m_Value.bstrVal) : CString();
  return done;
}

int GPCell::GetColLabel(CString & label, int column)
{
  return column >= 1 ? BuildExcelColLabel(label, column - 1) : 0;
}

int GPCell::GetColIndex(int & column, CString const & label)
{
  column = 0;
  std::string_view const text = label.View();
  if (text.empty() || text.size() > 2) return 0;
  int index = 0;
  for (char const c : text) {
    if (!zp::IsLetter(c)) return 0;
    index = index * letters + zp::ToUpper(c) - letterOf(0);
  }
  column = index;
  return 1;
}

GPRangeFormat::GPRangeFormat(int firstColumn, int firstRow, int lastColumn, int lastRow, char const * format)
    : m_strFirst(nameOf(firstColumn, firstRow)), m_strLast(nameOf(lastColumn, lastRow)), m_strFormat(format)
{
}
