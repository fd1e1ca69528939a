// A chart as a picture.

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "tools/curves/chart.h"
#include "tools/pictures/picture.h"

namespace {

// Colours that people who don't see all of them can tell apart: Okabe and Ito, Color Universal Design, 2008.
constexpr std::array<Rgb, 7> colors = {0x0072B2, 0xD55E00, 0x009E73, 0xCC79A7, 0xE69F00, 0x56B4E9, 0x000000};
constexpr Rgb inkColor = 0;
constexpr Rgb grey = 0x666666;
constexpr Rgb pale = 0xDDDDDD;
constexpr double textSize = 12;
constexpr double titleSize = 15;
constexpr double curveWidth = 1.8;
constexpr std::array<double, 2> dashes = {5, 4};

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

bool leavesRange(Chart const & chart)
{
  for (ChartLine const & line : chart.lines) {
    for (auto const & piece : line) {
      if (std::ranges::any_of(piece, &ChartPoint::isOutside)) return true;
    }
  }
  return false;
}

}  // namespace

void DrawChart(Picture & picture, Chart const & chart, ChartPlace const & place)
{
  constexpr double legendWidth = 190;
  constexpr double legendStep = 18;
  Frame const frame = {place.left + 90, place.top + 40, place.left + place.width - legendWidth, place.top + place.height - 50};
  drawAxes(picture, chart, frame);
  for (size_t i = 0; i < chart.lines.size(); ++i) {
    Rgb const color = colors[i % colors.size()];
    for (auto const & piece : chart.lines[i]) drawPiece(picture, chart, frame, piece, color);
    double const y = frame.top + 8 + static_cast<double>(i) * legendStep;
    picture.MoveTo(frame.right + 14, y);
    picture.LineTo(frame.right + 38, y);
    picture.Stroke(curveWidth, color);
    picture.DrawText(frame.right + 46, y + 4, chart.names[i], textSize, inkColor);
  }
  if (leavesRange(chart)) picture.DrawText(frame.left, frame.bottom + 36, "dashed: outside of the known range", textSize, grey);
}
