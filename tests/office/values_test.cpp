// Values on their way into cells, through files, and back.

#include <bit>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "servers/office/failure.h"
#include "servers/office/link.h"
#include "tests/office/OfficeServer.h"

namespace {

class OfficeValues : public testing::Test {
 protected:
  void SetUp() override
  {
    if (std::string const why = OfficeServer().WhyNot(); !why.empty()) GTEST_SKIP() << why;
  }

  TempFolder m_Folder;
  CWinApp m_App{"Values"};
};

std::string shown(VARIANT const & value)
{
  char text[64];
  switch (value.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_R8:
      std::snprintf(text, sizeof text, "number %016llX", std::bit_cast<unsigned long long>(value.dblVal));
      return text;
    case VT_BSTR:
      return "text " + std::string(zp::BstrToText(value.bstrVal).GetString());
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE ? "true" : "false";
    case VT_ERROR:
      return "error " + std::to_string(value.scode & 0xFFFF);
    default:
      return "type " + std::to_string(value.vt);
  }
}

COleVariant errorOf(int number)
{
  return COleVariant(static_cast<int>(0x800A0000u + static_cast<unsigned>(number)), VT_ERROR);
}

std::vector<COleVariant> sampleValues()
{
  std::vector<COleVariant> values = {
      COleVariant("plain"),           COleVariant("007"),  COleVariant("=1+1"),       COleVariant("'quoted"),
      COleVariant("caf\xE9 \x80"),    COleVariant("TRUE"), COleVariant("two\nlines"), COleVariant(short{1}, VT_BOOL),
      COleVariant(short{0}, VT_BOOL), COleVariant()};
  for (double const number : {0.0, 1.0, 0.1 + 0.2, -1e300, 1.5e308, 2.2250738585072014e-308, 1.0 / 3})
    values.emplace_back(number);
  for (int const error : {2000, 2007, 2015, 2023, 2029, 2036, 2042}) values.push_back(errorOf(error));
  return values;
}

// What the office's formats keep of a value: .xls no Booleans and one error for all, .ods and .xlsx 15 digits of a number.
std::string keptIn(char const * extension, VARIANT const & value)
{
  if (std::string_view(extension) == "xls") {
    if (value.vt == VT_BOOL) return shown(COleVariant(value.boolVal == VARIANT_TRUE ? 1.0 : 0.0));
    return shown(value.vt == VT_ERROR ? errorOf(2042) : COleVariant(value));
  }
  if (value.vt != VT_R8 || std::string_view(extension).empty()) return shown(value);
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.14e", value.dblVal);
  return shown(COleVariant(std::strtod(digits, nullptr)));
}

void expectSamples(GPWorkSheet & sheet, char const * extension)
{
  std::vector<COleVariant> const values = sampleValues();
  LONG const count = static_cast<LONG>(values.size());
  COleVariant const read = ValueOf(sheet, "A1:B" + std::to_string(count));
  ASSERT_EQ(read.vt, VT_ARRAY | VT_VARIANT);
  for (LONG row = 1; row <= count; ++row) {
    std::string const expected = keptIn(extension, values[static_cast<size_t>(row - 1)]);
    EXPECT_EQ(shown(ValueOf(sheet, "A" + std::to_string(row))), expected) << extension;
    for (LONG const column : {1, 2}) {
      LONG const place[] = {row, column};
      void * element = nullptr;
      ASSERT_EQ(SafeArrayPtrOfIndex(read.parray, place, &element), S_OK);
      EXPECT_EQ(shown(*static_cast<VARIANT *>(element)), expected) << extension << " column " << column;
    }
  }
  auto used = Attached<GPRange>(sheet.GetUsedRange());
  EXPECT_EQ(used.GetRow() * 1000 + used.GetColumn(), 1001);
  EXPECT_EQ(Attached<GPRange>(used.GetRows()).GetCount(), count);
  EXPECT_EQ(Attached<GPRange>(used.GetColumns()).GetCount(), 2);
}

// The samples as a block of one column, from index 0.
COleVariant sampleBlock()
{
  std::vector<COleVariant> const values = sampleValues();
  SAFEARRAYBOUND const bounds[] = {{static_cast<DWORD>(values.size()), 0}, {1, 0}};
  COleVariant block;
  block.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  block.vt = VT_ARRAY | VT_VARIANT;
  for (size_t row = 0; row < values.size(); ++row) {
    LONG const place[] = {static_cast<LONG>(row), 0};
    void * element = nullptr;
    EXPECT_EQ(SafeArrayPtrOfIndex(block.parray, place, &element), S_OK);
    EXPECT_EQ(VariantCopy(static_cast<VARIANT *>(element), &values[row]), S_OK);
  }
  return block;
}

TEST_F(OfficeValues, ComeBackAsTheyWerePutWhateverTheFile)
{
  std::vector<COleVariant> const values = sampleValues();
  for (char const * extension : {"xlsx", "xls", "ods"}) {
    CString const name = m_Folder.Name(std::string("values.") + extension);
    GPWorkBook book = NewBook();
    GPWorkSheet sheet = SheetOf(book, 1);
    for (size_t row = 0; row < values.size(); ++row) Put(sheet, "A" + std::to_string(row + 1), values[row]);
    Put(sheet, "B1:B" + std::to_string(values.size()), sampleBlock());
    expectSamples(sheet, "");
    book.SaveAs(COleVariant(name));
    EXPECT_EQ(book.GetFullName(), name);
    book.Close(COleVariant(short{0}));
    GPWorkBook again = OpenBook(name);
    GPWorkSheet loaded = SheetOf(again, 1);
    expectSamples(loaded, extension);
    again.Close(COleVariant(short{0}));
  }
}

// A second connection to the office of these tests, as another program would have.
class SomebodyElse {
 public:
  SomebodyElse()
  try : m_Link({SharedPipe(), "", "", 1}) {
  } catch (office::Failure const & failure) {
    ADD_FAILURE() << failure.sentence;
  }

  auto Cell(int column, int row)
  {
    namespace css = com::sun::star;
    auto const book = m_Link.ListWorkbooks().back();
    css::uno::Reference<css::container::XIndexAccess> const sheets(book->getSheets(), css::uno::UNO_QUERY_THROW);
    css::uno::Reference<css::sheet::XSpreadsheet> const sheet(sheets->getByIndex(0), css::uno::UNO_QUERY_THROW);
    return sheet->getCellByPosition(column, row);
  }

 private:
  office::Link m_Link;
};

TEST_F(OfficeValues, AreReadAheadWithoutHidingWhatOthersWrite)
{
  GPWorkBook book = NewBook();
  GPWorkSheet sheet = SheetOf(book, 1);
  for (char const * cell : {"A1", "B1", "C1", "D1", "E1"}) Put(sheet, cell, COleVariant(1.5));
  SomebodyElse other;
  auto const read = [&sheet](char const * cell) { return ValueOf(sheet, cell).dblVal; };

  EXPECT_EQ(read("A1") + read("B1"), 3.0);  // now the block is there
  other.Cell(1, 0)->setValue(2.5);
  EXPECT_EQ(read("B1"), 2.5);  // a second look asks the office
  EXPECT_EQ(read("C1"), 1.5);  // a block again
  other.Cell(3, 0)->setValue(3.5);
  Put(sheet, "E1", COleVariant(4.5));
  EXPECT_EQ(read("D1"), 3.5);  // the first look after a write of our own asks, too
  EXPECT_EQ(read("E1"), 4.5);
  other.Cell(5, 0)->setFormula("=SUM(A1:E1)");
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  EXPECT_EQ(read("F1"), 13.5);  // and one that comes late
  book.Close(COleVariant(short{0}));
}

TEST_F(OfficeValues, TellFormulasByWhatTheyGive)
{
  GPWorkBook book = NewBook();
  GPWorkSheet sheet = SheetOf(book, 1);
  SomebodyElse other;
  char const * const formulas[] = {"=1=1", "=2-1", "=\"\"", "=1/0", "=\"a\"&1", "=0", "=1>2"};
  std::string text;
  for (int row = 0; row < static_cast<int>(std::size(formulas)); ++row)
    other.Cell(0, row)->setFormula(rtl::OUString::createFromAscii(formulas[row]));
  for (int row = 1; row <= static_cast<int>(std::size(formulas)); ++row)
    text += shown(ValueOf(sheet, "A" + std::to_string(row))) + "|";
  EXPECT_EQ(text, "true|number 3FF0000000000000|text |error 2007|text a1|number 0000000000000000|false|");
  book.Close(COleVariant(short{0}));
}

TEST_F(OfficeValues, HaveNamesInAnyForm)
{
  GPWorkBook book = NewBook();
  GPWorkSheet sheet = SheetOf(book, 1);
  struct Row {
    char const * name;
    char const * place;  // row, column, rows, columns
  };
  for (Row const & row : {Row{"a1", "1 1 1 1"}, Row{"$CV$50", "50 100 1 1"}, Row{"B2:D5", "2 2 4 3"}, Row{"d5:$b$2", "2 2 4 3"},
                          Row{"XFD1048576", "1048576 16384 1 1"}, Row{"XFE1", "none"}, Row{"A0", "none"}, Row{"A1:", "none"},
                          Row{"A1048577", "none"}, Row{"", "none"}, Row{"A99999999999", "none"}, Row{"1", "none"}}) {
    std::string place = "none";
    std::string const told = WhatIsTold([&] {
      auto range = Attached<GPRange>(sheet.GetCell(COleVariant(row.name)));
      place = std::to_string(range.GetRow()) + " " + std::to_string(range.GetColumn()) + " " +
              std::to_string(Attached<GPRange>(range.GetRows()).GetCount()) + " " +
              std::to_string(Attached<GPRange>(range.GetColumns()).GetCount());
    });
    EXPECT_EQ(place, row.place) << row.name;
    EXPECT_EQ(told.empty(), place != "none") << told;
  }
  book.Close(COleVariant(short{0}));
}

}  // namespace
