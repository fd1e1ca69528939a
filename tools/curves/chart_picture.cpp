// A chart as a picture.

#include <algorithm>
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "tools/curves/chart.h"
#include "tools/pictures/picture.h"

namespace {

// Colours that people who don't see all of them can tell apart: Okabe and Ito, Color Universal Design, 2008.
constexpr std::array<Rgb, 7> colors = {0x0072B2, 0xD55E00, 0x009E73, 0xCC79A7, 0xE69F00, 0x56B4E9, 0x000000};

// What curves of one colour bear beside it, each as lines over a square's places, which are numbered as a telephone's keys are:
// nothing, square, cross, triangle, diamond, plus, triangle on its tip, star, hourglass, triangle to the right.
constexpr std::array<std::string_view, 10> marks = {"",      "13971", "19 37",       "2972",  "26842",
                                                    "28 46", "1381",  "28 46 19 37", "13791", "1671"};
constexpr size_t styles = colors.size() * marks.size();

constexpr Rgb inkColor = 0;
constexpr Rgb grey = 0x666666;
constexpr Rgb pale = 0xDDDDDD;
constexpr double textSize = 12;
constexpr double titleSize = 15;
constexpr double curveWidth = 1.8;
constexpr std::array<double, 2> dashes = {5, 4};

constexpr double roomAbove = 40;  // of the axes
constexpr double roomBelow = 50;
constexpr double plotHeight = 290;

constexpr double legendStep = 18;
constexpr double besideWidth = 190;
constexpr size_t mostBeside = 16;  // names; more of them stand below the axes
constexpr size_t columnsBelow = 4;
constexpr double sampleWidth = 24;  // of a curve
constexpr double nameStart = 32;
constexpr double nameMargin = 10;

struct Frame {
  double left, top, right, bottom;

  double X(Chart const & chart, double temperature) const
  {
    return left + chart.temperature.ShareOf(temperature) * (right - left);
  }
  double Y(Chart const & chart, double value) const { return bottom - chart.value.ShareOf(value) * (bottom - top); }
};

void drawAxes(Picture & picture, Chart const & chart, Frame const & frame)
{
  for (double const tick : chart.temperature.ticks) {
    double const x = frame.X(chart, tick);
    picture.MoveTo(x, frame.top);
    picture.LineTo(x, frame.bottom);
    picture.Stroke(1, pale);
    picture.DrawText(x, frame.bottom + 18, TickText(tick), textSize, grey, TextSide::Middle);
  }
  for (double const tick : chart.value.ticks) {
    double const y = frame.Y(chart, tick);
    picture.MoveTo(frame.left, y);
    picture.LineTo(frame.right, y);
    picture.Stroke(1, pale);
    picture.DrawText(frame.left - 8, y + 4, TickText(tick), textSize, grey, TextSide::Right);
  }
  picture.MoveTo(frame.left, frame.top);
  picture.LineTo(frame.left, frame.bottom);
  picture.LineTo(frame.right, frame.bottom);
  picture.Stroke(1, inkColor);
  picture.DrawText(frame.left, frame.top - 14, chart.GetTitle(), titleSize, inkColor);
  picture.DrawText(frame.right, frame.bottom + 36, "temperature [K]", textSize, inkColor, TextSide::Right);
}

// Each stretch that lies inside or outside of the range as a whole; neighbours share a point.
void drawPiece(Picture & picture, Chart const & chart, Frame const & frame, std::vector<ChartPoint> const & piece, Rgb color)
{
  for (size_t start = 0; start + 1 < piece.size();) {
    bool const isOutside = piece[start].isOutside || piece[start + 1].isOutside;
    picture.MoveTo(frame.X(chart, piece[start].temperature), frame.Y(chart, piece[start].value));
    size_t end = start + 1;
    for (; end < piece.size() && (piece[end - 1].isOutside || piece[end].isOutside) == isOutside; ++end)
      picture.LineTo(frame.X(chart, piece[end].temperature), frame.Y(chart, piece[end].value));
    picture.Stroke(curveWidth, color, isOutside ? std::span<double const>(dashes) : std::span<double const>());
    start = end - 1;
  }
}

Rgb colorOf(size_t curve)
{
  return colors[curve % colors.size()];
}

void drawMark(Picture & picture, double x, double y, size_t curve)
{
  constexpr double radius = 3.5;
  bool isOpen = false;
  for (char const key : marks[curve / colors.size() % marks.size()]) {
    int const place = key - '1';
    int const row = place / 3;
    double const markX = x + radius * (place % 3 - 1);
    double const markY = y + radius * (row - 1);
    if (isOpen && key != ' ') picture.LineTo(markX, markY);
    if (!isOpen) picture.MoveTo(markX, markY);
    isOpen = key != ' ';
  }
  picture.Stroke(1.2, colorOf(curve));
}

// Each piece has one mark at least; those of neighbouring curves don't stand above each other.
void drawCurve(Picture & picture, Chart const & chart, Frame const & frame, size_t curve)
{
  constexpr size_t markStep = 60;
  constexpr size_t shift = 17;
  for (auto const & piece : chart.lines[curve]) {
    drawPiece(picture, chart, frame, piece, colorOf(curve));
    for (size_t i = std::min(curve * shift % markStep, piece.size() / 2); i < piece.size(); i += markStep)
      drawMark(picture, frame.X(chart, piece[i].temperature), frame.Y(chart, piece[i].value), curve);
  }
}

bool isBeside(Chart const & chart)
{
  return chart.names.size() <= mostBeside;
}

size_t rowsBelow(Chart const & chart)
{
  return (chart.names.size() + columnsBelow - 1) / columnsBelow;
}

void drawLegend(Picture & picture, Chart const & chart, ChartPlace const & place, Frame const & frame)
{
  bool const beside = isBeside(chart);
  size_t const rows = beside ? mostBeside : rowsBelow(chart);
  double const left = beside ? frame.right + 14 : place.left + 24;
  double const top = beside ? frame.top + 8 : frame.bottom + roomBelow + 10;
  double const width = beside ? besideWidth - 14 : (place.width - 24) / columnsBelow;
  auto const fits = [&](std::string const & name) { return picture.TextWidth(name, textSize) <= width - nameStart - nameMargin; };
  for (size_t i = 0; i < chart.names.size(); ++i) {
    size_t const column = i / rows;
    double const x = left + static_cast<double>(column) * width;
    double const y = top + static_cast<double>(i % rows) * legendStep;
    picture.MoveTo(x, y);
    picture.LineTo(x + sampleWidth, y);
    picture.Stroke(curveWidth, colorOf(i));
    drawMark(picture, x + sampleWidth / 2, y, i);
    picture.DrawText(x + nameStart, y + 4, ShortenedText(chart.names[i], fits), textSize, inkColor);
  }
}

std::string notesOf(Chart const & chart)
{
  std::string notes = chart.LeavesRange() ? "dashed: outside of the known range" : "";
  if (chart.names.size() > styles)
    notes += fmt::format("{}colours and marks repeat after {} names", notes.empty() ? "" : "; ", styles);
  return notes;
}

}  // namespace

double ChartHeight(Chart const & chart)
{
  double const height = roomAbove + plotHeight + roomBelow;
  return isBeside(chart) ? height : height + static_cast<double>(rowsBelow(chart)) * legendStep + 14;
}

void DrawChart(Picture & picture, Chart const & chart, ChartPlace const & place)
{
  double const top = place.top + roomAbove;
  double const roomBeside = isBeside(chart) ? besideWidth : 24;
  Frame const frame = {place.left + 90, top, place.left + place.width - roomBeside, top + plotHeight};
  drawAxes(picture, chart, frame);
  for (size_t i = 0; i < chart.lines.size(); ++i) drawCurve(picture, chart, frame, i);
  drawLegend(picture, chart, place, frame);
  picture.DrawText(frame.left, frame.bottom + 36, notesOf(chart), textSize, grey);
}
