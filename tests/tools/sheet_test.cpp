// zp sheet and zp store export --sheet: whole outputs, and the state of the files.

#include <algorithm>
#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include "tests/embedded/stored_package.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tools/sheet/sheet_print.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr char const * table =
    "name,value,flag\nWater,0.30000000000000004,TRUE\n\"a \"\"q\"\", b\",007,#N/A\n,-1e-300,\n"
    "\xD0\x96\xF0\x9F\x98\x80,12345678901234567890,FALSE\n";

class SheetTool : public testing::Test {
 protected:
  // Standard output, or what is told behind the exit status.
  std::string Run(std::string const & arguments, std::string const & input = "") const
  {
    ProgramRun const run = RunZp(m_Folder.Path(), arguments, input);
    EXPECT_EQ(run.err.empty(), run.status == 0) << arguments << run.err;
    return run.status == 0 ? run.out : std::to_string(run.status) + " " + run.err;
  }

  std::string Path(char const * file) const { return (m_Folder.Path() / file).string(); }

  TempFolder m_Folder;
};

TEST_F(SheetTool, PutsATableIntoANewSheetAndReadsItBack)
{
  m_Folder.Write("t.csv", table);
  EXPECT_EQ(Run("sheet write b.xlsx Data t.csv"), "5 rows of up to 3 columns in the new sheet \"Data\" of b.xlsx\n");
  EXPECT_EQ(Run("sheet read b.xlsx data"), table);
  EXPECT_EQ(Run("sheet read b.xlsx Data"), Run("sheet read b.xlsx Data A1:C5 --server Zephlow.Workbooks"));
  EXPECT_EQ(
      Run("sheet read b.xlsx Data b4:A2 --json"),
      "{\"sheet\":\"Data\",\"block\":\"A2:B4\",\"rows\":[\n [\"Water\",0.30000000000000004],\n [\"a \\\"q\\\", b\",\"007\"],\n "
      "[null,-1e-300]\n]}\n");
  EXPECT_EQ(Run("sheet read b.xlsx Data ZZ1:AAA2"), ",\n,\n");
  EXPECT_EQ(Run("sheet write b.xlsx \xD0\x96 -", "\"#N/A\"\n\n\"\"\n2,x\n"),
            "3 rows of up to 2 columns in the new sheet \"\xD0\x96\" of b.xlsx\n");
  EXPECT_EQ(Run("sheet read b.xlsx \xD0\xB6"), "\"#N/A\",\n,\n2,x\n");
  EXPECT_EQ(Run("sheet chart b.xlsx Profile"), "the new chart \"Profile\" of b.xlsx\n");
  EXPECT_EQ(Run("sheet list b.xlsx"),
            "worksheet  \xD0\x96                                A1:B3\nworksheet  Data                             A1:C5\n"
            "chart      Profile\n");
}

TEST_F(SheetTool, TakesTablesOfOtherDesktops)
{
  Run("sheet write n.xlsx German -", "T;p, bar\n298,15;\"3,2\"\n1.5;1,2,3\n");
  EXPECT_EQ(Run("sheet read n.xlsx German"), "T,\"p, bar\"\n298.15,3.2\n1.5,\"1,2,3\"\n");
  Run("sheet write n.xlsx Wide -", std::string("\xFF\xFE\xE9\0,\0"
                                               "1\0",
                                               8));
  EXPECT_EQ(Run("sheet read n.xlsx Wide"), "\u00E9,1\n");
}

TEST_F(SheetTool, TakesForANumberWhatADoubleHolds)
{
  Run("sheet write n.xlsx N -", "9007199254740992,-9007199254740992,9007199254740993,-9007199254740993,10000000000000000,-0\n");
  EXPECT_EQ(Run("sheet read n.xlsx N --json"),
            "{\"sheet\":\"N\",\"block\":\"A1:F1\",\"rows\":[\n [9007199254740992,-9007199254740992,\"9007199254740993\","
            "\"-9007199254740993\",\"10000000000000000\",-0.0]\n]}\n");
  std::string const beyond = "1.2345678901234568e+17,-1.2345678901234567e+19\n";
  Run("sheet write n.xlsx Beyond -", "1.2345678901234568e17,-12345678901234567890.5\n");
  EXPECT_EQ(Run("sheet read n.xlsx Beyond"), beyond);
  Run("sheet write n.xlsx Again -", beyond);
  EXPECT_EQ(Run("sheet read n.xlsx Again"), beyond);
}

// Memory goes by the fields that there are, not by the rows times the widest one.
TEST_F(SheetTool, TakesRaggedTables)
{
  std::string wide = "1";
  for (int i = 1; i < 16384; ++i) wide += ",1";
  std::string narrow;
  for (int i = 0; i < 30000; ++i) narrow += "1\n";
  EXPECT_EQ(Run("sheet write r.xlsx Last -", narrow + wide + "\n"),
            "30001 rows of up to 16384 columns in the new sheet \"Last\" of r.xlsx\n");
  EXPECT_EQ(Run("sheet write r.xlsx First -", wide + "\n" + narrow),
            "30001 rows of up to 16384 columns in the new sheet \"First\" of r.xlsx\n");
  EXPECT_EQ(Run("sheet read r.xlsx First XFC1:XFD2"), "1,1\n,\n");
  EXPECT_EQ(Run("sheet read r.xlsx Last A30000:B30001"), "1,\n1,1\n");
}

TEST_F(SheetTool, RefusesInOneLineAndLeavesTheFile)
{
  m_Folder.Write("t.csv", table);
  Run("sheet write b.xlsx Data t.csv");
  std::string const bytes = m_Folder.Read("b.xlsx");
  m_Folder.Write("far.xlsx", MakeBookPackage("<worksheet xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
                                             "<sheetData><row><c><v>1</v></c></row><row r='1048576'><c r='XFD1048576'><v>2</v>"
                                             "</c></row></sheetData></worksheet>",
                                             "")
                                 .Finish());
  m_Folder.Write("odd.xlsx", MakeBookPackage("<worksheet xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
                                             "<sheetData><row><c t='b'><v>\u0416</v></c></row></sheetData></worksheet>",
                                             "")
                                 .Finish());
  struct Row {
    char const * arguments;
    std::string told;
    std::string input = "";
  };
  for (Row const & row : {
           Row{"sheet write own.xlsx Sheet1 t.csv", "5 rows of up to 3 columns in the new sheet \"Sheet1\" of own.xlsx\n"},
           Row{"sheet write b.xlsx DATA t.csv", "1 zp: b.xlsx: there is a sheet \"DATA\" already; name another one\n"},
           Row{"sheet write b.xlsx a:b t.csv",
               "1 zp: \"a:b\": no sheet can have this name; take 1 to 31 characters without : \\ / ? * [ ]\n"},
           Row{"sheet write b.xlsx New -", "1 zp: standard input: line 2: \"\\xE9\": is no UTF-8\n", "\u00E9\n\xE9\n"},
           Row{"sheet write b.xlsx New none.csv", "1 zp: none.csv: can't be opened: No such file or directory; check the name\n"},
           Row{"sheet read far.xlsx Data",
               "1 zp: far.xlsx: the filled cells of \"Data\" lie in A1:XFD1048576, which are more than 268435456 fields; name a "
               "block of them\n"},
           Row{"sheet write b.xlsx New -",
               "1 zp: standard input: line 2: a cell holds no text of more than 32767 characters; shorten it\n",
               "1\n" + std::string(32768, 'x')},
           Row{"sheet list ''", "2 zp: BOOK: a file must be named; see zp sheet list --help\n"},
           Row{"store export none --sheet ''", "2 zp: --sheet: a file must be named; see zp store export --help\n"},
           Row{"store export none --drop", "2 zp: --drop requires --sheet; see zp store export --help\n"},
           Row{"sheet read b.xlsx Other", "1 zp: b.xlsx: there is no worksheet \"Other\"; see zp sheet list\n"},
           Row{"sheet read b.xlsx Data A0", "2 zp: \"A0\": a block is a cell, or two with a colon between, such as A1:CV50\n"},
           Row{"sheet list t.csv", "1 zp: " + Path("t.csv") + ": The file is no .xlsx file: it is no zip archive\n"},
           Row{"sheet list \xE6\xA5\xBD.xlsx",
               "1 zp: " + Path("\xE6\xA5\xBD.xlsx") + " can't be opened: No such file or directory\n"},
           Row{"sheet list odd.xlsx",
               "1 zp: " + Path("odd.xlsx") + ": The cell A1 of the sheet \"Data\" holds \"\u0416\" in place of a Boolean\n"},
           Row{"sheet list none.xlsx", "1 zp: " + Path("none.xlsx") + " can't be opened: No such file or directory\n"},
           Row{"sheet write new.ods S t.csv", "1 zp: " + Path("new.ods") + " can't be saved in another format than .xlsx\n"},
           Row{"sheet list b.xlsx --server None.Such",
               "1 zp: there is no spreadsheet server \"None.Such\"; name one with --server, such as Zephlow.Workbooks\n"},
       }) {
    EXPECT_EQ(Run(row.arguments, row.input), row.told);
    EXPECT_EQ(m_Folder.Read("b.xlsx"), bytes) << row.arguments;
  }
  EXPECT_FALSE(m_Folder.Has("new.ods"));
}

TEST_F(SheetTool, LosesNoSheetThatItTellsToBeWrittenWhenSeveralWriteAtOnce)
{
  m_Folder.Write("t.csv", table);
  for (int turn = 0; turn < 2; ++turn) {
    int written[5];
    std::vector<std::thread> writers;
    for (int & status : written) {
      writers.emplace_back([&, number = turn * 5 + (&status - written)] {
        status = RunZp(m_Folder.Path(), "sheet write b.xlsx Data" + std::to_string(number) + " t.csv").status;
      });
    }
    for (std::thread & writer : writers) writer.join();
    EXPECT_EQ(std::ranges::count(written, 0) + std::ranges::count(written, 1), 5);
    std::string const list = Run("sheet list b.xlsx");
    for (int number = 0; number < 5; ++number)
      EXPECT_EQ(list.find("Data" + std::to_string(turn * 5 + number)) != std::string::npos, written[number] == 0) << list;
  }
}

TEST_F(SheetTool, OverwritesWhatItCannotKeepOnlyWhenAsked)
{
  StoredPackage package = MakeBookPackage(
      "<worksheet "
      "xmlns='http://schemas.openxmlformats.org/spreadsheetml/2006/main'><sheetData><row><c><f>1+1</f><v>2</v></c></row>"
      "</sheetData></worksheet>",
      "");
  package.Add("xl/vbaProject.bin", "x");
  std::string const bytes = package.Finish();
  m_Folder.Write("b.xlsx", bytes);
  EXPECT_EQ(
      Run("sheet write b.xlsx New -", "1\n"),
      "1 zp: " + Path("b.xlsx") + " would lose formulas (their values stay), macros; with --drop it is written without them\n");
  EXPECT_EQ(m_Folder.Read("b.xlsx"), bytes);
  ProgramRun const dropped = RunZp(m_Folder.Path(), "sheet write b.xlsx New - --drop", "1\n");
  EXPECT_EQ(dropped.out, "1 row of up to 1 column in the new sheet \"New\" of b.xlsx\n");
  EXPECT_EQ(dropped.err, "zp: warning: " + Path("b.xlsx") + " is written without formulas (their values stay), macros\n");
  EXPECT_EQ(Run("sheet read b.xlsx Data"), "2\n");
  EXPECT_EQ(Run("sheet write b.xlsx Newer -", "2\n"), "1 row of up to 1 column in the new sheet \"Newer\" of b.xlsx\n");
}

TEST_F(SheetTool, ExportsComponentsWithUnits)
{
  Run("store import demo -",
      "id,name,tc_K,omega,antoine_A,antoine_B,antoine_C,rho_liq_eq,rho_liq_A,unifac_groups\n1,1e5,647.14,0.344,20.5,1.5,-0.25,,,"
      "\n"
      "32767,Water,,,,,,105,5.459,16:1\n");
  EXPECT_EQ(Run("store export demo --sheet c.xlsx"),
            "2 components in the new sheets \"Constants\" and \"Correlations\" of c.xlsx\n");
  EXPECT_EQ(Run("sheet read c.xlsx Constants"),
            "id,name,critical temperature [K],acentric factor,UNIFAC groups\n1,1e5,647.14,0.344,\n32767,Water,,,16:1\n");
  EXPECT_EQ(Run("sheet read c.xlsx Constants B2 --json"),
            "{\"sheet\":\"Constants\",\"block\":\"B2\",\"rows\":[\n [\"1e5\"]\n]}\n");
  EXPECT_EQ(Run("sheet read c.xlsx Correlations"),
            "id,name,vapour pressure [Pa] A,vapour pressure [Pa] B,vapour pressure [Pa] C,liquid density [kmol/m3] equation,"
            "liquid density [kmol/m3] A,liquid density [kmol/m3] B,liquid density [kmol/m3] C,liquid density [kmol/m3] D\n"
            "1,1e5,20.5,1.5,-0.25,,,,,\n32767,Water,,,,105,5.459,0,0,0\n");
  std::string const bytes = m_Folder.Read("c.xlsx");
  EXPECT_EQ(Run("store export demo --sheet c.xlsx"),
            "1 zp: c.xlsx: there is a sheet \"Correlations\" already; name another one\n");
  EXPECT_EQ(m_Folder.Read("c.xlsx"), bytes);
}

// What a server doesn't keep of a sheet is told by its first cell that isn't what it was.
TEST(SheetPrint, NamesTheFirstCellThatChanged)
{
  setenv("ZP_SERVERS", ZP_BINARY_DIR "/zpbase/servers", 1);
  SpreadsheetLink server("Zephlow.Workbooks");
  TempFolder const folder;
  WorkbookLink book(server, (folder.Path() / "b.xlsx").string(), WorkbookLink::Source::New);
  GPWorkSheet sheet = book.AddWorksheet("Data");
  auto const put = [&](char const * cell, VARIANT const & value) {
    Attached<GPRange>(sheet.GetCell(COleVariant(cell))).SetValue(value);
  };
  EXPECT_EQ(SheetPrint::Of(sheet).FindDifference(sheet), "");
  for (char const * cell : {"A1", "B1", "B3", "C3"}) put(cell, COleVariant(1.5));
  SheetPrint const print = SheetPrint::Of(sheet);
  COleVariant const empty;
  struct Change {
    char const * cell;
    COleVariant value;
    COleVariant before = COleVariant(1.5);
  };
  Change const changes[] = {{"A1", COleVariant(1.25)},
                            {"B1", COleVariant("1.5")},
                            {"B3", empty},
                            {"C3", empty},
                            {"C1", COleVariant(2), empty},
                            {"A2", COleVariant(""), empty},
                            {"D3", COleVariant(2.0), empty},
                            {"D4", COleVariant(2.0), empty}};
  for (Change const & change : changes) {
    put(change.cell, change.value);
    EXPECT_EQ(print.FindDifference(sheet), change.cell);
    put(change.cell, change.before);
    EXPECT_EQ(print.FindDifference(sheet), "") << change.cell;
  }
}

}  // namespace
