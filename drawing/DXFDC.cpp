// DXFDC: state, selection, and the shapes that are made of lines. Arcs and ovals are in arcs.cpp, texts in texts.cpp, the
// replay of metafiles in metafile_replay.cpp.

#include <zpbase/drawing.h>

#include <utility>

#include "drawing/entity_text_internal.h"
#include "drawing/flip_internal.h"

IMPLEMENT_DYNAMIC(DXFDC, CObject)

LONG DXFDC::DrawingHeight = 0;

DXFDC::DXFDC(GPFile & file, CDC * dc, int height)
    : m_pFile(&file),
      m_ViewportOrg(dc->GetViewportOrg()),
      m_ViewportExt(dc->GetViewportExt()),
      m_WindowOrg(dc->GetWindowOrg()),
      m_WindowExt(dc->GetWindowExt()),
      m_nBkMode(dc->GetBkMode()),
      m_nMapMode(dc->GetMapMode()),
      m_Position(dc->GetCurrentPosition())
{
  DrawingHeight = height;
}

DXFDC::~DXFDC() = default;

int DXFDC::SetBkMode(int mode)
{
  return std::exchange(m_nBkMode, mode);
}

int DXFDC::SetMapMode(int mode)
{
  return std::exchange(m_nMapMode, mode);
}

COLORREF DXFDC::SetBkColor(COLORREF color)
{
  return std::exchange(m_nBkColor, color);
}

COLORREF DXFDC::SetTextColor(COLORREF color)
{
  return std::exchange(m_nTextColor, color);
}

CPoint DXFDC::SetViewportOrg(tagPOINT origin)
{
  return std::exchange(m_ViewportOrg, origin);
}

CSize DXFDC::SetViewportExt(tagSIZE extent)
{
  return std::exchange(m_ViewportExt, extent);
}

CPoint DXFDC::SetWindowOrg(tagPOINT origin)
{
  return std::exchange(m_WindowOrg, origin);
}

CSize DXFDC::SetWindowExt(tagSIZE extent)
{
  return std::exchange(m_WindowExt, extent);
}

CPen * DXFDC::SelectObject(CPen * pen)
{
  if (pen == nullptr) return m_pPen;
  pen->GetLogPen(&m_LogPen);
  return std::exchange(m_pPen, pen);
}

CBrush * DXFDC::SelectObject(CBrush * brush)
{
  if (brush == nullptr) return m_pBrush;
  brush->GetLogBrush(&m_LogBrush);
  return std::exchange(m_pBrush, brush);
}

CFont * DXFDC::SelectObject(CFont * font)
{
  m_DeletedFont.reset();
  return std::exchange(m_pFont, font);
}

CPoint DXFDC::MoveTo(tagPOINT point)
{
  return std::exchange(m_Position, point);
}

void DXFDC::DrawLine(zp::EntityText & records, tagPOINT to)
{
  if (!IsNothingDrawn()) records.AddLine(m_Position.x, zp::Flipped(m_Position.y), to.x, zp::Flipped(to.y));
  m_Position = to;
}

void DXFDC::DrawPolyline(zp::EntityText & records, tagPOINT const * points, int count)
{
  MoveTo(points[0]);
  for (int i = 1; i < count; ++i) DrawLine(records, points[i]);
}

int DXFDC::LineTo(tagPOINT point)
{
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawLine(records, point);
  records.Send();
  return 1;
}

int DXFDC::Polyline(tagPOINT * points, int count)
{
  if (points == nullptr || count < 1) return 1;
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawPolyline(records, points, count);
  records.Send();
  return 1;
}

int DXFDC::Polygon(tagPOINT * points, int count)
{
  if (points == nullptr || count < 1) return 1;
  zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
  DrawPolyline(records, points, count);
  if (!(m_Position == points[0])) DrawLine(records, points[0]);
  records.Send();
  return 1;
}

int DXFDC::Rectangle(tagRECT const * rect)
{
  tagPOINT corners[] = {{rect->left, rect->top},
                        {rect->right, rect->top},
                        {rect->right, rect->bottom},
                        {rect->left, rect->bottom},
                        {rect->left, rect->top}};
  return Polyline(corners, 5);
}

int DXFDC::Rectangle(int left, int top, int right, int bottom)
{
  tagRECT const rect{left, top, right, bottom};
  return Rectangle(&rect);
}

COLORREF DXFDC::SetPixel(int x, int y, COLORREF color)
{
  if (!IsNothingDrawn()) {
    zp::EntityText records(*m_pFile, m_LogPen.lopnColor, m_LogPen.lopnStyle);
    records.AddPoint(x, zp::Flipped(y));
    records.Send();
  }
  m_Position = {x, y};
  return color;
}
