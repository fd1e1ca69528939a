// Drawing what a DXF file holds.

#include "tools/drawing/dxf_picture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include <zpbase/platform/encoding.h>

#include "tools/drawing/dxf_colors.h"

namespace {

constexpr double largerSide = 1200;  // points
constexpr double margin = 20;
constexpr double lineWidth = 1.2;
constexpr double pointSize = 2;
constexpr double pointLength = 0.5;     // of a point in a line type's pattern
constexpr double shortestPattern = 2;   // points; a denser one is a whole line
constexpr double drawnCharacter = 1.0;  // room of a character of the plainest font, in heights of its capitals
constexpr int mostGathered = 2000;      // pieces of one path

double roomOf(DxfEntity const & text)
{
  return drawnCharacter * text.height * text.widthFactor;
}

class Painter {
 public:
  Painter(DxfReader const & reader, DxfCover const & cover, PictureFormat format, Picture::Pass pass)
      : m_Reader(reader),
        m_Cover(cover),
        m_dScale((largerSide - 2 * margin) / std::max({cover.Width(), cover.Height(), 1e-9})),
        m_Picture(format, cover.Width() * m_dScale + 2 * margin, cover.Height() * m_dScale + 2 * margin, std::move(pass))
  {
  }

  void Draw(DxfEntity const & entity);
  void Finish()
  {
    DrawGathered();
    m_Picture.Finish();
  }

 private:
  double X(double x) const { return (x - m_Cover.Left()) * m_dScale + margin; }
  double Y(double y) const { return (m_Cover.Top() - y) * m_dScale + margin; }
  void ChoosePen(int color, std::string const & lineType);
  void DrawGathered();
  void AddLine(DxfEntity const & line);
  std::vector<double> const & DashesOf(std::string const & lineType);

  DxfReader const & m_Reader;
  DxfCover const & m_Cover;
  double m_dScale;  // points for a drawing unit
  Picture m_Picture;
  std::map<std::string, std::vector<double>> m_Dashes;

  // The path under way: lines and arcs of one colour and line type.
  int m_nColor = 0;
  std::string m_strLineType;
  int m_nGathered = 0;
  double m_dEndX = NAN;
  double m_dEndY = NAN;
};

// The pattern in points, drawn and left out in turn.
std::vector<double> const & Painter::DashesOf(std::string const & lineType)
{
  auto const [place, isNew] = m_Dashes.try_emplace(lineType);
  if (!isNew) return place->second;
  double length = 0;
  bool alternates = true;
  bool drawn = true;
  for (double const piece : m_Reader.GetPattern(lineType)) {
    alternates = alternates && (piece >= 0) == drawn;
    drawn = !drawn;
    length += std::abs(piece) * m_dScale;
    place->second.push_back(std::max(std::abs(piece) * m_dScale, pointLength));
  }
  if (!alternates || !drawn || length < shortestPattern) place->second.clear();
  return place->second;
}

void Painter::DrawGathered()
{
  if (m_nGathered > 0) m_Picture.Stroke(lineWidth, RgbOfDxfColor(m_nColor), DashesOf(m_strLineType));
  m_nGathered = 0;
  m_dEndX = NAN;
}

void Painter::ChoosePen(int color, std::string const & lineType)
{
  if (color != m_nColor || lineType != m_strLineType || m_nGathered >= mostGathered) {
    DrawGathered();
    m_nColor = color;
    m_strLineType = lineType;
  }
  ++m_nGathered;
}

// A line with a pattern starts it anew, as readers of drawings do; whole lines go on.
void Painter::AddLine(DxfEntity const & line)
{
  ChoosePen(line.color, line.lineType);
  bool const goesOn = line.x == m_dEndX && line.y == m_dEndY && DashesOf(line.lineType).empty();
  if (!goesOn) m_Picture.MoveTo(X(line.x), Y(line.y));
  m_Picture.LineTo(X(line.endX), Y(line.endY));
  m_dEndX = line.endX;
  m_dEndY = line.endY;
}

void Painter::Draw(DxfEntity const & entity)
{
  switch (entity.kind) {
    case DxfKind::Line:
      return AddLine(entity);
    case DxfKind::Circle:
    case DxfKind::Arc: {
      double const end = entity.kind == DxfKind::Circle ? 360 : entity.endAngle;
      ChoosePen(entity.color, "");
      m_Picture.AddArc(X(entity.x), Y(entity.y), entity.radius * m_dScale, entity.startAngle, end);
      m_dEndX = NAN;
      return;
    }
    case DxfKind::Point:
      DrawGathered();
      return m_Picture.FillRectangle(X(entity.x) - pointSize / 2, Y(entity.y) - pointSize / 2, pointSize, pointSize,
                                     RgbOfDxfColor(entity.color));
    case DxfKind::Text:
      DrawGathered();
      return m_Picture.DrawSpacedText(X(entity.x), Y(entity.y), zp::TextToUtf8(entity.text), entity.height * m_dScale,
                                      roomOf(entity) * m_dScale, RgbOfDxfColor(entity.color));
  }
}

}  // namespace

void DxfCover::AddPoint(double x, double y)
{
  if (IsEmpty()) {
    m_dLeft = m_dRight = x;
    m_dBottom = m_dTop = y;
  }
  m_dLeft = std::min(m_dLeft, x);
  m_dRight = std::max(m_dRight, x);
  m_dBottom = std::min(m_dBottom, y);
  m_dTop = std::max(m_dTop, y);
}

// Its ends, and the outermost points of the circle that lie in its sweep.
void DxfCover::AddArc(DxfEntity const & arc)
{
  double const start = arc.startAngle;
  double sweep = std::fmod(arc.endAngle - start, 360.0);
  if (sweep <= 0) sweep += 360;
  auto const add = [&](double angle) {
    double const radians = angle * std::numbers::pi / 180;
    AddPoint(arc.x + arc.radius * std::cos(radians), arc.y + arc.radius * std::sin(radians));
  };
  add(start);
  add(start + sweep);
  double const firstQuarter = std::ceil(start / 90) * 90;
  for (int quarter = 0; quarter < 4; ++quarter)
    if (firstQuarter + 90 * quarter <= start + sweep) add(firstQuarter + 90 * quarter);
}

void DxfCover::Add(DxfEntity const & entity)
{
  switch (entity.kind) {
    case DxfKind::Line:
      AddPoint(entity.x, entity.y);
      return AddPoint(entity.endX, entity.endY);
    case DxfKind::Point:
      return AddPoint(entity.x, entity.y);
    case DxfKind::Circle:
      AddPoint(entity.x - entity.radius, entity.y - entity.radius);
      return AddPoint(entity.x + entity.radius, entity.y + entity.radius);
    case DxfKind::Arc:
      return AddArc(entity);
    case DxfKind::Text:
      AddPoint(entity.x, entity.y);
      return AddPoint(entity.x + roomOf(entity) * static_cast<double>(entity.text.size()), entity.y + entity.height);
  }
}

void DxfCover::AddFrame(std::array<double, 4> const & frame)
{
  constexpr double mostTimes = 20;
  auto const [left, bottom, right, top] = frame;
  if (IsEmpty() || std::max(right - left, top - bottom) > mostTimes * std::max(Width(), Height())) return;
  AddPoint(left, bottom);
  AddPoint(right, top);
}

void DrawDxf(DxfOpener const & open, DxfCover const & cover, PictureFormat format, Picture::Pass pass)
{
  DxfReader reader(open());
  Painter painter(reader, cover, format, std::move(pass));
  reader.Read([&](DxfEntity const & entity) { painter.Draw(entity); });
  painter.Finish();
}
