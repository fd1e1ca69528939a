// The workbook in memory, its texts and numbers, and the way into a file and back.

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <span>
#include <sstream>

#include <gtest/gtest.h>

#include <zpbase/spreadsheet.h>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/iso_dates.h"
#include "servers/embedded/sheet_writer.h"
#include "servers/embedded/workbook_reader.h"
#include "servers/embedded/workbook_writer.h"
#include "tests/embedded/book_text.h"

namespace {

using embedded::Cell;
using embedded::CellStore;
using embedded::SharedText;

void put(CellStore & cells, uint32_t row, uint32_t column, Cell cell)
{
  cell.SetPlace(row, column);
  cells.Put(std::move(cell));
}

embedded::Sheet & addSheet(embedded::Workbook & book, std::string const & name, embedded::SheetKind kind)
{
  book.sheets.push_back(std::make_unique<embedded::Sheet>());
  book.sheets.back()->name = name;
  book.sheets.back()->kind = kind;
  return *book.sheets.back();
}

TEST(CellStore, KeepsCellsInOrderHoweverTheyCome)
{
  std::minstd_rand random(3);
  CellStore cells;
  std::map<std::pair<uint32_t, uint32_t>, std::string> expected;
  for (int step = 0; step < 20000; ++step) {
    auto const row = static_cast<uint32_t>(random() % 60);
    auto const column = static_cast<uint32_t>(random() % 60);
    if (random() % 4 == 0) {
      cells.Clear(row, column);
      expected.erase({row, column});
      continue;
    }
    std::string const text = std::to_string(step);
    put(cells, row, column, Cell::OfText(SharedText(text)));
    expected[{row, column}] = text;
  }
  ASSERT_EQ(cells.GetCount(), expected.size());
  auto next = expected.lower_bound({30, 0});
  cells.ForEachFrom(30, [&](Cell const & cell) {
    EXPECT_EQ(std::pair(cell.GetRow(), cell.GetColumn()), next->first);
    EXPECT_EQ(cell.GetText(), next->second);
    EXPECT_EQ(cells.Find(cell.GetRow(), cell.GetColumn()), &cell);
    return ++next != expected.end();
  });
  EXPECT_EQ(next, expected.end());
  for (uint32_t row = 0; row < 60; ++row)
    for (uint32_t column = 0; column < 60; ++column) cells.Clear(row, column);
  EXPECT_EQ(cells.GetCount(), 0U);
  EXPECT_FALSE(cells.GetUsed());
}

TEST(IsoDates, CountDaysInBothEpochs)
{
  struct {
    char const * text;
    bool from1904;
    double days;  // negative: no date
  } const cases[] = {{"1899-12-31", false, 0},
                     {"1900-02-28", false, 59},
                     {"1900-03-01", false, 61},
                     {"2024-02-29", false, 45351},
                     {"2024-02-29", true, 43889},
                     {"2024-02-29T18:00:00.5", false, 45351.750005787036},
                     {"24:00", false, 1},
                     {"1899-12-30", false, -1},
                     {"1903-12-31", true, -1},
                     {"2024-2-29", false, -1},
                     {"2024-02-29 18:00", false, -1},
                     {"2024-02-29T", false, -1},
                     {"18:60", false, -1},
                     {"", false, -1}};
  for (auto const & row : cases)
    EXPECT_DOUBLE_EQ(embedded::ReadIsoDate(row.text, row.from1904).value_or(-1), row.days) << row.text;
}

TEST(CellText, HoldsAnyRowOf16BitCharacters)
{
  std::u16string const wide = u"a\u00E9\u20AC\U0001F600\xD800z\xDC00";
  std::string const text = embedded::FromWide(wide);
  EXPECT_EQ(text, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xED\xA0\x80z\xED\xB0\x80");
  EXPECT_EQ(embedded::ToWide(text), wide);
  EXPECT_EQ(embedded::CountUnits(text), wide.size());
  EXPECT_EQ(embedded::ToWide("\xFF\xC3(\xE2\x82"), u"\uFFFD\uFFFD(\uFFFD\uFFFD");
  EXPECT_EQ(embedded::FoldCase("stra\xC3\x9F"
                               "e \xC3\xBF \xCF\x89 \xD1\x8F \xE1\xBA\xA1 \xD5\xA1 \xC4\xB1"),
            "STRA\xC3\x9F"
            "E \xC5\xB8 \xCE\xA9 \xD0\xAF \xE1\xBA\xA0 \xD4\xB1 \xC4\xB1");
}

TEST(WorkbookFile, GivesEveryCellBack)
{
  embedded::Workbook book;
  book.from1904 = true;
  CellStore & cells = addSheet(book, "Bits & <\"texts\">", embedded::SheetKind::Worksheet).cells;
  std::mt19937_64 random(7);
  for (uint32_t row = 0; row < 2000; ++row) {
    auto const number = std::bit_cast<double>(random());
    if (std::isfinite(number)) put(cells, row, 0, Cell::OfNumber(number));
  }
  put(cells, 0, 0, Cell::OfNumber(-0.0));
  put(cells, 1, 0, Cell::OfNumber(5e-324));
  uint32_t row = 0;
  for (char const * text :
       {"", " x ", "\n", "a\rb\tc", "_x000D_ __x0041_", "<&>\"'", "\x01\xED\xA0\x80\xEF\xBF\xBF", "\xF0\x9F\x98\x80"})
    put(cells, row++, 1, Cell::OfText(SharedText(text)));
  put(cells, 0, 2, Cell::OfBoolean(true));
  put(cells, 1, 2, Cell::OfBoolean(false));
  for (uint16_t code = 2000; code < 2051; ++code)
    if (zp::CellErrorText(code) != nullptr) put(cells, code, 3, Cell::OfError(code));
  put(cells, 1048575, 16383, Cell::OfText(SharedText(std::string(32767, 'x'))));
  addSheet(book, "Chart\t\r\n\x01 _x0041_", embedded::SheetKind::Chart);
  addSheet(book, "Hidden", embedded::SheetKind::Worksheet).visibility = embedded::Visibility::Hidden;

  std::string const bytes = embedded::PackWorkbook(book);
  embedded::Workbook const back = embedded::ReadWorkbook(std::as_bytes(std::span(bytes)));
  EXPECT_EQ(TellBook(back), TellBook(book));
  EXPECT_TRUE(back.from1904);
  EXPECT_EQ(back.unkept.GetPhrases(), std::vector<std::string>());
  EXPECT_EQ(embedded::PackWorkbook(back), bytes);
  EXPECT_THROW(embedded::PackWorkbook(embedded::Workbook()), embedded::BookFailure);
}

TEST(WorkbookFile, MakesColumnsAsWideAsTheirLongestLine)
{
  embedded::Workbook book;
  CellStore & cells = addSheet(book, "A", embedded::SheetKind::Worksheet).cells;
  put(cells, 0, 0, Cell::OfText(SharedText("short")));
  put(cells, 0, 1, Cell::OfText(SharedText("vapour pressure [Pa]\nB")));
  put(cells, 9, 1, Cell::OfNumber(1.5));
  put(cells, 0, 3, Cell::OfText(SharedText(std::string(200, 'x'))));
  put(cells, 1, 3, Cell::OfText(SharedText("short again")));
  put(cells, 0, 4, Cell::OfNumber(0.1234567890123));
  put(cells, 0, 5, Cell::OfText(SharedText("\xC3\x84\xC3\x84\xC3\x84\xC3\x84\xC3\x84")));
  EXPECT_NE(
      embedded::MakeSheetPart(*book.sheets[0])
          .find("<cols><col min=\"2\" max=\"2\" width=\"21\" bestFit=\"1\"/><col min=\"4\" max=\"4\" width=\"41\" bestFit=\"1\"/>"
                "<col min=\"5\" max=\"5\" width=\"13\" bestFit=\"1\"/></cols><sheetData>"),
      std::string::npos);
}

TEST(WorkbookFile, TakesTheFormerFilesPlaceOrLeavesIt)
{
  std::filesystem::path const folder = std::filesystem::temp_directory_path() / "zp_workbook_test";
  std::filesystem::create_directories(folder);
  std::string const file = folder / "book.xlsx";
  std::ofstream(file) << "former";
  embedded::Workbook book;
  servers::FileStamp const stamp = servers::StampOf(file);
  EXPECT_THROW(embedded::WriteWorkbook(book, file, stamp), embedded::BookFailure);
  std::ifstream former(file);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(former), {}), "former");
  put(addSheet(book, "A", embedded::SheetKind::Worksheet).cells, 0, 0, Cell::OfNumber(1));
  EXPECT_THROW(embedded::WriteWorkbook(book, file, {}), embedded::BookFailure);
  servers::FileStamp const written = embedded::WriteWorkbook(book, file, stamp);
  EXPECT_EQ(written, servers::StampOf(file));
  EXPECT_THROW(embedded::WriteWorkbook(book, file, stamp), embedded::BookFailure);
  EXPECT_EQ(TellBook(embedded::ReadWorkbook(file)), "A: A1=1");
  EXPECT_THROW(embedded::WriteWorkbook(book, folder / "no folder" / "book.xlsx", {}), embedded::BookFailure);
  std::filesystem::remove_all(folder);
}

}  // namespace
