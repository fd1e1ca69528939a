// Workbooks, their values and their files, on whatever server has any.

#include "tests/servers/BookServer.h"

#include <filesystem>

namespace {

std::vector<COleVariant> sampleValues()
{
  std::vector<COleVariant> values = {
      COleVariant("plain"),           COleVariant("007"),  COleVariant("=1+1"),       COleVariant("'quoted"),
      COleVariant("caf\xE9 \x80"),    COleVariant("TRUE"), COleVariant("two\nlines"), COleVariant(short{1}, VT_BOOL),
      COleVariant(short{0}, VT_BOOL), COleVariant()};
  for (double const number : {0.0, 1.0, 0.1 + 0.2, -1e300, 1.5e308, 2.2250738585072014e-308, 1.0 / 3})
    values.emplace_back(number);
  for (int const error : {2000, 2007, 2015, 2023, 2029, 2036, 2042}) values.push_back(ErrorOf(error));
  return values;
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

void expectSamples(GPWorkSheet & sheet, std::function<std::string(VARIANT const &)> const & kept)
{
  std::vector<COleVariant> const values = sampleValues();
  LONG const count = static_cast<LONG>(values.size());
  COleVariant const read = ValueOf(sheet, "A1:B" + std::to_string(count));
  ASSERT_EQ(read.vt, VT_ARRAY | VT_VARIANT);
  for (LONG row = 1; row <= count; ++row) {
    std::string const expected = kept(values[static_cast<size_t>(row - 1)]);
    EXPECT_EQ(ShownValue(ValueOf(sheet, "A" + std::to_string(row))), expected);
    for (LONG const column : {1, 2}) {
      LONG const place[] = {row, column};
      void * element = nullptr;
      ASSERT_EQ(SafeArrayPtrOfIndex(read.parray, place, &element), S_OK);
      EXPECT_EQ(ShownValue(*static_cast<VARIANT *>(element)), expected) << "column " << column;
    }
  }
  auto used = Attached<GPRange>(sheet.GetUsedRange());
  EXPECT_EQ(used.GetRow() * 1000 + used.GetColumn(), 1001);
  EXPECT_EQ(Attached<GPRange>(used.GetRows()).GetCount(), count);
  EXPECT_EQ(Attached<GPRange>(used.GetColumns()).GetCount(), 2);
}

TEST_P(BookSuite, GivesValuesBackAsTheyWerePutWhateverTheFile)
{
  std::vector<COleVariant> const values = sampleValues();
  for (std::string const & extension : m_pServer->Extensions()) {
    SCOPED_TRACE(extension);
    CString const name = m_Folder.Name("values." + extension);
    GPWorkBook book = m_pServer->NewBook();
    GPWorkSheet sheet = SheetOf(book, 1);
    for (size_t row = 0; row < values.size(); ++row) Put(sheet, "A" + std::to_string(row + 1), values[row]);
    Put(sheet, "B1:B" + std::to_string(values.size()), sampleBlock());
    expectSamples(sheet, ShownValue);
    book.SaveAs(COleVariant(name));
    EXPECT_EQ(book.GetFullName(), name);
    book.Close(COleVariant(short{0}));
    GPWorkBook again = m_pServer->OpenBook(name);
    GPWorkSheet loaded = SheetOf(again, 1);
    expectSamples(loaded, [&](VARIANT const & value) { return m_pServer->KeptIn(extension, value); });
    again.Close(COleVariant(short{0}));
  }
}

TEST_P(BookSuite, TakesNamesOfBlocksInAnyForm)
{
  GPWorkBook book = m_pServer->NewBook();
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

TEST_P(BookSuite, RefusesWithTheFileAndTheReason)
{
  GPWorkBook book = m_pServer->NewBook();
  book.SaveAs(COleVariant(m_Folder.Name("good.xlsx")));
  std::string const bytes = m_Folder.Read("good.xlsx");
  m_Folder.Write("cut.xlsx", bytes.substr(0, bytes.size() / 2));
  m_Folder.Write("garbage.xlsx", "PK\3\4 but no workbook");
  m_Folder.Write("empty.xlsx", "");
  std::filesystem::create_directory(m_Folder.Path() / "folder.xlsx");
  struct Row {
    char const * file;
    char const * reason;
  };
  for (Row const & row :
       {Row{"missing.xlsx", "No such file"}, Row{"none/missing.xlsx", "No such file"}, Row{"folder.xlsx", "is no file"},
        Row{"cut.xlsx", ""}, Row{"garbage.xlsx", ""}, Row{"empty.xlsx", "is empty"}}) {
    std::string const told = WhatIsTold([&] { m_pServer->OpenBook(m_Folder.Name(row.file)); });
    EXPECT_NE(told.find(row.reason), std::string::npos) << row.file << ": " << told;
    EXPECT_NE(told.find(row.file), std::string::npos) << told;
  }
  auto const saving = [&](char const * file) { return WhatIsTold([&] { book.SaveAs(COleVariant(m_Folder.Name(file))); }); };
  EXPECT_NE(saving("cut.xlsx").find("is there already"), std::string::npos);
  EXPECT_NE(saving("new.doc").find("format"), std::string::npos);
  EXPECT_NE(saving("none/new.xlsx").find("can't be written"), std::string::npos);
  EXPECT_NE(saving((std::string(300, 'l') + ".xlsx").c_str()).find("File name too long"), std::string::npos);
  EXPECT_EQ(saving("good.xlsx"), "");
  EXPECT_EQ(WhatIsTold([&] { m_pServer->OpenBook(CString()); }), "No file is named");
  GPWorkBook same = m_pServer->OpenBook(m_Folder.Name("good.xlsx"));
  EXPECT_EQ(Attached<GPWorkBooks>(m_pServer->Application().GetWorkBooks()).GetCount(), 1);
  GPWorkBook fresh = m_pServer->NewBook();
  EXPECT_NE(WhatIsTold([&] { fresh.Save(); }).find("no file yet"), std::string::npos);
  GPWorkSheet sheet = SheetOf(fresh, 1);
  auto sheets = Attached<GPWorkSheets>(fresh.GetWorkSheets());
  auto charts = Attached<GPCharts>(fresh.GetCharts());
  fresh.Close(COleVariant(short{0}));
  for (std::function<void()> const & call : std::vector<std::function<void()>>{
           [&] { fresh.GetFullName(); }, [&] { sheets.GetCount(); }, [&] { charts.Add(); }, [&] { sheet.GetName(); },
           [&] { ValueOf(sheet, "A1"); }, [&] { ValueOf(sheet, "no name"); }})
    EXPECT_EQ(WhatIsTold(call), "800401FD");
  EXPECT_EQ(WhatIsTold([&] { SheetOf(book, 2); }), "8002000B");
  EXPECT_EQ(WhatIsTold([&] { book.InvokeHelper(1, DISPATCH_METHOD, VT_EMPTY, nullptr, nullptr); }), "80020003");
  book.Close(COleVariant(short{0}));
}

TEST_P(BookSuite, LeavesSheetsAndChartsTheirNames)
{
  GPWorkBook book = m_pServer->NewBook();
  GPWorkSheet first = SheetOf(book, 1);
  auto second = Attached<GPWorkSheet>(Attached<GPWorkSheets>(book.GetWorkSheets()).Add());
  std::string const name = second.GetName().GetString();
  for (char const * refused : {"", "a:b", "a/b", "sheet1", "12345678901234567890123456789012"}) {
    EXPECT_EQ(WhatIsTold([&] { second.SetName(refused); }), "80070057") << refused;
    EXPECT_EQ(second.GetName(), name.c_str());
  }
  auto charts = Attached<GPCharts>(book.GetCharts());
  auto chart = Attached<GPChart>(charts.Add());
  auto unnamed = Attached<GPChart>(charts.Add());
  EXPECT_EQ(chart.GetName(), "Chart1");
  EXPECT_EQ(WhatIsTold([&] { chart.SetName("CHART2"); }), "80070057");
  chart.SetName("Profile");
  CString const file = m_Folder.Name("charts." + m_pServer->Extensions().back());
  book.SaveAs(COleVariant(file));
  book.Close(COleVariant(short{1}));
  GPWorkBook again = m_pServer->OpenBook(file);
  EXPECT_EQ(Attached<GPCharts>(again.GetCharts()).GetCount(), 2);
  EXPECT_EQ(Attached<GPChart>(again.GetChart(COleVariant(short{1}))).GetName(), "Profile");
  again.Close(COleVariant(short{0}));
}

}  // namespace
