// What .xlsx files hold, as cells or as the sentence that refuses them.

#include <algorithm>
#include <cmath>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "servers/embedded/failure.h"
#include "servers/embedded/package_writer.h"
#include "servers/embedded/workbook_reader.h"
#include "servers/embedded/workbook_writer.h"
#include "tests/embedded/book_text.h"
#include "tests/embedded/stored_package.h"

namespace {

using namespace std::string_literals;

std::string const main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
std::string const strict = "http://purl.oclc.org/ooxml/spreadsheetml/main";

std::string read(std::string const & bytes)
{
  try {
    return TellBook(embedded::ReadWorkbook(std::as_bytes(std::span(bytes))));
  } catch (embedded::BookFailure const & failure) {
    return "! "s + failure.what();
  }
}

std::string sheetOf(std::string const & rows)
{
  return "<worksheet xmlns=\"" + main + "\"><sheetData>" + rows + "</sheetData></worksheet>";
}

std::string readSheet(std::string const & sheet, std::string const & texts = "")
{
  return read(MakeBookPackage(sheet, texts).Finish());
}

// Rows with double quotes are read plain where they can be, and by the parser alone where a section stands in front of them.
std::string readRows(std::string rows)
{
  std::string const told = readSheet(sheetOf(rows));
  std::replace(rows.begin(), rows.end(), '\'', '"');
  EXPECT_EQ(readSheet(sheetOf(rows)), told) << rows.substr(0, 1000);
  EXPECT_EQ(readSheet(sheetOf("<![CDATA[]]>" + rows)), told) << rows.substr(0, 1000);
  return told;
}

struct Case {
  std::string xml;
  std::string told;
};

TEST(Reader, ReadsTheCellsOfARow)
{
  std::vector<Case> const cases = {
      {"<c r='A1'><v>1.5</v></c><c r='C1' t='n'><v> 5e-324 </v></c>", " A1=1.5 C1=5e-324"},
      {"<c><v>0.30000000000000004</v></c><c/><c><v>-0</v></c>", " A1=0.30000000000000004 C1=-0.0"},
      {"<c r='XFD1048576'><v>1</v></c><c r='a1'><v>2</v></c>", " A1=2 XFD1048576=1"},
      {"<c r='A1'><v>1</v></c><c r='A1'><v>2</v></c>", " A1=2"},
      {"<c><v>1e999</v></c><c><v>1e-999</v></c><c><v>NaN</v></c><c><v>-1E+2</v></c>", " A1=#NUM! B1=0 C1=#NUM! D1=-100"},
      {"<c t='b'><v>1</v></c><c t='b'><v>false</v></c>", " A1=TRUE B1=FALSE"},
      {"<c t='e'><v>#N/A</v></c><c t='e'><v>#BUSY!</v></c>", " A1=#N/A B1=#UNKNOWN!"},
      {"<c t='d'><v>1900-02-28</v></c><c t='d'><v>1900-03-01T12:00:00Z</v></c><c t='d'><v>06:00</v></c>",
       " A1=59 B1=61.5 C1=0.25"},
      {"<c><f>1+1</f></c><c><f>1+1</f><v/></c><c t='str'><f>A1</f><v> x </v></c><c t='str'><v/></c>", " C1=' x ' D1=''"},
      {"<c t='inlineStr'><is><t> x </t></is></c><c t='inlineStr'><is><t xml:space='preserve'> x </t></is></c>",
       " A1='x' B1=' x '"},
      {"<c t='inlineStr'><is><r><rPr><b/></rPr><t>a</t></r><rPh><t>no</t></rPh><r><t>b</t></r></is></c>", " A1='ab'"},
      {"<c t='inlineStr'><is><t>a<![CDATA[<]]><!-- --><other xmlns='urn:x'><t>no</t></other>&amp;</t></is></c>", " A1='a<&'"},
      {"<c t='str'><v>_x000D__x005F_x000D__xD83D__xDE00_</v></c>", " A1='\r_x000D_\xF0\x9F\x98\x80'"},
      {"<x:c xmlns:x='" + main + "'><x:v>1</x:v></x:c><c xmlns='urn:other'><v>2</v></c><c><v>3</v></c>", " A1=1 B1=3"},
      {"<c><v>1,5</v></c>", "! The cell A1 of the sheet \"Data\" holds \"1,5\" in place of a number"},
      {"<c><v>0x10</v></c>", "! The cell A1 of the sheet \"Data\" holds \"0x10\" in place of a number"},
      {"<c t='b'><v>2</v></c>", "! The cell A1 of the sheet \"Data\" holds \"2\" in place of a Boolean"},
      {"<c t='d'><v>2023-02-29</v></c>", "! The cell A1 of the sheet \"Data\" holds \"2023-02-29\" in place of a date"},
      {"<c t='s'><v>0</v></c>", "! The cell A1 of the sheet \"Data\" wants the shared text 0, which isn't there"},
      {"<c t='s'><v>-1</v></c>", "! The cell A1 of the sheet \"Data\" holds \"-1\" in place of the number of a shared text"},
      {"<c t='z'><v>1</v></c>", "! The cell A1 of the sheet \"Data\" is of the unknown kind \"z\""},
      {"<c r='XFE1'/>", "! The sheet \"Data\" has a cell named \"XFE1\""},
      {"<c r='XFD1'/><c/>", "! The sheet \"Data\" has columns beyond the last one"},
      {"<c t='str'><v>" + std::string(32768, 'x') + "</v></c>", "! The file holds a text of more than 32767 characters"},
      {"<c t='inlineStr'><is><t>" + std::string(300000, ' ') + "</t></is></c>",
       "! The file holds a text of more than 32767 characters"},
  };
  for (Case const & row : cases) {
    std::string const expected = row.told.front() == '!' ? row.told : "Data:" + row.told;
    EXPECT_EQ(readRows("<row>" + row.xml + "</row>"), expected) << row.xml.substr(0, 200);
  }
}

TEST(Reader, CountsRowsThatTellNoNumber)
{
  std::string const cell = "<c><v>1</v></c>";
  EXPECT_EQ(readRows("<row>" + cell + "</row><row r='5'>" + cell + "</row><row>" + cell + "</row>"), "Data: A1=1 A5=1 A6=1");
  for (char const * number : {"0", "x", "-1", "99999999999"}) {
    EXPECT_EQ(readRows("<row r='"s + number + "'/>"), "! The sheet \"Data\" has a row with the number \""s + number + "\"");
  }
  EXPECT_EQ(readRows("<row r='1048576'/><row/>"), "! The sheet \"Data\" has rows beyond the last one");
}

TEST(Reader, ReadsPlainRowsAsTheParserDoes)
{
  std::vector<std::string> const usual = {"<c><v>1</v></c>",
                                          "<c r='C9' s='1'><v>2e3</v></c>",
                                          "<c/>",
                                          "<c t='b' ><v>1</v></c >",
                                          "<f>A1</f>",
                                          "<row>",
                                          "</row>",
                                          "<row r='7' spans='1:2'>\n",
                                          "\n  ",
                                          "</row>\n<row>"};
  std::vector<std::string> const odd = {"<v>",
                                        "</c>",
                                        "<c r='A1' r='B1'/>",
                                        "<c r='A1's='1'/>",
                                        "<c r = 'A1'/>",
                                        "<c r='A&#49;'/>",
                                        "<c r='\xC3\xA9'/>",
                                        "]]>",
                                        "<c t='str'><v>]]&gt;</v></c>",
                                        "<!-- <row> -->",
                                        "<![CDATA[<row><c><v>5</v></c></row>]]>",
                                        "<row xmlns='urn:other'>",
                                        "<x:row/>",
                                        "<?row <row>?>",
                                        "\r\n",
                                        "\1",
                                        "<rowBreaks/>",
                                        "<c t='str'><v>a\r</v></c>",
                                        "</sheetData>",
                                        "<row",
                                        "&",
                                        "<row/>",
                                        "<c><v>x</v></c>",
                                        "<c t='inlineStr'><is><t>\xC3\xA9</t></is></c>",
                                        "<a><b><c><d><e><f><g><h><i/></h></g></f></e></d></c></b></a>"};
  std::mt19937 random(7);
  auto const oneOf = [&](std::vector<std::string> const & pieces) { return pieces[random() % pieces.size()]; };
  for (int round = 0; round < 1500; ++round) {
    std::string rows = "<row>";
    for (size_t left = random() % 12; left > 0; --left) rows += oneOf(random() % 8 == 0 ? odd : usual);
    readRows(rows + "</row><row r='12'><c><v>3</v></c></row>");
  }
  EXPECT_EQ(readRows("<![CDATA[<row><c><v>5</v></c></row>]]>"), "Data:");
  std::string large;
  for (size_t cells = 1; large.size() < 800000; cells = cells * 7 % 9973) {
    large += "<row>";
    for (size_t i = 0; i < cells; ++i) large += "<c><v>" + std::to_string(random()) + "</v></c>";
    large += "</row>\n";
  }
  EXPECT_EQ(readRows(large + "<row><c><v>1</v></row>").substr(0, 8), "! The pa");
  EXPECT_GT(std::ranges::count(readRows(large), '='), 10000);
}

TEST(Reader, JoinsSharedTextsAndTakesStrictFiles)
{
  std::string const sheet = "<worksheet xmlns='" + strict +
                            "'><dimension ref='A1:XFD1048576'/><sheetData><row><c t='s'><v>2</v></c>" +
                            "<c t='s'><v>0</v></c><c t='s'><v>1</v></c></row></sheetData></worksheet>";
  std::string const texts = "<x:sst xmlns:x='" + strict +
                            "' count='99999999'><x:si/><x:si><x:t>a&#13;&#10;b</x:t></x:si><x:si><x:r>" +
                            "<x:t xml:space='preserve'>one </x:t></x:r><x:r><x:t>two</x:t></x:r></x:si></x:sst>";
  EXPECT_EQ(readSheet(sheet, texts), "Data: A1='one two' B1='' C1='a\r\nb'");
  std::string const spaced = "<sst xmlns='" + main + "'><si xml:space='preserve'><t> a </t></si>" +
                             "<si xml:space='preserve'><r><t> b </t></r><r xml:space='default'><t> c </t></r></si></sst>";
  EXPECT_EQ(readSheet(sheetOf("<row><c t='s'><v>0</v></c><c t='s'><v>1</v></c></row>"), spaced), "Data: A1=' a ' B1=' b c'");
}

TEST(Reader, RefusesWhatIsMadeToHarm)
{
  std::string deep;
  for (int i = 0; i < 100; ++i) deep += "<other xmlns='urn:x'>";
  std::vector<Case> const cases = {
      {"<!DOCTYPE a [<!ENTITY b 'x'>]>" + sheetOf(""), "! The file declares a type of document, which no .xlsx file may"},
      {"<worksheet xmlns=\"" + main + "\">" + deep, "! The file holds elements within elements more than 64 deep"},
      {"<!--" + std::string(3 << 20, 'x') + "-->" + sheetOf(""),
       "! The part xl/worksheets/sheet1.xml has a longer tag or comment than a workbook may have"},
      {sheetOf("<row><c>"), "! The part xl/worksheets/sheet1.xml is damaged: mismatched tag in line 1"},
      {"", "! The part xl/worksheets/sheet1.xml is damaged: no element found in line 1"},
      {"<other/>", "! The part of the sheet \"Data\" holds something else"},
  };
  for (Case const & row : cases) EXPECT_EQ(readSheet(row.xml), row.told) << row.xml.substr(0, 200);
}

// A package of the parts that each case needs beside a sheet of one cell.
std::string bookOf(std::string const & sheets, std::string const & targets, std::vector<std::string> const & parts)
{
  std::string const office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
  StoredPackage package;
  package.Add("XL\\Workbook.XML", "<workbook xmlns='" + main + "' xmlns:r='" + office + "'><workbookPr date1904='1'/><sheets>" +
                                      sheets + "</sheets></workbook>");
  package.Add(
      "xl/_rels/workbook.xml.rels",
      "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>" + targets + "</Relationships>");
  for (std::string const & part : parts) package.Add(part, sheetOf("<row><c t='d'><v>1904-01-02</v></c></row>"));
  return package.Finish();
}

TEST(Reader, FindsSheetsByTheirRelations)
{
  struct {
    std::string sheets;
    std::string targets;
    std::vector<std::string> parts;
    std::string told;
  } const cases[] = {
      {"<sheet name='B_x0042_' r:id='2' state='veryHidden'/><sheet name='A' r:id='1'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='/XL/a.xml'/><Relationship Id='2' Type='t/worksheet' Target='..\\b.xml'/>",
       {"xl/A.xml", "b.xml"},
       "BB (very hidden): A1=1; A: A1=1"},
      {"<sheet name='A' r:id='1'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='a.xml'/>",
       {},
       "! The sheet \"A\" is missing in the file"},
      {"<sheet name='A' r:id='1'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='a.xml' TargetMode='External'/>",
       {"xl/a.xml"},
       "! The sheet \"A\" is missing in the file"},
      {"<sheet name='A' r:id='1'/><sheet name='B' r:id='1'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='a.xml'/>",
       {"xl/a.xml"},
       "! The sheet \"B\" has the same part of the file as another one"},
      {"<sheet name='\xC3\xA4' r:id='1'/><sheet name='\xC3\x84' r:id='2'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='a.xml'/>",
       {"xl/a.xml"},
       "! The file has two sheets named \"\xC3\x84\""},
      {"<sheet name='12345678901234567890123456789012' r:id='1'/>",
       "",
       {},
       "! The file has a sheet with a name of 32 characters"},
      {"<sheet name='A' r:id='1'/>",
       "<Relationship Id='1' Type='t/worksheet' Target='a.xml'/>",
       {"xl/a.xml", "xl/A.xml"},
       "! The file is damaged: it has two parts named xl/a.xml"},
      {"<sheet name='M' r:id='1'/>",
       "<Relationship Id='1' Type='t/dialogsheet' Target='a.xml'/>",
       {"xl/a.xml"},
       "! The file has no worksheet"},
  };
  for (auto const & row : cases) EXPECT_EQ(read(bookOf(row.sheets, row.targets, row.parts)), row.told);
  std::string many;
  for (int i = 0; i < 1025; ++i) many += "<sheet name='" + std::to_string(i) + "'/>";
  EXPECT_EQ(read(bookOf(many, "", {})), "! The file has more than 1024 sheets");
}

TEST(Reader, TellsWhatIsNoWorkbook)
{
  EXPECT_EQ(read(""), "! The file is no .xlsx file: it is no zip archive");
  EXPECT_EQ(read("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and more"),
            "! The file is locked by a password, or it is one of the older format .xls");
  EXPECT_EQ(read(StoredPackage().Finish()), "! The file is no .xlsx file: there is no workbook in the archive");
  EXPECT_THROW(embedded::ReadWorkbook("/"s), embedded::BookFailure);
  EXPECT_THROW(embedded::ReadWorkbook("/nowhere/book.xlsx"s), embedded::BookFailure);
}

// What stands in a file beside one cell, each in its place.
struct Beside {
  std::string inSheet = "";  // in front of the cells
  std::string inBook = "";   // of the workbook's children
  std::string styles = "";   // of the styles' children
  std::string part = "";     // named one more part, which nothing leads to
  std::string inRow = "";    // and behind the row
  std::string core = "";     // of the properties' children
};

embedded::Workbook readBeside(Beside const & beside)
{
  std::string const types = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
  std::string const list = "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>";
  StoredPackage package;
  package.Add("_rels/.rels", list + "<Relationship Id='b' Type='t/officeDocument' Target='xl/workbook.xml'/>" +
                                 "<Relationship Id='c' Type='t/metadata/core-properties' Target='docProps/core.xml'/>" +
                                 "<Relationship Id='e' Type='t/extended-properties' Target='docProps/app.xml'/></Relationships>");
  package.Add("xl/workbook.xml", "<workbook xmlns='" + main + "' xmlns:r='" + types + "'>" + beside.inBook +
                                     "<sheets><sheet name='Data' r:id='s' state='veryHidden'/></sheets></workbook>");
  package.Add("xl/_rels/workbook.xml.rels", list + "<Relationship Id='s' Type='t/worksheet' Target='worksheets/sheet1.xml'/>" +
                                                "<Relationship Id='t' Type='t/styles' Target='styles.xml'/></Relationships>");
  package.Add("xl/worksheets/sheet1.xml", "<worksheet xmlns='" + main + "'>" + beside.inSheet +
                                              "<sheetData><row><c><v>1</v></c>" + beside.inRow +
                                              "</row></sheetData></worksheet>");
  package.Add("xl/styles.xml", "<styleSheet xmlns='" + main + "'>" + beside.styles + "</styleSheet>");
  package.Add("docProps/core.xml",
              "<p xmlns='http://schemas.openxmlformats.org/package/2006/metadata/core-properties' "
              "xmlns:dc='http://purl.org/dc/elements/1.1/'>" +
                  beside.core + "</p>");
  if (!beside.part.empty()) package.Add(beside.part, "x");
  std::string const bytes = package.Finish();
  return embedded::ReadWorkbook(std::as_bytes(std::span(bytes)));
}

TEST(Reader, TellsWhatItDoesNotKeep)
{
  std::string const formats = "cell formats (values and dates stay as numbers)";
  std::string const layout = "widths, heights, hidden rows and columns";
  std::string const views = "zoom, grid lines and frozen panes";
  std::string const other = "other contents";
  struct {
    Beside beside;
    std::string told;
  } const cases[] = {
      {{.inSheet = "<sheetViews><sheetView><pane/></sheetView></sheetViews>"}, views},
      {{.inSheet = "<sheetViews><sheetView showGridLines='0'/></sheetViews>"}, views},
      {{.inSheet = "<sheetViews><sheetView zoomScale='85'/></sheetViews>"}, views},
      {{.inSheet = "<sheetFormatPr zeroHeight='1'/>"}, layout},
      {{.inSheet = "<cols><col min='1' max='1' width='9' customWidth='1'/></cols>"}, layout},
      {{.inSheet = "<cols><col min='1' max='1' width='9' bestFit='1' hidden='1'/></cols>"}, layout},
      {{.inSheet = "<cols><col min='1' max='1' width='9'/></cols>"}, layout},
      {{.inSheet = "<pageMargins left='0.1'/>"}, "page set-up"},
      {{.inSheet = "<headerFooter><oddHeader>&amp;CDraft</oddHeader></headerFooter>"}, "page set-up"},
      {{.inSheet = "<headerFooter><evenFooter/></headerFooter>"}, "page set-up"},
      {{.inSheet = "<sheetPr><pageSetUpPr fitToPage='1'/></sheetPr>"}, "page set-up"},
      {{.inSheet = "<mergeCells/>"}, "merged cells (their values stay)"},
      {{.inSheet = "<extLst/>"}, other},
      {{.inSheet = "<m:AlternateContent xmlns:m='urn:m'/>"}, other},
      {{.inBook = "<bookViews><workbookView showSheetTabs='0'/></bookViews>"}, views},
      {{.inBook = "<calcPr calcMode='manual'/>"}, "settings of calculation"},
      {{.inBook = "<extLst><ext uri='{0}'/></extLst>"}, other},
      {{.styles = "<cellXfs><xf numFmtId='14'/></cellXfs>"}, formats},
      {{.styles = "<cellXfs><xf><alignment wrapText='1'/></xf></cellXfs>"}, formats},
      {{.styles = "<fonts><font><b/></font></fonts>"}, formats},
      {{.styles = "<borders><border><left style='thin'/></border></borders>"}, formats},
      {{.styles = "<cellStyles><cellStyle name='Mine'/></cellStyles>"}, "named styles"},
      {{.part = "xl/worksheets/sheet2.xml"}, other},
      {{.part = "xl/workbook2.xml"}, other},
      {{.part = "xl/metadata.xml"}, other},
      {{.part = "_rels/foo.bin"}, other},
      {{.part = "xl/_rels/nobody.xml.rels"}, other},
      {{.part = "xl/vbaProject.bin"}, "macros"},
      {{.inRow = "<c s='1'><f>1</f></c>"}, "formulas (their values stay), " + formats},
      {{.core = "<x xmlns='urn:x'>lost</x>"}, "document properties"},
      {{.core = "<dc:title>" + std::string(5000, 'x') + "</dc:title>"}, "document properties"},
  };
  for (auto const & row : cases) {
    std::string told;
    for (std::string const & phrase : readBeside(row.beside).unkept.GetPhrases()) told += (told.empty() ? "" : ", ") + phrase;
    EXPECT_EQ(told, row.told);
  }
}

TEST(Reader, KeepsHowASheetIsShownAndTakesWhatEveryWriterGivesForNoLoss)
{
  Beside const beside = {
      .inSheet =
          "<sheetPr filterMode='false'><tabColor rgb='FF00FF00' tint='-0.5'/><pageSetUpPr fitToPage='false'/></sheetPr>"
          "<sheetViews><sheetView rightToLeft='true' showGridLines='true' zoomScale='100'><selection/></sheetView></sheetViews>"
          "<sheetFormatPr defaultColWidth='11.53515625' defaultRowHeight='12.8' zeroHeight='false'/>"
          "<cols><col min='1' max='1' width='9' bestFit='1'/></cols>"
          "<pageMargins left='0.7875' top='1.05277777777778' bottom='0.75000000000000011' header='0.3'/>"
          "<pageSetup paperSize='9' orientation='portrait'/><headerFooter differentFirst='false'>"
          "<oddHeader>&amp;C&amp;\"DejaVu Serif,Book\"&amp;12&amp;A</oddHeader>"
          "<oddFooter>&amp;C&amp;\"DejaVu Serif,Book\"&amp;12Seite &amp;P</oddFooter></headerFooter>",
      .inBook =
          "<workbookPr backupFile='false'/><bookViews><workbookView xWindow='-9' "
          "activeTab='0'/></bookViews><workbookProtection/><calcPr calcId='191029' iterateDelta='0.001'/>"
          "<extLst><ext uri='{7626C862-2A13-11E5-B345-FEFF819CDC9F}'/></extLst>",
      .styles =
          "<numFmts><numFmt numFmtId='164' formatCode='General'/></numFmts><fonts><font><sz val='10'/><color theme='1'/>"
          "<name val='DejaVu Sans'/><family val='2'/></font><font><b/></font></fonts><cellXfs><xf numFmtId='164' "
          "applyFont='false'><alignment horizontal='general'/><protection locked='true'/></xf><xf numFmtId='14'/></cellXfs>"
          "<cellStyles><cellStyle name='Percent' builtinId='5'/></cellStyles>",
      .core = "<dc:title>Column &amp; <!-- -->tray\n2</dc:title><revision>3</revision><dc:creator/>"};
  embedded::Workbook const read = readBeside(beside);
  std::string const bytes = embedded::PackWorkbook(read);
  embedded::Workbook const again = embedded::ReadWorkbook(std::as_bytes(std::span(bytes)));
  for (embedded::Workbook const * book : {&read, &again}) {
    EXPECT_EQ(TellBook(*book), "Data (very hidden) (right to left) rgb=\"FF00FF00\" tint=\"-0.5\": A1=1");
    EXPECT_EQ(book->sheets[0]->defaultWidth, 11.53515625);
    EXPECT_TRUE(book->font.name == "DejaVu Sans" && book->font.size == 10) << book->font.name << book->font.size;
    EXPECT_EQ(book->properties[0], "Column & tray\n2");
    EXPECT_EQ(book->unkept.GetPhrases(), std::vector<std::string>());
  }
}

TEST(Reader, TakesNoMoreSharedTextsThanAFileOfItsSizeHas)
{
  std::string texts;
  for (int i = 0; i < 1 << 18; ++i) texts += "<si/>";
  embedded::PackageWriter writer;
  writer.Add("xl/workbook.xml", "<workbook xmlns='" + main + "'/>");
  writer.Add("xl/_rels/workbook.xml.rels",
             "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
             "<Relationship Id='1' Type='t/sharedStrings' Target='a.xml'/></Relationships>");
  writer.Add("xl/a.xml", "<sst xmlns='" + main + "'>" + texts + "</sst>");
  EXPECT_EQ(read(writer.Finish()), "! The file unpacks to more shared texts than one of its size may have");
}

TEST(Reader, GivesNoHalfOfADamagedFile)
{
  embedded::PackageWriter writer;
  writer.Add("xl/workbook.xml", "<workbook xmlns='" + main +
                                    "' xmlns:r='http://purl.oclc.org/ooxml/officeDocument/relationships'>" +
                                    "<sheets><sheet name='Data' r:id='1'/></sheets></workbook>");
  writer.Add("xl/_rels/workbook.xml.rels",
             "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>"
             "<Relationship Id='1' Type='t/worksheet' Target='a.xml'/></Relationships>");
  writer.Add("xl/a.xml", sheetOf("<row><c><v>1</v></c><c><v>2</v></c></row>"));
  std::string const whole = writer.Finish();
  ASSERT_EQ(read(whole), "Data: A1=1 B1=2");
  for (size_t length = 0; length < whole.size(); ++length) EXPECT_EQ(read(whole.substr(0, length)).front(), '!') << length;
  for (size_t at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x41);
    std::string const told = read(damaged);
    EXPECT_TRUE(told.front() == '!' || told == "Data: A1=1 B1=2") << at << " " << told;
  }
}

}  // namespace
