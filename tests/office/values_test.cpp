// Values that somebody else changes, and those of formulas.

#include <chrono>
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
  GPWorkBook book = OfficeServer().NewBook();
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
  GPWorkBook book = OfficeServer().NewBook();
  GPWorkSheet sheet = SheetOf(book, 1);
  SomebodyElse other;
  char const * const formulas[] = {"=1=1", "=2-1", "=\"\"", "=1/0", "=\"a\"&1", "=0", "=1>2"};
  std::string text;
  for (int row = 0; row < static_cast<int>(std::size(formulas)); ++row)
    other.Cell(0, row)->setFormula(rtl::OUString::createFromAscii(formulas[row]));
  for (int row = 1; row <= static_cast<int>(std::size(formulas)); ++row)
    text += ShownValue(ValueOf(sheet, "A" + std::to_string(row))) + "|";
  EXPECT_EQ(text, "true|number 3FF0000000000000|text |error 2007|text a1|number 0000000000000000|false|");
  book.Close(COleVariant(short{0}));
}

}  // namespace
