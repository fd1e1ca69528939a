// zp dxf on metafiles of many kinds: the drawing, what is told, and what lies on the disk afterwards.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <thread>

#include <nlohmann/json.hpp>

#include <zpbase/platform/metafile.h>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tests/tools/metafile_bytes.h"

using namespace std::string_view_literals;
namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

class DrawingTool : public testing::Test {
 protected:
  ProgramRun Zp(std::string const & arguments, std::string const & input = "")
  {
    return RunZp(m_Folder.Path(), "dxf " + arguments, input);
  }

  // The entities of the drawing that a metafile becomes.
  std::string EntitiesOf(std::string const & metafile, std::string const & options = "")
  {
    m_Folder.Write("in.wmf", metafile);
    ProgramRun const run = Zp("in.wmf out.dxf " + options);
    EXPECT_EQ(run.status, 0) << run.err;
    m_strNotes = run.err;
    std::string const drawing = m_Folder.Read("out.dxf");
    std::string const mark = "  2\r\nENTITIES\r\n";
    size_t const first = drawing.find(mark) + mark.size();
    return drawing.substr(first, drawing.rfind("  0\r\nENDSEC\r\n") - first);
  }

  TempFolder m_Folder;
  std::string m_strNotes;
};

std::string lineFrom(char const * lineType, int color, int x, int y, int toX, int toY)
{
  char record[300];
  std::snprintf(record, sizeof record,
                "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\n%s\r\n 62\r\n%6d\r\n 10\r\n%d.0\r\n 20\r\n%d.0\r\n 11\r\n%d.0\r\n"
                " 21\r\n%d.0\r\n",
                lineType, color, x, y, toX, toY);
  return record;
}

std::string textOf(char const * x, char const * y, char const * height, std::string const & text, char const * factor)
{
  return std::string("  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n     7\r\n 10\r\n") + x + "\r\n 20\r\n" + y + "\r\n 40\r\n" +
         height + "\r\n  1\r\n" + text + "\r\n 41\r\n" + factor + "\r\n";
}

// A drawing's lines without the blanks in front, one behind the other.
std::string inOneLine(std::string const & drawing)
{
  std::string line;
  for (char const c : drawing) {
    if (c == ' ' && (line.empty() || line.back() == ' ')) continue;
    if (c != '\r') line += c == '\n' ? ' ' : c;
  }
  return line;
}

constexpr char const * wholeDrawing =
    "0 SECTION 2 HEADER 9 $ACADVER 1 AC1009 9 $DWGCODEPAGE 3 ANSI_1252 9 $INSBASE 10 0.0000 20 0.0000 30 0.0000 9 $EXTMIN 10 "
    "0.0000 20 0.0000 30 0.0000 9 $EXTMAX 10 400.0000 20 300.0000 30 0.0000 9 $LIMMIN 10 0.0000 20 0.0000 9 $LIMMAX 10 "
    "400.0000 20 300.0000 9 $LTSCALE 40 10.0000 0 ENDSEC 0 SECTION 2 TABLES 0 TABLE 2 VPORT 70 1 0 VPORT 2 *ACTIVE 70 0 10 "
    "0.0000 20 0.0000 11 1.0000 21 1.0000 12 200.0000 22 150.0000 13 0.0000 23 0.0000 14 1.0000 24 1.0000 15 0.0000 25 0.0000 "
    "16 0.0000 26 0.0000 36 1.0000 17 0.0000 27 0.0000 37 0.0000 40 330.0000 41 1.5000 42 50.0000 43 0.0000 44 0.0000 50 "
    "0.0000 51 0.0000 71 0 72 100 73 1 74 1 75 0 76 0 77 0 78 0 0 ENDTAB 0 TABLE 2 LTYPE 70 5 0 LTYPE 2 CONTINUOUS 70 0 3 "
    "Solid line 72 65 73 0 40 0.0000 0 LTYPE 2 DASHED 70 0 3 __ __ __ __ __ __ 72 65 73 2 40 0.7500 49 0.5000 49 -0.2500 0 "
    "LTYPE 2 CENTER 70 0 3 ____ _ ____ _ ____ 72 65 73 4 40 2.0000 49 1.2500 49 -0.2500 49 0.2500 49 -0.2500 0 LTYPE 2 DIVIDE "
    "70 0 3 __ . . __ . . __ 72 65 73 6 40 1.2500 49 0.5000 49 -0.2500 49 0.0000 49 -0.2500 49 0.0000 49 -0.2500 0 LTYPE 2 DOT "
    "70 0 3 . . . . . . . . . 72 65 73 2 40 0.2500 49 0.0000 49 -0.2500 0 ENDTAB 0 TABLE 2 LAYER 70 2 0 LAYER 2 0 70 0 62 7 6 "
    "CONTINUOUS 0 LAYER 2 FS_OBJECT 70 0 62 7 6 CONTINUOUS 0 ENDTAB 0 TABLE 2 STYLE 70 1 0 STYLE 2 STANDARD 70 0 40 0.0000 41 "
    "1.0000 50 0.0000 71 0 42 1.0000 3 txt 4  0 ENDTAB 0 ENDSEC 0 SECTION 2 BLOCKS 0 ENDSEC 0 SECTION 2 ENTITIES 0 LINE 8 "
    "FS_OBJECT 6 DASHED 62 1 10 10.0 20 290.0 11 20.0 21 290.0 0 ENDSEC 0 EOF ";

MetafileBytes oneLine()
{
  return MetafileBytes().Window(0, 0, 400, 300).Line(10, 10, 20, 10);
}

}  // namespace

TEST_F(DrawingTool, PutsTheEntitiesInAWholeDrawing)
{
  MetafileBytes const picture = MetafileBytes().Window(0, 0, 400, 300).Pen(1, 0xFF).Select(0).Line(10, 10, 20, 10);
  EXPECT_EQ(EntitiesOf(picture.Plain()), lineFrom("DASHED", 1, 10, 290, 20, 290));
  std::string const drawing = m_Folder.Read("out.dxf");
  EXPECT_EQ(inOneLine(drawing), wholeDrawing);
  EXPECT_EQ(m_strNotes, "");
  EXPECT_EQ(Zp("--check out.dxf").out,
            "out.dxf: " + std::to_string(std::count(drawing.begin(), drawing.end(), '\n')) + " lines of text, 1 line: sound\n");
  EXPECT_EQ(Zp("- -", picture.Plain()).out, drawing);
}

TEST_F(DrawingTool, CountsYFromTheLowerEdge)
{
  std::tuple<std::string, char const *, int> const rows[] = {
      {oneLine().Plain(), "", 300},
      {oneLine().Plain(), "--height 1000", 1000},
      {oneLine().Plain(), "--height -5", -5},
      {MetafileBytes().Window(-50, -80, 100, 160).Line(10, 10, 20, 10).Plain(), "", 80},
      {MetafileBytes().Window(0, 200, 300, -200).Line(10, 10, 20, 10).Plain(), "", 200},
      {MetafileBytes().Line(10, 10, 20, 10).Placeable(0, 0, 640, 480), "", 480},
      {oneLine().Placeable(0, 0, 640, 480), "", 300},
      {MetafileBytes().Line(10, 10, 20, 40).Line(10, 10, 20, 10).Plain(), "", 40},
      {MetafileBytes().Line(10, 10, 20, 10).Placeable(5000, 5000, 6000, 6000), "", 11},
      {MetafileBytes().Line(10, 10, 20, 10).Placeable(600, 400, 0, 0), "", 11},
      {MetafileBytes().Window(0, 0, 0, 0).Line(10, 10, 20, 10).Placeable(0, 0, 20, 30), "", 30},
  };
  for (auto const & [metafile, options, height] : rows) {
    std::string const entities = EntitiesOf(metafile, options);
    std::string const last = lineFrom("CONTINUOUS", 7, 10, height - 10, 20, height - 10);
    EXPECT_TRUE(entities.ends_with(last)) << entities << last;
  }
}

TEST_F(DrawingTool, FindsTheBoundsOfEachRecordWhereNoneAreTold)
{
  char const * const point = "; 10 to 11 by 20 to 21\n";
  char const * const area = "; 10 to 30 by 20 to 40\n";
  std::pair<std::string, char const *> const rows[] = {
      {MetafileBytes().Add(META_MOVETO, {20, 10}).Plain(), point},
      {MetafileBytes().Add(META_LINETO, {20, 10}).Plain(), point},
      {MetafileBytes().Add(META_SETPIXEL, {1, 2, 20, 10}).Plain(), point},
      {MetafileBytes().Add(META_TEXTOUT, {2, 0x6261, 20, 10}).Plain(), point},
      {MetafileBytes().Add(META_EXTTEXTOUT, {20, 10, 0, 0}).Plain(), point},
      {MetafileBytes().Add(META_POLYLINE, {2, 10, 20, 30, 40}).Plain(), area},
      {MetafileBytes().Add(META_POLYGON, {9, 10, 20, 30, 40}).Plain(), area},
      {MetafileBytes().Add(META_POLYGON, {-1, 10, 20, 30, 40}).Plain(), "; 0 to 1 by 0 to 1\n"},
      {MetafileBytes().Add(META_ELLIPSE, {40, 30, 20, 10}).Plain(), area},
      {MetafileBytes().Add(META_RECTANGLE, {40, 30, 20, 10}).Plain(), area},
      {MetafileBytes().Add(META_ROUNDRECT, {1, 2, 40, 30, 20, 10}).Plain(), area},
      {MetafileBytes().Add(META_ARC, {1, 2, 3, 4, 40, 30, 20, 10}).Plain(), area},
      {MetafileBytes().Add(META_PIE, {1, 2, 3, 4, 20, 10, 40, 30}).Plain(), area},
      {MetafileBytes().Add(META_CHORD, {1, 2, 3, 4, 40, 30, 20, 10}).Plain(), area},
  };
  for (auto const & [metafile, bounds] : rows) {
    m_Folder.Write("in.wmf", metafile);
    std::string const told = RunZp(m_Folder.Path(), "inspect in.wmf").out;
    EXPECT_NE(told.find(bounds), std::string::npos) << zp::ReadLittle<uint16_t>(metafile.data() + 22) << told;
  }
}

TEST_F(DrawingTool, LosesNoTextWithoutAFontAndNoPairOfLinesToAText)
{
  std::string const entities =
      EntitiesOf(MetafileBytes().Window(0, 0, 800, 480).Text(100, 40, "Feed").Text(100, 80, "a\r\nb\0c"sv).Plain(), "--stats");
  // The font has a fortieth of the smaller side: 12, and characters of 8.
  EXPECT_EQ(entities, textOf("102.40", "431.00", "6.00", "Feed", "1.13") + textOf("102.40", "391.00", "6.00", "a  b c", "1.20"));
  EXPECT_EQ(m_strNotes, "zp: in.wmf: 1 text held characters that end a line; blanks stand for them\n");
}

TEST_F(DrawingTool, CountsTextsThatHaveNoSize)
{
  MetafileBytes const picture = MetafileBytes()
                                    .Window(0, 0, 800, 480)
                                    .Add(0x02FB, {0, 8, 0, 0, 400, 0, 0, 0, 0}, std::string_view("F\0", 2))
                                    .Select(0)
                                    .Text(100, 40, "Feed")
                                    .Text(100, 40, "");
  EXPECT_EQ(EntitiesOf(picture.Plain()), "");
  EXPECT_EQ(m_strNotes, "zp: in.wmf: 1 text left out, in a font of no height\n");
}

TEST_F(DrawingTool, TellsOfShapesThatOnlyFill)
{
  MetafileBytes const picture = MetafileBytes().Window(0, 0, 800, 480).Pen(5, 0).Select(0).Add(0x041B, {30, 30, 10, 10});
  EXPECT_EQ(EntitiesOf(MetafileBytes(picture).Line(0, 0, 5, 5).Plain()), "");
  EXPECT_EQ(m_strNotes, "zp: in.wmf: 1 shape without a pen left out; a drawing has outlines alone\n");
}

TEST_F(DrawingTool, KeepsTheNumbersOfObjectsThatItDoesNotReplay)
{
  for (int const function : {0x00F7, 0x0142, 0x01F9, 0x06FF}) {
    MetafileBytes const picture =
        MetafileBytes().Window(0, 0, 400, 300).Pen(0, 0xFF).Add(static_cast<unsigned>(function), {0, 0}).Pen(2, 0xFF00);
    EXPECT_EQ(EntitiesOf(MetafileBytes(picture).Select(2).Line(10, 10, 20, 10).Plain()), lineFrom("DOT", 3, 10, 290, 20, 290));
  }
}

TEST_F(DrawingTool, StatsNameEverySkippedKind)
{
  m_Folder.Write("in.wmf", MetafileBytes(oneLine())
                               .Add(0x0538, {1, 1, 0, 0})
                               .Add(0x0626, {15, 0})
                               .Add(0x0626, {15, 0})
                               .Add(0x7777, {})
                               .Add(0x0418, {30, 30, 10, 10})
                               .Plain());
  ProgramRun const run = Zp("in.wmf out.dxf --stats");
  EXPECT_EQ(run.out.substr(run.out.find('\n') + 1),
            "  written: 1 line, 1 circle\n  skipped:        1  META_POLYPOLYGON, which would draw\n"
            "  skipped:        2  META_ESCAPE\n  skipped:        1  0x7777\n");
  Json const json = Json::parse(Zp("in.wmf out.dxf --stats --json").out);
  EXPECT_EQ(json["converted"], 1);
  Json const & file = json["files"][0];
  EXPECT_EQ(file["records"], 9);
  EXPECT_EQ(file["skipped_drawing_records"], 1);
  EXPECT_EQ(file["skipped"][1], (Json{{"function", 0x0626}, {"name", "META_ESCAPE"}, {"count", 2}}));
  EXPECT_EQ(file["entities"]["circles"], 1);
  EXPECT_EQ(file["faults"], Json::array());
}

TEST_F(DrawingTool, ConvertsAFolderAndGoesOnPastABadFile)
{
  fs::create_directory(m_Folder.Path() / "in");
  m_Folder.Write("in/a.wmf", oneLine().Plain());
  m_Folder.Write("in/b.WMF", "no metafile");
  m_Folder.Write("in/c.wmf", oneLine().Plain().substr(0, 50));
  m_Folder.Write("in/d.txt", "");
  m_Folder.Write("e.emf", std::string("\1\0\0\0", 4) + std::string(36, '\0') + " EMF" + std::string(60, '\0'));
  ProgramRun const run = Zp("--to out/drawings in e.emf missing.wmf");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.out.ends_with("2 converted, 3 failed\n")) << run.out;
  EXPECT_EQ(run.err,
            "zp: in/b.WMF: doesn't begin as a metafile (WMF); check which program wrote it\n"
            "zp: in/c.wmf: ends inside a record; what stands before it is converted\n"
            "zp: e.emf: is an enhanced metafile (EMF); save the picture as WMF\n"
            "zp: missing.wmf: can't be opened: No such file or directory; check the name\n");
  EXPECT_EQ(Zp("--check out/drawings/a.dxf out/drawings/c.dxf").status, 0);
  auto const files = fs::directory_iterator(m_Folder.Path() / "out/drawings");
  EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "nothing is left of those that failed";
}

// The first file waits for the folder's lock when the signal comes.
TEST_F(DrawingTool, ASignalLeavesNothingHalfWritten)
{
  for (char const * const name : {"a.wmf", "b.wmf"}) m_Folder.Write(name, oneLine().Plain());
  fs::path const out = m_Folder.Path() / "out";
  fs::create_directory(out);
  int const lock = open(out.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  pid_t const child = fork();
  if (child == 0) {
    std::signal(SIGTERM, SIG_DFL);
    if (chdir(m_Folder.Path().c_str()) == 0) execl(ZpProgram().c_str(), "zp", "dxf", "--to", "out", "a.wmf", "b.wmf", nullptr);
    _exit(99);
  }
  auto const hasWritten = [&] {
    auto const files = fs::directory_iterator(out);
    return std::any_of(begin(files), end(files), [](fs::directory_entry const & file) { return file.file_size() > 0; });
  };
  while (!hasWritten() && waitpid(child, nullptr, WNOHANG) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  kill(child, SIGTERM);
  close(lock);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_TRUE(fs::is_empty(out));
}

TEST_F(DrawingTool, NeverOverwritesAnInputAndKeepsWhatWasThere)
{
  std::string const bytes = oneLine().Plain();
  m_Folder.Write("a.wmf", bytes);
  m_Folder.Write("b.wmf", "no metafile");
  m_Folder.Write("old.dxf", "old");
  fs::create_hard_link(m_Folder.Path() / "a.wmf", m_Folder.Path() / "hard.dxf");
  fs::create_symlink("a.wmf", m_Folder.Path() / "soft.dxf");
  fs::create_directory(m_Folder.Path() / "sub");
  m_Folder.Write("sub/a.wmf", bytes);
  struct {
    char const * arguments;
    int status;
  } const rows[] = {
      {"a.wmf a.wmf", 2},
      {"a.wmf ./sub/../a.wmf", 2},
      {"a.wmf hard.dxf", 2},
      {"a.wmf soft.dxf", 2},
      {"a.wmf new.dxf --svg a.wmf", 2},
      {"a.wmf new.dxf --svg p --png ./p", 2},
      {"a.wmf new.dxf --png new.dxf", 2},
      {"--to out a.wmf sub", 2},
      {"a.wmf new.dxf --svg -", 2},
      {"a.wmf new.dxf --png ''", 2},
      {"a.wmf", 2},
      {"a.wmf sub", 2},
      {"--check --height 5 old.dxf", 2},
      {"a.wmf - --stats", 2},
      {"b.wmf old.dxf", 1},
      {"a.wmf missing/new.dxf", 1},
      {"a.wmf old.dxf --svg missing/p.svg", 1},
      {"a.wmf /dev/full", 1},
      {"/dev/zero new.dxf", 1},
  };
  for (auto const & row : rows) {
    ProgramRun const run = Zp(row.arguments);
    EXPECT_EQ(run.status, row.status) << row.arguments << '\n' << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << row.arguments << '\n' << run.err;
    EXPECT_EQ(m_Folder.Read("a.wmf"), bytes) << row.arguments;
    EXPECT_EQ(m_Folder.Read("old.dxf"), "old") << row.arguments;
    EXPECT_FALSE(m_Folder.Has("new.dxf")) << row.arguments;
  }
  fs::create_symlink("old.dxf", m_Folder.Path() / "link.dxf");
  fs::perms const former = fs::perms::owner_read | fs::perms::owner_write | fs::perms::set_uid;
  fs::permissions(m_Folder.Path() / "old.dxf", former);
  EXPECT_EQ(Zp("a.wmf link.dxf").status, 0);
  EXPECT_TRUE(fs::is_symlink(m_Folder.Path() / "link.dxf"));
  EXPECT_EQ(fs::status(m_Folder.Path() / "old.dxf").permissions(), former);
  for (auto const & entry : fs::directory_iterator(m_Folder.Path()))
    EXPECT_EQ(entry.path().string().find(".new"), std::string::npos) << entry.path();
}

TEST_F(DrawingTool, CheckTellsWhatIsBroken)
{
  EntitiesOf(MetafileBytes(oneLine()).Add(0x0418, {30, 30, 10, 10}).Text(5, 5, "x").Plain());
  std::string const sound = m_Folder.Read("out.dxf");
  std::tuple<char const *, char const *, char const *> const rows[] = {
      {" 20\r\n290.0", " 20\r\nx", "\"x\" is no number for group 20"},
      {" 20\r\n290.0", " 20\r\n1e300", "\"1e300\" is no number for group 20"},
      {" 20\r\n290.0\r\n", "", "the LINE has no group 20"},
      {" 20\r\n290.0", " 10\r\n290.0", "group 10 stands twice in one LINE"},
      {"\r\n  8\r\nFS_OBJECT\r\n  6", "\r\n  8\r\nOTHER\r\n  6", "the layer OTHER isn't defined"},
      {"  6\r\nCONTINUOUS\r\n 62\r\n     7\r\n 10", "  6\r\nWAVE\r\n 62\r\n     7\r\n 10", "the line type WAVE isn't defined"},
      {"  0\r\nLINE", "  0\r\nSPLINE", "\"SPLINE\" is no entity of ours"},
      {" 62\r\n     7\r\n 10", " 62\r\n   256\r\n 10", "\"   256\" is no colour number"},
      {" 40\r\n10.0\r\n  0", " 40\r\n-1.0\r\n  0", "the CIRCLE's radius is below 0"},
      {"  1\r\nx\r\n", "  1\r\nx\ry\r\n", "a character in the value ends a line for some readers"},
      {"  1\r\nx\r\n", "  1\r\nx\r\ny\r\n", "\"y\" is no group code"},
      {"AC1009", "AC1015", "\"AC1015\" is none of ours for $ACADVER"},
      {" 49\r\n1.2500\r\n", " 49\r\n1.5000\r\n", "the pattern of the line type CENTER doesn't agree with its length"},
      {"  2\r\nTABLES", "  2\r\nTABELS", "\"TABLE\" stands where the section's end was expected"},
      {"\r\n  0\r\nEOF\r\n", "\r\n", "the drawing ends without its end mark"},
      {"  0\r\nEOF\r\n", "  0\r\nEOF\r\n  0\r\nLINE\r\n", "something stands behind the end mark"},
      {"  2\r\nENTITIES", "  2\r\nENTITIES\r\n", "\"\" is no group code"},
      {"\r\n", "\n", "the line doesn't end with CR LF"},
  };
  for (auto const & [old, other, told] : rows) {
    std::string broken = sound;
    size_t const at = broken.find(old);
    ASSERT_NE(at, std::string::npos) << old;
    m_Folder.Write("broken.dxf", broken.replace(at, std::strlen(old), other));
    ProgramRun const run = Zp("--check broken.dxf");
    EXPECT_EQ(run.status, 1) << told;
    EXPECT_NE(run.out.find(std::string(": ") + told + "\n"), std::string::npos) << told << '\n' << run.out;
  }
  size_t const value = sound.find("290.0");
  m_Folder.Write("long.dxf", sound.substr(0, value) + std::string(70000, '1') + sound.substr(value));
  EXPECT_TRUE(Zp("--check long.dxf").out.ends_with(", no entities: 3 faults\n"));
  for (size_t length = 0; length < sound.size(); length += 37)
    m_Folder.Write("cut" + std::to_string(length), sound.substr(0, length));
  for (Json const & file : Json::parse(Zp("--check --json cut*").out)) EXPECT_FALSE(file["sound"]) << file;
}

TEST_F(DrawingTool, DrawsWhatTheDrawingHolds)
{
  m_Folder.Write("in.wmf", MetafileBytes()
                               .Window(0, 0, 400, 300)
                               .Pen(0, 0xFF)
                               .Pen(1, 0xFF00)
                               .Select(0)
                               .Line(0, 0, 400, 0)
                               .Add(0x0213, {300, 400})
                               .Select(1)
                               .Line(0, 300, 400, 300)
                               .Text(100, 100, "xx")
                               .Plain());
  ASSERT_EQ(Zp("in.wmf out.dxf --svg a.svg --png a.png").status, 0);
  std::string const svg = m_Folder.Read("a.svg");
  // 2.9 points for a unit, in a margin of 20: two joined lines in red, and one with dashes in green.
  EXPECT_NE(svg.find("width=\"1200px\" height=\"910px\""), std::string::npos) << svg.substr(0, 300);
  EXPECT_NE(svg.find("d=\"M 20 20 L 1180 20 L 1180 890 \""), std::string::npos) << svg;
  EXPECT_NE(svg.find("stroke:rgb(100%,0%,0%)"), std::string::npos) << svg;
  EXPECT_NE(svg.find("stroke:rgb(0%,100%,0%);stroke-opacity:1;stroke-dasharray:14.5,7.25;"), std::string::npos) << svg;
  size_t const first = svg.find("<use ");
  size_t const second = svg.find("<use ", first + 1);
  ASSERT_NE(second, std::string::npos) << svg;
  auto const placeOf = [&](size_t glyph) {
    double place = 0;  // read in any locale
    std::from_chars(&svg[svg.find(" x=\"", glyph) + 4], svg.data() + svg.size(), place);
    return place;
  };
  EXPECT_NEAR(placeOf(second) - placeOf(first), 3.50 * 0.74 * 2.9, 0.001) << "a text of that height and width factor";
  std::string const png = m_Folder.Read("a.png");
  EXPECT_EQ(png.substr(1, 3), "PNG");
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\4\260\0\0\3\216", 8));
  ASSERT_EQ(Zp("--check out.dxf --svg b.svg").status, 0);
  EXPECT_EQ(m_Folder.Read("b.svg"), svg);
  m_Folder.Write("in.wmf", MetafileBytes().Plain());
  EXPECT_EQ(Zp("in.wmf empty.dxf --png empty.png").status, 0);
}
