// Column labels, names of cells, and values that reading changes.

#include <gtest/gtest.h>

#include <zpbase/spreadsheet.h>

namespace {

TEST(ColumnLabels, CountFromZeroAndFromOne)
{
  struct Row {
    int column;  // from 0
    char const * label;
  };
  for (Row const & row : {Row{0, "A"}, {25, "Z"}, {26, "AA"}, {51, "AZ"}, {52, "BA"}, {701, "ZZ"}}) {
    CString label;
    EXPECT_EQ(BuildExcelColLabel(label, row.column), 1);
    EXPECT_EQ(label, row.label);
    EXPECT_EQ(GPCell::GetColLabel(label, row.column + 1), 1);
    EXPECT_EQ(label, row.label);
    int index = 0;
    EXPECT_EQ(GPCell::GetColIndex(index, label), 1);
    EXPECT_EQ(index, row.column + 1);
    EXPECT_EQ(GPCell::GetColIndex(index, label.MakeLower()), 1);
    EXPECT_EQ(index, row.column + 1);
  }
  CString kept("kept");
  for (int const outside : {-1, -27, 702, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(BuildExcelColLabel(kept, outside), 0);
    EXPECT_EQ(GPCell::GetColLabel(kept, outside == 702 ? 703 : outside), 0);
  }
  EXPECT_EQ(GPCell::GetColLabel(kept, 0), 0);
  EXPECT_EQ(kept, "kept");
  for (char const * none : {"", "A1", "ABC", "\xC4", "[", "@"}) {
    int index = 7;
    EXPECT_EQ(GPCell::GetColIndex(index, none), 0) << none;
    EXPECT_EQ(index, 0) << none;
  }
}

TEST(GPCell, IsNamedByItsAddressOrByTheLabelGiven)
{
  EXPECT_EQ(GPCell(1, 3).GetName(), "B3");
  EXPECT_EQ(GPCell(702, 3).GetName(), "3");
  EXPECT_EQ(GPCell(0, -1).GetName(), "A4294967295");
  CString labels[] = {"b", "A1"};
  int const columns[] = {2, 0};
  char const * const names[] = {"b12", "A112"};
  for (int i = 0; i < 2; ++i) {
    GPCell cell(labels[i], 12, 1.5);
    int column = -1;
    int row = -1;
    cell.GetCellAddress(column, row);
    EXPECT_EQ(column, columns[i]);
    EXPECT_EQ(row, 12);
    EXPECT_EQ(cell.GetName(), names[i]);
    cell.SetCellAddress(2, 4);
    EXPECT_EQ(cell.GetName(), "C4");
  }
  GPRangeFormat const format(0, 1, 99, 50, "0.00");
  EXPECT_EQ(format.m_strFirst + ":" + format.m_strLast + " " + format.m_strFormat, "A1:CV50 0.00");
}

TEST(GPCell, ReadsItsValueByChangingIt)
{
  int integer = 7;
  unsigned int natural = 7;
  double real = 7;
  CString text("kept");
  GPCell empty(0, 1);
  EXPECT_EQ(empty.GetValue(integer) + empty.GetValue(natural) + empty.GetValue(real) + empty.GetValue(text), 0);
  EXPECT_TRUE(integer == 0 && natural == 0 && real == 0 && text.IsEmpty());

  GPCell wide(0, 1, 70000);
  EXPECT_EQ(wide.GetValue(integer), 1);
  EXPECT_EQ(integer, 4464);
  GPCell ones(0, 1, 0xFFFFu);
  EXPECT_EQ(ones.GetValue(integer) + ones.GetValue(natural), 2);
  EXPECT_EQ(integer, -1);
  EXPECT_EQ(natural, 65535u);

  GPCell number(0, 1, 2.5);
  EXPECT_EQ(number.GetValue(integer), 1);
  EXPECT_EQ(integer, 2);
  EXPECT_EQ(number.GetValue(real), 1);
  EXPECT_EQ(real, 2.0);
  EXPECT_EQ(number.GetValue(text), 1);
  EXPECT_EQ(text, "2");
  EXPECT_EQ(number.GetValue(real), 0);
  EXPECT_EQ(real, 0.0);

  GPCell large(0, 1, 1e6);
  EXPECT_EQ(large.GetValue(integer), 0);
  EXPECT_EQ(integer, 0);
  EXPECT_EQ(large.GetValue(real), 1);
  EXPECT_EQ(real, 1e6);

  GPCell words(0, 1, "5");
  EXPECT_EQ(words.GetValue(integer), 0);
  EXPECT_EQ(words.GetValue().vt, VT_BSTR);
  EXPECT_EQ(words.GetValue(text), 1);
  EXPECT_EQ(text, "5");

  words.SetValue(COleVariant(1, VT_BOOL));
  EXPECT_EQ(words.GetValue(integer), 1);
  EXPECT_EQ(integer, -1);
  words.SetValue(COleVariant(2042, VT_ERROR));
  EXPECT_EQ(words.GetValue(text) + words.GetValue(real), 0);
  EXPECT_EQ(words.GetValue().scode, 2042);
}

}  // namespace
