// Device contexts: their state, and the way from logical coordinates to those of the device.

#include <zpbase/platform/drawing.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

IMPLEMENT_DYNAMIC(CDC, CObject)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)

namespace {

// One coordinate from the window to the viewport; exact as long as the product of distance and extent has at most 53 bits.
LONG toDevice(LONG value, LONG windowOrg, LONG windowExt, LONG viewportOrg, LONG viewportExt)
{
  double const distance = static_cast<double>(value) - windowOrg;
  double const scaled = distance * (viewportExt != 0 ? viewportExt : 1) / (windowExt != 0 ? windowExt : 1);
  double const moved = std::round(scaled) + viewportOrg;
  constexpr double least = std::numeric_limits<LONG>::min();
  constexpr double most = std::numeric_limits<LONG>::max();
  return static_cast<LONG>(std::clamp(moved, least, most));
}

}  // namespace

COLORREF CDC::SetTextColor(COLORREF color)
{
  return std::exchange(m_nTextColor, color);
}

int CDC::SetBkMode(int mode)
{
  return std::exchange(m_nBkMode, mode);
}

int CDC::SetMapMode(int mode)
{
  return std::exchange(m_nMapMode, mode);
}

CPoint CDC::SetViewportOrg(POINT origin)
{
  return std::exchange(m_ViewportOrg, origin);
}

CSize CDC::SetViewportExt(SIZE extent)
{
  return std::exchange(m_ViewportExt, extent);
}

CPoint CDC::SetWindowOrg(POINT origin)
{
  return std::exchange(m_WindowOrg, origin);
}

CSize CDC::SetWindowExt(SIZE extent)
{
  return std::exchange(m_WindowExt, extent);
}

CPoint CDC::MoveTo(POINT position)
{
  return std::exchange(m_Position, position);
}

void CDC::LPtoDP(POINT * points, int count) const
{
  bool const scales = m_nMapMode == MM_ISOTROPIC || m_nMapMode == MM_ANISOTROPIC;
  CSize const window = scales ? m_WindowExt : CSize(1, 1);
  CSize const viewport = scales ? m_ViewportExt : CSize(1, 1);
  for (int i = 0; i < count; ++i) {
    points[i].x = toDevice(points[i].x, m_WindowOrg.x, window.cx, m_ViewportOrg.x, viewport.cx);
    points[i].y = toDevice(points[i].y, m_WindowOrg.y, window.cy, m_ViewportOrg.y, viewport.cy);
  }
}

void CDC::LPtoDP(RECT * rect) const
{
  POINT corners[] = {{rect->left, rect->top}, {rect->right, rect->bottom}};
  LPtoDP(corners, 2);
  *rect = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

CClientDC::CClientDC(CWnd * window) : m_pWnd(window) {}

CPaintDC::CPaintDC(CWnd * window) : m_pWnd(window) {}
