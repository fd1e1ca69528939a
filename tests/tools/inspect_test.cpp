// zp inspect: each kind of file, all bytes accounted for, damage, folders with links in circles, and what isn't opened.

#include <sys/stat.h>

#include <fstream>

#include <nlohmann/json.hpp>

#include <zpbase/numeric.h>
#include <zpbase/platform/archive.h>
#include <zpbase/views.h>

#include "tests/tools/metafile_bytes.h"
#include "tests/tools/store_fixture.h"

namespace {

class InspectTool : public StoreTool {
 protected:
  ProgramRun Inspect(std::string const & arguments) { return RunZp(m_Folder.Path(), "inspect " + arguments); }

  nlohmann::json Look(std::string const & name) { return nlohmann::json::parse(Inspect("--json --bytes '" + name + "'").out)[0]; }

  // The parts stand behind each other, from the first byte to the last.
  void ExpectAllBytes(nlohmann::json const & found)
  {
    unsigned long long end = 0;
    for (auto const & part : found["parts"]) {
      EXPECT_EQ(part["offset"], end) << found;
      EXPECT_GT(part["length"], 0) << found;
      end += part["length"].get<unsigned long long>();
    }
    EXPECT_EQ(end, found["bytes"]) << found;
  }

  void WriteReport()
  {
    auto * const lines = new CStringArray;
    lines->Add("first line");
    lines->Add("");
    GPRptDoc report(lines, nullptr);
    CFile file;
    ASSERT_TRUE(file.Open(m_Folder.Name("report"), CFile::modeCreate | CFile::modeWrite));
    CArchive archive(&file, CArchive::store);
    report.Serialize(archive);
  }

  // One file of each kind.
  void WriteAll()
  {
    StoreFour();
    m_Folder.Write("index", m_Folder.Read("a.SI"));
    m_Folder.Write("records", m_Folder.Read("a.SR"));
    GPDataArray data;
    data.LoadStringData(1, "Water");
    data.LoadFloatData(12, 647.25);
    data.Store(m_Folder.Name("object"));
    {
      CFile file;
      ASSERT_TRUE(file.Open(m_Folder.Name("one"), CFile::modeCreate | CFile::modeWrite));
      CArchive archive(&file, CArchive::store);
      GPVector const vector(3, 1.5);
      archive << static_cast<CObject const *>(&vector);
    }
    m_Folder.Write("zeros", std::string(60, '\0'));
    Zp("import s -", "id,name\n7,Water\n");
    Zp("get s 7 archive");
    Zp("export s --json export");
    GPVector(3, 1.5).Store(m_Folder.Name("vector"));
    WriteReport();
    m_Folder.Write("profile", "; ours\n[Misc]\nName=\" a \"\nCount=-2\n[Units]\nT=K\n");
    m_Folder.Write("hive", "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\X]\r\n\"a\"=hex:01,\\\r\n  02\r\n@=\"b\"\r\n");
    m_Folder.Write("picture", MetafileBytes().Line(0, 0, 100, 50).Placeable(0, 0, 100, 50));
    RunZp(m_Folder.Path(), "dxf picture drawing");
    RunZp(m_Folder.Path(), "sheet write book.xlsx S -", "1,2\n");
    m_Folder.Write("WARNINGS", "Warning 3: no flow\r\nother\r\n");
    m_Folder.Write("table", "# of two\nid;name;tc_K\n1;a;2\n2;b;3\n");
    m_Folder.Write("wide table", std::string("\xFF\xFEi\0d\0\t\0n\0a\0m\0e\0\n\0"
                                             "1\0\t\0\xAC\x20",
                                             24));
    m_Folder.Write("entries", "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\X]\r\n\"a\"=\"b\"\r\n\"c\"=-\r\n");
    m_Folder.Write("numbers", "T x\n1 2\n3 4\n\n5 6\nend\n");
    m_Folder.Write("frame", "\"id\",\"T\"\n\"a\",1\n");
    m_Folder.Write("word", "Number 12\n");
    m_Folder.Write("pages", "one\n\ftwo\n");
    m_Folder.Write("te xt", "words alone\n");
    m_Folder.Write("strange", std::string("\x05\x00\x01\x02\x03", 5));
  }
};

struct Kind {
  char const * file;
  char const * kind;
  char const * holds;  // the first
  char const * next;
};

constexpr Kind kinds[] = {
    {"a.SI", "index file of a record store", "header object: GPObject", "zp store list a.SI"},
    {"a.SR", "record file of a record store", "3 records, 1 free block; 8 bytes of them live", "zp store list a.SR"},
    {"index", "index file of a record store", "header object: GPObject", "zp store list index --record ITS-RECORD-FILE"},
    {"records", "record file of a record store", "3 records, 1 free block; 8 bytes of them live",
     "zp store recover ITS-INDEX-FILE --record records --list"},
    {"object", "object file: the fields of an array or list of objects", "2 elements", ""},
    {"archive", "archive of one object", "GPDataArray", "zp store put STORE ID archive"},
    {"one", "archive of one object", "GPVector", "zp store put STORE ID one"},
    {"zeros", "no file of a kind known here", "", ""},
    {"export", "records of a store in JSON, as zp store export --json writes them", "", "zp store import STORE export"},
    {"vector", "object file: by its length the fields of a GPVector", "", ""},
    {"report", "saved report document", "2 lines", ""},
    {"profile", "profile file of settings", "2 sections, 3 settings", "zp settings list -p profile"},
    {"hive", "hive of settings, in the form of registration entries", "1 key, 2 settings",
     "zp settings list --hive hive -c COMPANY -a APPLICATION"},
    {"picture", "Windows metafile with a placeable header", "2 records of 2 kinds; 0 to 100 by 0 to 50",
     "zp dxf picture DRAWING.dxf"},
    {"drawing", "drawing in DXF, as zp dxf writes it", "", "zp dxf --check drawing --svg PICTURE.svg"},
    {"book.xlsx", "workbook (.xlsx)", "", "zp sheet list book.xlsx"},
    {"WARNINGS", "warnings of a job", "2 lines, 1 of them with a number", "zp view WARNINGS"},
    {"table", "table of components", "2 rows", "zp store import STORE table"},
    {"wide table", "table of components", "1 row", "zp store import STORE 'wide table'"},
    {"entries", "registration entries of a registry editor", "1 setting, 1 removal",
     "zp settings import entries -c COMPANY -a APPLICATION"},
    {"numbers", "text of numbers", "6 lines, delimiter blank: 3 numeric, 1 blank, 1 not numeric, and the names of the columns",
     "zp text lines numbers"},
    {"frame", "text of numbers", "2 lines, delimiter comma: 1 numeric, 0 blank, 0 not numeric, and the names of the columns",
     "zp text numbers frame"},
    {"word", "text", "1 line", "zp view word"},
    {"pages", "report in text", "2 lines, 2 pages", "zp view pages"},
    {"te xt", "text", "1 line", "zp view 'te xt'"},
    {"strange", "no file of a kind known here", "", ""},
};

TEST_F(InspectTool, TellsEachKindAndAccountsForAllBytes)
{
  WriteAll();
  for (Kind const & each : kinds) {
    nlohmann::json const found = Look(each.file);
    EXPECT_EQ(found["kind"], each.kind) << found;
    if (*each.holds != '\0') {
      EXPECT_EQ(found["holds"][0], each.holds);
    }
    EXPECT_EQ(found["next"].empty() ? "" : found["next"][0], each.next);
    EXPECT_EQ(found["fault_count"], 0) << found;
    ExpectAllBytes(found);
    for (auto const & part : found["parts"]) EXPECT_NE(part["what"], "unreadable") << found;
  }
  EXPECT_EQ(Look("archive")["version"], "schema 1");
  EXPECT_EQ(Look("export")["version"], "1");
  EXPECT_EQ(Look("picture")["version"], "3.0");
  EXPECT_EQ(Look("drawing")["version"], "AC1009");
  EXPECT_EQ(Look("strange")["is_not"].size(), 5U);
  EXPECT_EQ(Inspect("records --bytes").out,
            "records: record file of a record store, 36 bytes\n"
            "  holds   3 records, 1 free block; 8 bytes of them live\n"
            "  next    zp store recover ITS-INDEX-FILE --record records --list\n"
            "      OFFSET      LENGTH  WHAT\n"
            "           0           6  header of record 1\n"
            "           6           2  record 1\n"
            "           8           6  header of record 2\n"
            "          14           3  record 2\n"
            "          17           6  header of record 3\n"
            "          23           3  record 3\n"
            "          26          10  free block, once record 4\n"
            "                      36  in all\n");
  EXPECT_EQ(Look("numbers")["parts"],
            nlohmann::json::parse(R"([{"offset":0,"length":4,"what":"lines 1 to 1: names of the columns"},
      {"offset":4,"length":13,"what":"lines 2 to 5: numbers"},{"offset":17,"length":4,"what":"lines 6 to 6: not numeric"}])"));
  m_Folder.Write("a\tb's", "words alone\n");
  EXPECT_EQ(Inspect("'a\tb'\\''s'").out, "a\\x09b's: text, 12 bytes\n  holds   1 line\n  next    zp view $'a\\x09b\\'s'\n");
  EXPECT_EQ(Look("object")["parts"][2]["what"], "element 1: GPf 12, critical temperature");
  EXPECT_EQ(Look("archive")["parts"][0],
            nlohmann::json::parse(R"({"offset":0,"length":17,"what":"class GPDataArray, schema and tag"})"));
}

TEST_F(InspectTool, AnyDamageEndsInAnExitStatusWithAllBytesTold)
{
  WriteAll();
  for (Kind const & each : kinds) {
    std::string const whole = m_Folder.Read(each.file);
    std::vector<std::string> const damaged = {whole.substr(0, whole.size() / 2), whole + "xy", "\x80\xFF" + whole,
                                              "\xFE\xFF" + whole, std::string(whole).replace(whole.size() / 3, 1, "\xFE")};
    for (std::string const & bytes : damaged) {
      m_Folder.Write(each.file, bytes);
      ProgramRun const run = Inspect("--json --bytes '" + std::string(each.file) + "'");
      EXPECT_TRUE(run.status == 0 || run.status == 1) << each.file << run.err;
      ExpectAllBytes(nlohmann::json::parse(run.out)[0]);
    }
    m_Folder.Write(each.file, whole);
  }
  Patch("a.SR", 2, FromHex("01 00"));
  EXPECT_EQ(Inspect("a.SR").out,
            "a.SR: record file of a record store, 36 bytes\n"
            "  holds   3 records, 1 free block; 7 bytes of them live\n"
            "  holds   its other file is a.SI\n"
            "  broken  at 0: record 1: the index has 2 bytes, the block 1\n"
            "  next    zp store check a.SR\n"
            "  next    zp store recover a.SR --list\n");
  EXPECT_EQ(Inspect("a.SR").status, 1);
  ProgramRun const index = Inspect("a.SI");
  EXPECT_EQ(index.status, 0);
  EXPECT_NE(index.out.find("  holds   its other file is a.SR, which is broken\n  next    zp store check a.SI\n"),
            std::string::npos)
      << index.out;
  EXPECT_EQ(Inspect("a").out, index.out + Inspect("a.SR").out);
  m_Folder.Write("picture", m_Folder.Read("picture").substr(0, 52));
  EXPECT_EQ(Look("picture")["faults"], nlohmann::json({"it ends inside of a record"}));
}

TEST_F(InspectTool, WalksFoldersOnceAndOpensNoPipe)
{
  auto const & top = m_Folder.Path();
  std::filesystem::create_directories(top / "d/e");
  std::filesystem::create_directory_symlink(top / "d", top / "d/e/round");
  std::filesystem::create_symlink("nowhere", top / "d/gone");
  ASSERT_EQ(mkfifo((top / "d/pipe").c_str(), 0600), 0);
  m_Folder.Write("d/e/a", "1 2\n");
  ProgramRun const run = Inspect("-r d d/e /dev/null");
  EXPECT_EQ(run.out,
            "d/e/a: text of numbers, 4 bytes\n"
            "  holds   1 line, delimiter blank: 1 numeric, 0 blank, 0 not numeric\n"
            "  next    zp text numbers d/e/a\n"
            "d/gone: file that can't be looked at, 0 bytes\n"
            "  broken  d/gone: there is no such file, for the link leads nowhere\n"
            "d/pipe: pipe, socket or device, which isn't opened, 0 bytes\n"
            "/dev/null: pipe, socket or device, which isn't opened, 0 bytes\n");
  EXPECT_EQ(run.status, 1);
  std::string const tooLong(300, 'n');
  EXPECT_EQ(Inspect(tooLong + " d/e/a").out.find("\nd/e/a: text of numbers"), Inspect(tooLong).out.size() - 1);
  EXPECT_EQ(Inspect("d").out, "d: folder; -r looks at what is in it, 0 bytes\n");
  EXPECT_EQ(Inspect("-r --json none").status, 1);
}

}  // namespace
