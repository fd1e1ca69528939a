// DXFDC: the records byte for byte, the shapes that they make, and where the current position is afterwards.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <tuple>

#include "tests/support/Dxf.h"
#include "tests/support/OwnProcess.h"

namespace {

using Records = std::vector<std::string>;

TEST(DXFDC, WritesEachRecordByteForByte)
{
  Canvas canvas;
  canvas->MoveTo(10, 10);
  EXPECT_EQ(canvas->LineTo(20, 10), 1);
  EXPECT_EQ(
      canvas.Bytes(),
      "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\nCONTINUOUS\r\n 62\r\n     7\r\n 10\r\n10.0\r\n 20\r\n90.0\r\n 11\r\n20.0\r\n"
      " 21\r\n90.0\r\n");
  canvas.SelectPen(PS_SOLID, 0x0000FF);
  EXPECT_EQ(canvas->SetPixel(-3, 104, 0x00FF00), 0x00FF00U);
  EXPECT_EQ(canvas.Bytes(), "  0\r\nPOINT\r\n  8\r\nFS_OBJECT\r\n 62\r\n     1\r\n 10\r\n-3.0\r\n 20\r\n-4.0\r\n");
  canvas->Ellipse(0, 0, 21, 20);
  EXPECT_EQ(canvas.Bytes(),
            "  0\r\nCIRCLE\r\n  8\r\nFS_OBJECT\r\n 62\r\n     1\r\n 10\r\n10.0\r\n 20\r\n90.0\r\n 40\r\n10.0\r\n");
  canvas.SelectPen(PS_SOLID, 0xC0C0C0);
  canvas->Arc(0, 0, 20, 20, 10, 0, 20, 10);
  EXPECT_EQ(canvas.Bytes(),
            "  0\r\nARC\r\n  8\r\nFS_OBJECT\r\n 62\r\n   254\r\n 10\r\n10.0\r\n 20\r\n90.0\r\n 40\r\n10.0\r\n 50\r\n270.0\r\n"
            " 51\r\n0.0\r\n");
  canvas->Arc(0, 0, 20, 50, 20, 25, 10, 50);
  EXPECT_EQ(canvas.Bytes(),
            "  0\r\nARC\r\n  8\r\nFS_OBJECT\r\n 62\r\n   254\r\n 10\r\n-15.0\r\n 20\r\n75.0\r\n 40\r\n37.50\r\n 50\r\n0.0\r\n"
            " 51\r\n36.87\r\n"
            "  0\r\nARC\r\n  8\r\nFS_OBJECT\r\n 62\r\n   254\r\n 10\r\n10.0\r\n 20\r\n93.75\r\n 40\r\n6.25\r\n 50\r\n36.87\r\n"
            " 51\r\n90.0\r\n");
  canvas->SetTextColor(0xFFFFFF);
  tagRECT const rect{0, 0, 33, 12};
  EXPECT_EQ(canvas->ExtTextOutA(5, 7, 0, &rect, "a b", nullptr), 1);
  EXPECT_EQ(canvas.Bytes(),  // t 6, margin 2.4, factor (33 - 4.8) / 3 / 6
            "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n    41\r\n 10\r\n7.40\r\n 20\r\n84.00\r\n 40\r\n6.00\r\n  1\r\na b\r\n"
            " 41\r\n1.57\r\n");
}

TEST(DXFDC, KnowsColoursAndLineTypesByTheirTables)
{
  std::tuple<COLORREF, int> const colors[] = {{0x000000, 7},   {0x000080, 14},  {0x008000, 74},  {0x008080, 44}, {0x800000, 164},
                                              {0x800080, 202}, {0x808000, 124}, {0xC0C0C0, 254}, {0xC0DCC0, 74}, {0xF0CAA6, 5},
                                              {0xF0FBFF, 41},  {0xA4A0A0, 254}, {0x808080, 252}, {0x0000FF, 1},  {0x00FF00, 3},
                                              {0x00FFFF, 2},   {0xFF0000, 5},   {0xFF00FF, 6},   {0xFFFF00, 4},  {0xFFFFFF, 41},
                                              {0x010000FF, 7}, {0x123456, 7},   {0xFFFFFFFF, 7}};
  for (auto const & [color, number] : colors) EXPECT_EQ(DXFColorFromCOLORREF(color), number) << std::hex << color;

  Canvas canvas;
  std::tuple<UINT, char const *> const styles[] = {{PS_SOLID, "CONTINUOUS"},  {PS_DASH, "DASHED"},
                                                   {PS_DOT, "DOT"},           {PS_DASHDOT, "CENTER"},
                                                   {PS_DASHDOTDOT, "DIVIDE"}, {PS_INSIDEFRAME, "CONTINUOUS"},
                                                   {0x2201, "DASHED"},        {0xFFFFFF0FU, "CONTINUOUS"}};
  for (auto const & [style, type] : styles) {
    canvas.SelectPen(style, 0);
    canvas->LineTo(1, 100);
    EXPECT_EQ(canvas.Records().at(0).substr(0, 5 + strlen(type)), std::string("LINE|") + type);
  }
}

// Draws a shape twice, as records and with separate numbers.
struct Shape {
  std::function<int(DXFDC &)> draw;
  Records records;
  CPoint position;  // from (1, 1)
};

void expectShapes(UINT style, std::vector<Shape> const & shapes)
{
  Canvas canvas;
  canvas.SelectPen(style, 0);
  for (Shape const & shape : shapes) {
    canvas->MoveTo(1, 1);
    EXPECT_EQ(shape.draw(canvas.Target()), 1);
    EXPECT_EQ(canvas.Records(), (style & PS_STYLE_MASK) == PS_NULL ? Records() : shape.records);
    EXPECT_EQ(canvas.Position(), shape.position) << &shape - shapes.data();
  }
}

tagPOINT open[] = {{0, 0}, {10, 0}, {10, 10}};
tagPOINT closed[] = {{0, 0}, {10, 0}, {0, 0}};
tagRECT const turned{20, 10, 0, 0};  // left and right, top and bottom the wrong way round
tagRECT const square{0, 0, 20, 20};

std::string line(char const * ends)
{
  return std::string("LINE|CONTINUOUS|     7|") + ends;
}

std::vector<Shape> const shapes = {
    {[](DXFDC & dc) { return dc.Polyline(open, 3); }, {line("0.0|100.0|10.0|100.0"), line("10.0|100.0|10.0|90.0")}, {10, 10}},
    {[](DXFDC & dc) { return dc.Polygon(open, 3); },
     {line("0.0|100.0|10.0|100.0"), line("10.0|100.0|10.0|90.0"), line("10.0|90.0|0.0|100.0")},
     {0, 0}},
    {[](DXFDC & dc) { return dc.Polygon(closed, 3); }, {line("0.0|100.0|10.0|100.0"), line("10.0|100.0|0.0|100.0")}, {0, 0}},
    {[](DXFDC & dc) { return dc.Polygon(open + 1, 1); }, {}, {10, 0}},
    {[](DXFDC & dc) { return dc.Polygon(open, 0) + dc.Polyline(open, -1) - dc.Polygon(nullptr, 2); }, {}, {1, 1}},
    {[](DXFDC & dc) { return dc.Rectangle(&turned); },
     {line("20.0|90.0|0.0|90.0"), line("0.0|90.0|0.0|100.0"), line("0.0|100.0|20.0|100.0"), line("20.0|100.0|20.0|90.0")},
     {20, 10}},
    {[](DXFDC & dc) {
       return dc.Chord(&square, {20, 10}, {10, 20});
     },
     {"ARC|     7|10.0|90.0|10.0|0.0|90.0", line("10.0|80.0|20.0|90.0")},
     {20, 10}},
    {[](DXFDC & dc) { return dc.Pie(20, 20, 0, 0, 5, 5, 7, 7); },  // points on no axis
     {"ARC|     7|10.0|90.0|10.0|-1.0|359.0", line("7.0|93.0|10.0|90.0"), line("10.0|90.0|5.0|95.0")},
     {5, 5}},
    {[](DXFDC & dc) {
       return dc.RoundRect(&turned, {4, 4});
     },
     {line("18.0|90.0|2.0|90.0"), "ARC|     7|2.0|92.0|2.0|90.0|180.0", line("0.0|92.0|0.0|98.0"),
      "ARC|     7|2.0|98.0|2.0|180.0|270.0", line("2.0|100.0|18.0|100.0"), "ARC|     7|18.0|98.0|2.0|270.0|0.0",
      line("20.0|98.0|20.0|92.0"), "ARC|     7|18.0|92.0|2.0|0.0|90.0"},
     {18, 10}},
};

TEST(DXFDC, DrawsShapesAndLeavesThePositionBehind)
{
  expectShapes(PS_SOLID, shapes);
}

TEST(DXFDC, MovesWithAPenThatDrawsNothing)
{
  expectShapes(0x2200 | PS_NULL, shapes);
  Canvas canvas;
  canvas.SelectPen(PS_NULL, 0);
  canvas->MoveTo(1, 1);
  canvas->Ellipse(0, 0, 50, 20);
  EXPECT_EQ(canvas.Position(), CPoint(1, 1));
  canvas->SetPixel(7, 8, 0);
  EXPECT_EQ(canvas.Position(), CPoint(7, 8));
  tagRECT const rect{0, 0, 10, 10};
  canvas->ExtTextOutA(0, 0, 0, &rect, "x", nullptr);
  EXPECT_EQ(canvas.Records(), Records{"TEXT|     7|2.00|92.50|5.00|x|1.20"});  // its colour is not the pen's
}

TEST(DXFDC, TakesNearlyRoundEllipsesForCirclesThatMoveNothing)
{
  std::tuple<int, int, bool> const rows[] = {{100, 105, true}, {100, 108, true}, {100, 109, true},  {100, 110, false},
                                             {100, 92, false}, {100, 94, true},  {1000, 922, true}, {3, 3, true},
                                             {1, 1, false},    {0, 10, false}};
  Canvas canvas;
  for (auto const & [width, height, circle] : rows) {
    canvas->MoveTo(1, 1);
    canvas->Ellipse(width, 0, 0, height);
    Records const records = canvas.Records();
    EXPECT_EQ(records.at(0).substr(0, 7) == "CIRCLE|", circle) << width << " " << height;
    EXPECT_EQ(canvas.Position(), circle ? CPoint(1, 1) : CPoint(width, height / 2));
  }
}

std::string arc(char const * values)
{
  return std::string("ARC|     7|") + values;
}

Records const wide = {arc("25.00|90.0|5.00|0.0|53.13"),     arc("10.0|70.0|30.00|53.13|90.0"),
                      arc("10.0|70.0|30.00|90.0|126.87"),   arc("-5.00|90.0|5.00|126.87|180.0"),
                      arc("-5.00|90.0|5.00|180.0|233.13"),  arc("10.0|110.0|30.00|233.13|270.0"),
                      arc("10.0|110.0|30.00|270.0|306.87"), arc("25.00|90.0|5.00|306.87|0.0")};
Records const tall = {arc("-10.0|90.0|30.00|0.0|36.87"),   arc("10.0|105.00|5.00|36.87|90.0"),
                      arc("10.0|105.00|5.00|90.0|143.13"), arc("30.0|90.0|30.00|143.13|180.0"),
                      arc("30.0|90.0|30.00|180.0|216.87"), arc("10.0|75.00|5.00|216.87|270.0"),
                      arc("10.0|75.00|5.00|270.0|323.13"), arc("-10.0|90.0|30.00|323.13|0.0")};

Records quarters(Records const & oval, char const * wanted)
{
  Records records;
  for (char const * c = wanted; *c != '\0'; ++c)
    records.insert(records.end(), oval.begin() + 2 * (*c - '1'), oval.begin() + 2 * (*c - '1') + 2);
  return records;
}

TEST(DXFDC, DrawsOvalsByWholeQuartersInTheirOrder)
{
  // The four points by their angle / 90, and one on no axis.
  tagPOINT const onWide[] = {{30, 10}, {10, 18}, {-10, 10}, {10, 2}, {3, 3}};
  tagPOINT const onTall[] = {{18, 10}, {10, 30}, {2, 10}, {10, -10}, {3, 3}};
  std::tuple<int, int, char const *> const sweeps[] = {
      {0, 1, "1"},  {1, 2, "2"},    {2, 3, "3"},    {3, 0, "4"},    {0, 2, "12"}, {1, 0, "234"},  {2, 1, "134"}, {3, 2, "124"},
      {3, 1, "14"}, {0, 0, "1234"}, {3, 3, "1234"}, {2, 2, "1234"}, {4, 1, "1"},  {4, 4, "1234"}, {3, 4, "4"},   {0, 4, "1234"}};
  Canvas canvas;
  for (auto const & [start, end, wanted] : sweeps) {
    canvas->Arc(-10, 18, 30, 2, onWide[start].x, onWide[start].y, onWide[end].x, onWide[end].y);
    EXPECT_EQ(canvas.Position(), onWide[end]);
    EXPECT_EQ(canvas.Records(), quarters(wide, wanted)) << start << " to " << end;
    tagRECT const rect{2, -10, 18, 30};
    canvas->Arc(&rect, onTall[start], onTall[end]);
    EXPECT_EQ(canvas.Records(), quarters(tall, wanted)) << start << " to " << end;
  }
  canvas->Ellipse(-100, 0, 100, 50);
  std::string const flat = canvas.Bytes();
  canvas->Ellipse(-100, -25, 100, 75);  // the shorter axis has no say
  EXPECT_EQ(canvas.Bytes(), flat);
}

TEST(DXFDC, RoundsCornersByQuartersOfOvals)
{
  Canvas canvas;
  canvas->RoundRect(0, 0, 40, 20, 8, 4);
  EXPECT_EQ(canvas.Records(),
            (Records{line("36.0|80.0|4.0|80.0"), arc("4.0|78.0|6.00|90.0|126.87"), arc("1.00|82.0|1.00|126.87|180.0"),
                     line("0.0|82.0|0.0|98.0"), arc("1.00|98.0|1.00|180.0|233.13"), arc("4.0|102.0|6.00|233.13|270.0"),
                     line("4.0|100.0|36.0|100.0"), arc("36.0|102.0|6.00|270.0|306.87"), arc("39.00|98.0|1.00|306.87|0.0"),
                     line("40.0|98.0|40.0|82.0"), arc("39.00|82.0|1.00|0.0|53.13"), arc("36.0|78.0|6.00|53.13|90.0")}));
  EXPECT_EQ(canvas.Position(), CPoint(36, 20));
}

TEST(DXFDC, SetsTextsLineByLineWithOneFactor)
{
  Canvas canvas;
  tagRECT rect{0, 30, 60, 0};
  // Three lines of 10: t 4, margin 2.5, factor (60 - 5) / 5 / 4, from 30 - 7 upwards.
  EXPECT_EQ(canvas->DrawTextA("abc\r\n\r\nde\rf\n\r\n", &rect, 0), 4);
  EXPECT_EQ(canvas.Bytes(),
            "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n     7\r\n 10\r\n2.50\r\n 20\r\n77.00\r\n 40\r\n4.00\r\n  1\r\nabc\r\n"
            " 41\r\n2.75\r\n"
            "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n     7\r\n 10\r\n2.50\r\n 20\r\n97.00\r\n 40\r\n4.00\r\n  1\r\nde\rf\n\r\n"
            " 41\r\n2.75\r\n");
  EXPECT_EQ(rect, (tagRECT{0, 30, 60, 0}));
  std::tuple<char const *, tagRECT, UINT, int> const silent[] = {{"a\r\nb", {0, 0, 9, 29}, DT_CALCRECT, 5},
                                                                 {"\r\n\r\n", {0, 0, 9, 30}, 0, 6},
                                                                 {"", {0, 0, 9, 30}, 0, 0},
                                                                 {"a", {0, 5, 9, 5}, 0, 0}};
  for (auto const & [text, area, format, height] : silent) {
    tagRECT copy = area;
    EXPECT_EQ(canvas->DrawTextA(text, &copy, format), height) << text;
  }
  tagRECT const flat{0, 5, 9, 5};
  EXPECT_EQ(canvas->ExtTextOutA(0, 0, 0, &flat, "a", nullptr), 1);
  EXPECT_EQ(canvas->ExtTextOutA(0, 0, 0, nullptr, "a", nullptr), 1);
  EXPECT_EQ(canvas->ExtTextOutA(0, 0, 0, &rect, "", nullptr), 1);
  EXPECT_EQ(canvas.Bytes(), "");
  EXPECT_EQ(canvas.Position(), CPoint(0, 0));

  std::string const longText(40000, 'y');
  canvas->ExtTextOutA(0, 0, 0, &rect, CString(longText), nullptr);
  EXPECT_EQ(canvas.Records(), Records{"TEXT|     7|6.00|77.50|15.00|" + longText + "|0.00"});
}

TEST(DXFDC, RoundsTwoDecimalsAsPrintfDoes)
{
  Canvas canvas(3);
  std::string expected;
  for (int width = 1; width < 60; ++width)
    for (int const height : {1, 2, 3, 5, 7, 8, 16, 25, 333, 1 << 20, std::numeric_limits<int>::max()}) {
      tagRECT const rect{0, 0, width * width * width, height};
      canvas->ExtTextOutA(-width, width - 4, 0, &rect, "abc", nullptr);
      double const t = 0.5 * height;
      double const margin = 0.2 * std::min(width * width * width, height);
      char record[200];
      PlainLocale const plain;
      snprintf(record, sizeof record, "TEXT|     7|%.2f|%.2f|%.2f|abc|%.2f\n", -width + margin,
               3 - (width - 4 + (height + t) / 2), t, ((width * width * width - 2 * margin) / 3) / t);
      expected += record;
    }
  std::string drawn;
  for (std::string const & record : canvas.Records()) drawn += record + "\n";
  EXPECT_EQ(drawn, expected);
}

TEST(DXFDC, MeasuresTextsByTheFontsRecord)
{
  Canvas canvas;
  EXPECT_EQ(canvas->GetTextExtent("abc"), CSize(0, 0));
  canvas.SelectFont(-13, 0);
  EXPECT_EQ(canvas->GetTextExtent("abc"), CSize(15, -13));
  canvas.SelectFont(12, 8);
  EXPECT_EQ(canvas->GetTextExtent(""), CSize(0, 12));
  CFont blank;
  CFont * const former = canvas->SelectObject(&blank);
  EXPECT_EQ(canvas->GetTextExtent("abc"), CSize(0, 0));
  LOGFONT record{};
  record.lfHeight = 3;
  blank.CreateFontIndirectA(&record);  // read when measured
  EXPECT_EQ(canvas->GetTextExtent("abc"), CSize(15, 3));
  EXPECT_EQ(canvas->SelectObject(former), &blank);
}

TEST(DXFDC, KeepsStatesThatTheOutputDoesNotKnow)
{
  TempFolder const folder;
  GPFile file(folder.Name("a.dxf"));
  file.Open(CFile::modeCreate);
  CDC context;
  context.SetViewportOrg(1, 2);
  context.SetViewportExt(3, 4);
  context.SetWindowOrg(5, 6);
  context.SetWindowExt(7, 8);
  context.SetBkMode(TRANSPARENT);
  context.SetMapMode(MM_ANISOTROPIC);
  context.MoveTo(9, 10);
  {
    DXFDC dc(file, &context, 50);
    EXPECT_TRUE(dc.SetViewportOrg(0, 0) == CPoint(1, 2) && dc.SetViewportExt({9, 9}) == CSize(3, 4));
    EXPECT_TRUE(dc.SetWindowOrg({0, 0}) == CPoint(5, 6) && dc.SetWindowExt(9, 9) == CSize(7, 8));
    using Four = std::array<long, 4>;
    EXPECT_EQ((Four{dc.SetBkMode(1), dc.SetMapMode(2), dc.SetBkColor(3), dc.SetTextColor(4)}),
              (Four{TRANSPARENT, MM_ANISOTROPIC, 0, 0}));
    EXPECT_EQ((Four{dc.SetBkMode(0), dc.SetMapMode(0), dc.SetBkColor(0), dc.SetTextColor(0)}), (Four{1, 2, 3, 4}));
    EXPECT_EQ(DXFDC::DrawingHeight, 50);
    CBrush brush;
    EXPECT_EQ(dc.SelectObject(&brush), nullptr);
    EXPECT_EQ(dc.SelectObject(static_cast<CBrush *>(nullptr)), &brush);
    EXPECT_EQ(dc.SelectObject(static_cast<CPen *>(nullptr)), nullptr);
    DXFDC const second(file, &context, 60);
    dc.LineTo(9, 10);  // flipped by the height that was given last
    CRuntimeClass const & facts = *dc.GetRuntimeClass();
    EXPECT_STREQ(facts.m_lpszClassName, "DXFDC");
    EXPECT_EQ(facts.m_pfnGetBaseClass(), RUNTIME_CLASS(CObject));
    EXPECT_EQ(facts.m_pfnCreateObject, nullptr);
    EXPECT_EQ(facts.m_wSchema, 0xFFFF);
  }
  EXPECT_EQ(folder.Read("a.dxf"),
            "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\nCONTINUOUS\r\n 62\r\n     7\r\n 10\r\n9.0\r\n 20\r\n50.0\r\n"
            " 11\r\n9.0\r\n 21\r\n50.0\r\n");
  DXFDC::ResetDrawingHeight();
  EXPECT_EQ(DXFDC::DrawingHeight, 0);
}

TEST(DXFDC, OverflowsNowhere)
{
  constexpr int most = std::numeric_limits<int>::max();
  constexpr int least = std::numeric_limits<int>::min();
  Canvas canvas(most);
  canvas->MoveTo(least, least);
  canvas->LineTo(most, most);
  EXPECT_EQ(canvas.Records(), Records{line("-2147483648.0|4294967295.0|2147483647.0|0.0")});
  canvas->Ellipse(most - 20, least, most, least + 20);
  EXPECT_EQ(canvas.Records(), Records{"CIRCLE|     7|2147483637.0|4294967285.0|10.0"});
  int const values[] = {least, least + 1, -1, 0, 1, most - 1, most};
  for (int const a : values)
    for (int const b : values)
      for (int const c : values) {
        tagRECT rect{a, b, c, a};
        canvas->Ellipse(&rect);
        canvas->Pie(a, b, c, a, b, c, a, b);
        canvas->RoundRect(&rect, {b, c});
        canvas->ExtTextOutA(a, b, 0, &rect, "text", nullptr);
        canvas->DrawTextA("a\r\nb", &rect, 0);
        canvas.SelectFont(a, b);
        canvas->GetTextExtent("text");
      }
  EXPECT_EQ(canvas.Bytes().find("inf"), std::string::npos);
}

TEST(DXFDC, TellsFailedWritesThroughTheFileAlone)
{
  Canvas canvas;
  canvas->LineTo(1, 1);
  canvas.File().Close();
  canvas.File().Open(CFile::modeRead);
  EXPECT_EQ(canvas->LineTo(2, 2), 1);
  EXPECT_EQ(canvas.File().IsWriteOK(), 0);
  EXPECT_EQ(canvas.Position(), CPoint(2, 2));
  canvas.File().Close();
  canvas.File().Open(CFile::modeWrite);
  canvas.File().SeekToEnd();
  std::vector<tagPOINT> const zigzag(1000, {1, 1});
  canvas->Polyline(std::vector<tagPOINT>(zigzag).data(), 1000);  // more than leaves in one write
  EXPECT_EQ(canvas.Records().size(), 1000U);
}

}  // namespace
