// DXFDC: circles, arcs, ovals, and the shapes that have them in their outline.

#include <zpbase/drawing.h>

#include <algorithm>

#include "drawing/entity_text_internal.h"
#include "drawing/flip_internal.h"

namespace {

constexpr int fullTurn = 360;
constexpr int quarterTurn = 90;
constexpr int noAngle = -1;  // of a point on none of the axes

// A rectangle with its sides in order, and the ellipse in it.
struct Frame {
  explicit Frame(tagRECT const & rect) : box(rect)
  {
    box.NormalizeRect();
    radiusX = (int64_t{box.right} - box.left) / 2;
    radiusY = (int64_t{box.bottom} - box.top) / 2;
    center = {static_cast<LONG>((int64_t{box.left} + box.right) / 2), static_cast<LONG>((int64_t{box.top} + box.bottom) / 2)};
  }

  // The first that fits, where rectangles are so small that points fall together.
  int AngleOf(tagPOINT point) const
  {
    if (point == tagPOINT{box.right, center.y}) return 0;
    if (point == tagPOINT{center.x, box.bottom}) return quarterTurn;
    if (point == tagPOINT{box.left, center.y}) return 2 * quarterTurn;
    if (point == tagPOINT{center.x, box.top}) return 3 * quarterTurn;
    return noAngle;
  }

  CRect box;
  int64_t radiusX;
  int64_t radiusY;
  tagPOINT center;
};

// The quarters that a sweep touches; what lies behind the full turn counts from 0 again. A start in front of 0 touches the first.
zp::Quarters quartersOf(int start, int end)
{
  zp::Quarters quarters = 0;
  if (start < 90 || end > 360) quarters |= 1;
  if ((start < 180 && end > 90) || end > 450) quarters |= 2;
  if ((start < 270 && end > 180) || end > 540) quarters |= 4;
  if (end > 270) quarters |= 8;
  return quarters;
}

LONG plus(LONG value, int64_t distance)
{
  return static_cast<LONG>(value + distance);
}

// The rectangle of a rounded corner, moved from one corner to the next.
void moveX(tagRECT & rect, int64_t distance)
{
  rect.left = plus(rect.left, distance);
  rect.right = plus(rect.right, distance);
}

void moveY(tagRECT & rect, int64_t distance)
{
  rect.top = plus(rect.top, distance);
  rect.bottom = plus(rect.bottom, distance);
}

}  // namespace

void DXFDC::DrawArc(zp::EntityText & records, tagRECT const & rect, tagPOINT start, tagPOINT end)
{
  m_Position = end;
  if (IsNothingDrawn()) return;
  Frame const frame(rect);
  int const startAngle = frame.AngleOf(start);
  int endAngle = frame.AngleOf(end);
  if (startAngle >= endAngle) endAngle += fullTurn;

  int64_t const x = frame.center.x;
  int64_t const y = zp::Flipped(frame.center.y);
  if (frame.radiusX == frame.radiusY) {
    records.AddArc(x, y, frame.radiusX, startAngle, endAngle % fullTurn);
    return;
  }
  bool const tall = frame.radiusY > frame.radiusX;
  records.AddOval({x, y, std::max(frame.radiusX, frame.radiusY), tall}, quartersOf(startAngle, endAngle));
}

int DXFDC::Arc(tagRECT const * rect, tagPOINT start, tagPOINT end)
{
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawArc(records, *rect, start, end);
  records.Send();
  return 1;
}

int DXFDC::Arc(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY)
{
  tagRECT const rect{left, top, right, bottom};
  return Arc(&rect, {startX, startY}, {endX, endY});
}

int DXFDC::Chord(tagRECT const * rect, tagPOINT start, tagPOINT end)
{
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawArc(records, *rect, start, end);
  DrawLine(records, start);
  records.Send();
  return 1;
}

int DXFDC::Chord(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY)
{
  tagRECT const rect{left, top, right, bottom};
  return Chord(&rect, {startX, startY}, {endX, endY});
}

int DXFDC::Pie(tagRECT const * rect, tagPOINT start, tagPOINT end)
{
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawArc(records, *rect, start, end);
  DrawLine(records, Frame(*rect).center);
  DrawLine(records, start);
  records.Send();
  return 1;
}

int DXFDC::Pie(int left, int top, int right, int bottom, int startX, int startY, int endX, int endY)
{
  tagRECT const rect{left, top, right, bottom};
  return Pie(&rect, {startX, startY}, {endX, endY});
}

int DXFDC::Ellipse(tagRECT const * rect)
{
  if (IsNothingDrawn()) return 1;
  Frame const frame(*rect);
  double const ratio = static_cast<double>(frame.radiusY) / (static_cast<double>(frame.radiusX) + 0.0000001);
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  tagPOINT const right{frame.box.right, frame.center.y};
  if (ratio > 0.92 && ratio < 1.08)
    records.AddCircle(frame.center.x, zp::Flipped(frame.center.y), frame.radiusX);
  else
    DrawArc(records, *rect, right, right);
  records.Send();
  return 1;
}

int DXFDC::Ellipse(int left, int top, int right, int bottom)
{
  tagRECT const rect{left, top, right, bottom};
  return Ellipse(&rect);
}

// From the bottom's right end over left, top and right side back to it.
int DXFDC::RoundRect(tagRECT const * rect, tagPOINT corner)
{
  CRect box(*rect);
  box.NormalizeRect();
  LONG const radiusX = corner.x / 2;
  LONG const radiusY = corner.y / 2;
  LONG const nearLeft = plus(box.left, radiusX);
  LONG const nearRight = plus(box.right, -int64_t{radiusX});
  LONG const nearTop = plus(box.top, radiusY);
  LONG const nearBottom = plus(box.bottom, -int64_t{radiusY});
  tagRECT ellipse{box.left, box.bottom, plus(box.left, corner.x), plus(box.bottom, -int64_t{corner.y})};

  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  MoveTo(nearRight, box.bottom);
  DrawLine(records, {nearLeft, box.bottom});
  DrawArc(records, ellipse, {nearLeft, box.bottom}, {box.left, nearBottom});
  DrawLine(records, {box.left, nearTop});
  moveY(ellipse, int64_t{nearTop} - nearBottom);
  DrawArc(records, ellipse, {box.left, nearTop}, {nearLeft, box.top});
  DrawLine(records, {nearRight, box.top});
  moveX(ellipse, int64_t{nearRight} - nearLeft);
  DrawArc(records, ellipse, {nearRight, box.top}, {box.right, nearTop});
  DrawLine(records, {box.right, nearBottom});
  moveY(ellipse, int64_t{nearBottom} - nearTop);
  DrawArc(records, ellipse, {box.right, nearBottom}, {nearRight, box.bottom});
  records.Send();
  return 1;
}

int DXFDC::RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight)
{
  tagRECT const rect{left, top, right, bottom};
  return RoundRect(&rect, {cornerWidth, cornerHeight});
}
