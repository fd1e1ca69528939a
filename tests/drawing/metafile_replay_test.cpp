// The replay of metafile records: each kind, the table of objects, and records that are rough or hostile.

#include <gtest/gtest.h>

#include <zpbase/platform/bytes.h>

#include "tests/support/Dxf.h"
#include "tests/support/Metafiles.h"

namespace {

using Records = std::vector<std::string>;

// Hands the bytes over where they stand, at an odd place, with nothing behind them.
void replay(Canvas & canvas, std::string const & record)
{
  std::vector<char> bytes(record.size() + 1);
  std::copy(record.begin(), record.end(), bytes.begin() + 1);
  auto * const at = reinterpret_cast<METARECORD *>(bytes.data() + 1);
  EXPECT_EQ(DXFDC::EnumMetaFileProc(nullptr, nullptr, at, 0, reinterpret_cast<long>(&canvas.Target())), 1);
}

Records drawn(Canvas & canvas, std::string const & record)
{
  replay(canvas, record);
  return canvas.Records();
}

// A record of another kind at the end of which the whole record counts.
std::string pen(int style, int low, int high)
{
  return MetaRecord(META_CREATEPENINDIRECT, {style, 3, 0, low, high});
}

std::string font(int height, int width)
{
  return MetaRecord(META_CREATEFONTINDIRECT, {height, width, 0, 0, 400, 0x0201, 0, 0, 0}, "Face\0\0");
}

std::string chosen(int index)
{
  return MetaRecord(META_SELECTOBJECT, {index});
}

std::string deleted(int index)
{
  return MetaRecord(META_DELETEOBJECT, {index});
}

TEST(MetaFileReplay, DrawsWithTheParametersInTheirReverseOrder)
{
  struct {
    std::string record;
    Records records;
    CPoint position;  // from (1, 2)
  } const rows[] = {
      {MetaRecord(META_MOVETO, {-6, 5}), {}, {5, -6}},
      {MetaRecord(META_LINETO, {-6, 5}), {"LINE|CONTINUOUS|     7|1.0|98.0|5.0|106.0"}, {5, -6}},
      {MetaRecord(META_POLYLINE, {2, 3, 4, 5, 6}), {"LINE|CONTINUOUS|     7|3.0|96.0|5.0|94.0"}, {5, 6}},
      {MetaRecord(META_POLYGON, {2, 3, 4, 5, 6, 99}),
       {"LINE|CONTINUOUS|     7|3.0|96.0|5.0|94.0", "LINE|CONTINUOUS|     7|5.0|94.0|3.0|96.0"},
       {3, 4}},
      {MetaRecord(META_RECTANGLE, {4, 3, 2, 1}),
       {"LINE|CONTINUOUS|     7|1.0|98.0|3.0|98.0", "LINE|CONTINUOUS|     7|3.0|98.0|3.0|96.0",
        "LINE|CONTINUOUS|     7|3.0|96.0|1.0|96.0", "LINE|CONTINUOUS|     7|1.0|96.0|1.0|98.0"},
       {1, 2}},
      {MetaRecord(META_ELLIPSE, {24, 23, 4, 3}), {"CIRCLE|     7|13.0|86.0|10.0"}, {1, 2}},
      {MetaRecord(META_SETPIXEL, {0xFF, 0, 8, 7}), {"POINT|     7|7.0|92.0"}, {7, 8}},
      {MetaRecord(META_ARC, {10, 0, 20, 10, 20, 20, 0, 0}), {"ARC|     7|10.0|90.0|10.0|90.0|180.0"}, {0, 10}},
      {MetaRecord(META_CHORD, {10, 0, 20, 10, 20, 20, 0, 0}),
       {"ARC|     7|10.0|90.0|10.0|90.0|180.0", "LINE|CONTINUOUS|     7|0.0|90.0|10.0|80.0"},
       {10, 20}},
      {MetaRecord(META_PIE, {10, 0, 20, 10, 20, 20, 0, 0}),
       {"ARC|     7|10.0|90.0|10.0|90.0|180.0", "LINE|CONTINUOUS|     7|0.0|90.0|10.0|90.0",
        "LINE|CONTINUOUS|     7|10.0|90.0|10.0|80.0"},
       {10, 20}},
      {MetaRecord(META_ROUNDRECT, {0, 0, 4, 3, 2, 1}),
       {"LINE|CONTINUOUS|     7|3.0|96.0|1.0|96.0", "ARC|     7|1.0|96.0|0.0|0.0|0.0", "LINE|CONTINUOUS|     7|1.0|96.0|1.0|98.0",
        "ARC|     7|1.0|98.0|0.0|0.0|0.0", "LINE|CONTINUOUS|     7|1.0|98.0|3.0|98.0", "ARC|     7|3.0|98.0|0.0|0.0|0.0",
        "LINE|CONTINUOUS|     7|3.0|98.0|3.0|96.0", "ARC|     7|3.0|96.0|0.0|0.0|0.0"},
       {3, 4}},
      {MetaRecord(0x0626, {15, 0}, "any"), {}, {1, 2}},
      {MetaRecord(0x0001, {}), {}, {1, 2}},
  };
  Canvas canvas;
  for (auto const & row : rows) {
    canvas->MoveTo(1, 2);
    EXPECT_EQ(drawn(canvas, row.record), row.records);
    EXPECT_EQ(canvas.Position(), row.position);
  }
}

TEST(MetaFileReplay, SetsStatesAndNothingElse)
{
  Canvas canvas;
  replay(canvas, MetaRecord(META_SETBKMODE, {-1}));
  replay(canvas, MetaRecord(META_SETMAPMODE, {8}));
  replay(canvas, MetaRecord(META_SETBKCOLOR, {0x8001, 0x00F2}));
  replay(canvas, MetaRecord(META_SETTEXTCOLOR, {0xFFFF, 0xFFFF}));
  replay(canvas, MetaRecord(META_SETWINDOWORG, {2, -1}));
  replay(canvas, MetaRecord(META_SETWINDOWEXT, {4, 3}));
  replay(canvas, MetaRecord(META_SETVIEWPORTORG, {6, 5}));
  replay(canvas, MetaRecord(META_SETVIEWPORTEXT, {8, 7}));
  EXPECT_EQ(canvas->SetBkMode(0), -1);
  EXPECT_EQ(canvas->SetMapMode(0), 8);
  EXPECT_EQ(canvas->SetBkColor(0), 0x00F28001U);
  EXPECT_EQ(canvas->SetTextColor(0), 0xFFFFFFFFU);
  EXPECT_EQ(canvas->SetWindowOrg(0, 0), CPoint(-1, 2));
  EXPECT_EQ(canvas->SetWindowExt(0, 0), CSize(3, 4));
  EXPECT_EQ(canvas->SetViewportOrg(0, 0), CPoint(5, 6));
  EXPECT_EQ(canvas->SetViewportExt(0, 0), CSize(7, 8));
  EXPECT_EQ(canvas.Bytes(), "");
}

TEST(MetaFileReplay, CreatesIntoTheLowestFreeSlotOfAHundred)
{
  Canvas canvas;
  replay(canvas, pen(0x2201, 0x00FF, 0));
  for (int i = 1; i < 100; ++i) replay(canvas, MetaRecord(META_CREATEBRUSHINDIRECT, {2, 0x00FF, 0, i}));
  replay(canvas, pen(PS_DOT, 0, 0));  // the hundred-and-first
  for (int const index : {100, -1, 32767, -32768, 1}) replay(canvas, chosen(index));
  EXPECT_EQ(drawn(canvas, MetaRecord(META_LINETO, {100, 0})).at(0), "LINE|CONTINUOUS|     7|0.0|100.0|0.0|0.0");
  replay(canvas, chosen(0));
  EXPECT_EQ(drawn(canvas, MetaRecord(META_LINETO, {0, 0})).at(0), "LINE|DASHED|     1|0.0|0.0|0.0|100.0");

  for (int const index : {70, 50, 50, 100, -1}) replay(canvas, deleted(index));
  replay(canvas, pen(PS_DASHDOT, 0, 0xFF));
  replay(canvas, chosen(70));  // still free: nothing is selected anew
  EXPECT_EQ(drawn(canvas, MetaRecord(META_LINETO, {1, 1})).at(0), "LINE|DASHED|     1|0.0|100.0|1.0|99.0");
  replay(canvas, chosen(50));
  EXPECT_EQ(drawn(canvas, MetaRecord(META_LINETO, {0, 0})).at(0), "LINE|CENTER|     5|1.0|99.0|0.0|100.0");

  LOGBRUSH brush{};
  CBrush other;
  CBrush * const former = canvas->SelectObject(&other);
  ASSERT_NE(former, nullptr);
  former->GetLogBrush(&brush);
  EXPECT_EQ(brush.lbStyle, 2);
  EXPECT_EQ(brush.lbColor, 0x0000FF);
  EXPECT_EQ(brush.lbHatch, 1);
}

TEST(MetaFileReplay, ReachesNoObjectThatWasDeletedWhileSelected)
{
  Canvas canvas;
  replay(canvas, pen(PS_DASH, 0x00FF, 0));
  replay(canvas, MetaRecord(META_CREATEBRUSHINDIRECT, {0, 0, 0, 0}));
  replay(canvas, font(10, 4));
  for (int const index : {0, 1, 2}) replay(canvas, chosen(index));
  for (int const index : {0, 1, 2}) replay(canvas, deleted(index));
  EXPECT_EQ(canvas->GetTextExtent("ab"), CSize(8, 10));  // what was selected still counts
  EXPECT_EQ(drawn(canvas, MetaRecord(META_LINETO, {0, 1})).at(0), "LINE|DASHED|     1|0.0|100.0|1.0|100.0");
  CPen newPen;
  CBrush newBrush;
  CFont newFont;
  EXPECT_EQ(canvas->SelectObject(&newPen), nullptr);
  EXPECT_EQ(canvas->SelectObject(&newBrush), nullptr);
  EXPECT_EQ(canvas->SelectObject(&newFont), nullptr);
  EXPECT_EQ(canvas->GetTextExtent("ab"), CSize(0, 0));
}

TEST(MetaFileReplay, ReadsFontsOfEveryLength)
{
  std::string const whole = MetaRecord(META_CREATEFONTINDIRECT, {-12, 0, 450, -1, 700, 0x0201, 0x0403, 0x0605, 0xFF07},
                                       "0123456789012345678901234567890z and more");
  for (size_t words = 3; words <= whole.size() / 2; ++words) {
    std::string record = whole.substr(0, 2 * words);
    zp::WriteLittle(record.data(), static_cast<DWORD>(words));
    Canvas canvas;
    replay(canvas, record);
    replay(canvas, chosen(0));
    LOGFONT log{};
    CFont * const made = canvas->SelectObject(static_cast<CFont *>(nullptr));
    ASSERT_NE(made, nullptr) << words;
    made->GetLogFont(&log);
    EXPECT_EQ(log.lfHeight, words > 3 ? -12 : 0);
    EXPECT_EQ(log.lfWidth, words > 3 ? -8 : 1);
    EXPECT_EQ(log.lfFaceName, std::string("0123456789012345678901234567890").substr(0, words > 12 ? 2 * (words - 12) : 0));
    if (words < 12) continue;
    EXPECT_EQ(log.lfEscapement, 450);
    EXPECT_EQ(log.lfOrientation, -1);
    EXPECT_EQ(log.lfWeight, 700);
    EXPECT_EQ(log.lfItalic, 1);
    EXPECT_EQ(log.lfUnderline, 2);
    EXPECT_EQ(log.lfStrikeOut, 3);
    EXPECT_EQ(log.lfCharSet, 4);
    EXPECT_EQ(log.lfOutPrecision, 5);
    EXPECT_EQ(log.lfClipPrecision, 6);
    EXPECT_EQ(log.lfQuality, 7);
    EXPECT_EQ(log.lfPitchAndFamily, 0xFF);
  }
  std::tuple<int, int, int> const widths[] = {{12, 0, 8}, {1, 0, 1}, {-13, 0, -8}, {12, 5, 5}, {0, 0, 1}, {-32768, 0, -21845}};
  for (auto const & [height, width, expected] : widths) {
    Canvas canvas;
    replay(canvas, font(height, width));
    replay(canvas, chosen(0));
    EXPECT_EQ(canvas->GetTextExtent("a"), CSize(expected, height));
  }
}

TEST(MetaFileReplay, PlacesTextsOfBothKinds)
{
  Canvas canvas;
  replay(canvas, font(10, 4));
  replay(canvas, chosen(0));
  // Three characters: 12 wide, 10 high; margin 2, t 5, factor (12 - 4) / 3 / 5.
  std::string const text = "TEXT|     7|9.00|84.50|5.00|abc|0.53";
  struct {
    std::string record;
    Records records;
  } const rows[] = {
      {MetaRecord(META_TEXTOUT, {3}, std::string_view("abc\0\x08\0\x07\0", 8)), {text}},
      {MetaRecord(META_TEXTOUT, {3}, std::string_view("abc\0\xEE\xEE\x08\0\x07\0", 10)), {text}},  // its place is at the end
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 3, 0}, "abc"), {text}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 3, 0}, std::string_view("abc\0\x04\0\x04\0\x04\0", 10)), {text}},  // with spacing
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 3, ETO_OPAQUE, 0, 0, 9, 9}, "abc"), {text}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 3, ETO_CLIPPED | 0x80, 0, 0, 9, 9}, "abc"), {text}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 99, 0}, "abc!"), {"TEXT|     7|9.00|84.50|5.00|abc!|0.60"}},  // as many as are there
      {MetaRecord(META_TEXTOUT, {99}, std::string_view("ab\x08\0\x07\0", 6)), {"TEXT|     7|8.60|84.50|5.00|ab|0.48"}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 0, 0}, "abc"), {}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, -1, 0}, "abc"), {}},
      {MetaRecord(META_EXTTEXTOUT, {8, 7, 3, ETO_CLIPPED, 0, 0, 9}), {}},
      {MetaRecord(META_TEXTOUT, {0, 8, 7}), {}},
      {MetaRecord(META_TEXTOUT, {-32768, 8, 7}), {}},
  };
  for (auto const & row : rows) EXPECT_EQ(drawn(canvas, row.record), row.records) << &row - rows;
}

TEST(MetaFileReplay, ReadsNothingBehindARecord)
{
  // Every kind with every size below what it needs, and with counts that the size doesn't hold.
  struct {
    WORD function;
    int words;
  } const kinds[] = {
      {META_SETBKMODE, 1},      {META_SETMAPMODE, 1},     {META_SELECTOBJECT, 1}, {META_DELETEOBJECT, 1}, {META_SETBKCOLOR, 2},
      {META_SETTEXTCOLOR, 2},   {META_SETWINDOWORG, 2},   {META_SETWINDOWEXT, 2}, {META_LINETO, 2},       {META_MOVETO, 2},
      {META_SETVIEWPORTORG, 2}, {META_SETVIEWPORTEXT, 2}, {META_ELLIPSE, 4},      {META_RECTANGLE, 4},    {META_SETPIXEL, 4},
      {META_TEXTOUT, 3},        {META_ROUNDRECT, 6},      {META_ARC, 8},          {META_PIE, 8},          {META_CHORD, 8},
      {META_EXTTEXTOUT, 4},     {META_POLYGON, 3},        {META_POLYLINE, 3}};
  Canvas canvas;
  canvas->MoveTo(9, 9);
  for (auto const & kind : kinds)
    for (int words = 0; words < kind.words; ++words) {
      std::string record = MetaRecord(kind.function, {}) + std::string(2 * static_cast<size_t>(words), '\1');
      for (DWORD const size : {words + 3U, 3U, 2U, 1U, 0U}) {
        zp::WriteLittle(record.data(), size);
        EXPECT_EQ(drawn(canvas, record), Records()) << std::hex << kind.function;
      }
    }
  EXPECT_EQ(canvas.Position(), CPoint(9, 9));
  for (int const count : {0, -1, -32768}) EXPECT_EQ(drawn(canvas, MetaRecord(META_POLYGON, {count, 1, 1, 2, 2})), Records());
  EXPECT_EQ(drawn(canvas, MetaRecord(META_POLYLINE, {32767, 1, 1, 2, 2, 3})),
            Records{"LINE|CONTINUOUS|     7|1.0|99.0|2.0|98.0"});
}

}  // namespace
