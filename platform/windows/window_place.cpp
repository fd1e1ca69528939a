// CWnd: places, their changes and placements, and what would be repainted.

#include <zpbase/platform/windows.h>

#include <algorithm>
#include <utility>

namespace {

LONG kept(LONGLONG value)
{
  return static_cast<LONG>(std::clamp<LONGLONG>(value, INT32_MIN, INT32_MAX));
}

RECT moved(RECT const & rect, LONGLONG dx, LONGLONG dy)
{
  return {kept(rect.left + dx), kept(rect.top + dy), kept(rect.right + dx), kept(rect.bottom + dy)};
}

LONG extent(LONG low, LONG high)
{
  return kept(LONGLONG{high} - low);
}

}  // namespace

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add)
{
  DWORD const style = (m_nStyle & ~remove) | add;
  return std::exchange(m_nStyle, style) != style;
}

BOOL CWnd::SetWindowPos(CWnd const * insertAfter, int x, int y, int cx, int cy, UINT flags)
{
  if (m_hWnd == nullptr) return FALSE;
  HWND const window = m_hWnd;
  WINDOWPOS position{window, insertAfter != nullptr ? insertAfter->m_hWnd : nullptr, x, y, cx, cy, flags};
  SendMessage(WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
  if (FromHandle(window) == nullptr) return FALSE;

  RECT & place = m_Placement.rcNormalPosition;
  bool const keepPlace = (position.flags & SWP_NOMOVE) != 0;
  bool const keepSize = (position.flags & SWP_NOSIZE) != 0;
  LONGLONG const width = keepSize ? extent(place.left, place.right) : position.cx;
  LONGLONG const height = keepSize ? extent(place.top, place.bottom) : position.cy;
  LONG const left = keepPlace ? place.left : position.x;
  LONG const top = keepPlace ? place.top : position.y;
  place = {left, top, kept(left + width), kept(top + height)};
  SendMessage(WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
  return TRUE;
}

void CWnd::OnWindowPosChanging(WINDOWPOS *)
{
  Default();
}

void CWnd::OnWindowPosChanged(WINDOWPOS *)
{
  Default();
}

void CWnd::MoveWindow(int x, int y, int width, int height)
{
  SetWindowPos(nullptr, x, y, width, height, SWP_NOZORDER);
}

void CWnd::MoveWindow(RECT const * rect)
{
  MoveWindow(rect->left, rect->top, extent(rect->left, rect->right), extent(rect->top, rect->bottom));
}

POINT CWnd::GetOrigin() const
{
  LONGLONG x = 0;
  LONGLONG y = 0;
  for (CWnd const * window = this; window != nullptr; window = window->m_pParent) {
    x += window->m_Placement.rcNormalPosition.left;
    y += window->m_Placement.rcNormalPosition.top;
    if ((window->m_nStyle & WS_CHILD) == 0) break;
  }
  return {kept(x), kept(y)};
}

void CWnd::GetWindowRect(RECT * rect) const
{
  POINT const origin = GetOrigin();
  RECT const & place = m_Placement.rcNormalPosition;
  *rect = moved(place, LONGLONG{origin.x} - place.left, LONGLONG{origin.y} - place.top);
}

void CWnd::GetClientRect(RECT * rect) const
{
  RECT const & place = m_Placement.rcNormalPosition;
  *rect = {0, 0, extent(place.left, place.right), extent(place.top, place.bottom)};
}

void CWnd::ScreenToClient(RECT * rect) const
{
  POINT const origin = GetOrigin();
  *rect = moved(*rect, -LONGLONG{origin.x}, -LONGLONG{origin.y});
}

void CWnd::ClientToScreen(RECT * rect) const
{
  POINT const origin = GetOrigin();
  *rect = moved(*rect, origin.x, origin.y);
}

BOOL CWnd::ShowWindow(UINT command)
{
  return std::exchange(m_Placement.showCmd, command) != SW_HIDE;
}

BOOL CWnd::GetWindowPlacement(WINDOWPLACEMENT * placement) const
{
  if (m_hWnd == nullptr) return FALSE;
  *placement = m_Placement;
  return TRUE;
}

BOOL CWnd::SetWindowPlacement(WINDOWPLACEMENT const * placement)
{
  if (m_hWnd == nullptr || placement->length != sizeof *placement) return FALSE;
  HWND const window = m_hWnd;
  WINDOWPLACEMENT const wanted = *placement;
  if (!(wanted.rcNormalPosition == m_Placement.rcNormalPosition)) MoveWindow(&wanted.rcNormalPosition);
  if (FromHandle(window) == nullptr) return FALSE;
  RECT const place = m_Placement.rcNormalPosition;
  m_Placement = wanted;
  m_Placement.rcNormalPosition = place;
  return TRUE;
}

void CWnd::InvalidateRect(RECT const * rect, BOOL erase)
{
  RECT area;
  GetClientRect(&area);
  if (rect != nullptr) area = *rect;
  RECT & update = m_Update;
  update = !m_bUpdate ? area
                      : RECT{std::min(update.left, area.left), std::min(update.top, area.top), std::max(update.right, area.right),
                             std::max(update.bottom, area.bottom)};
  m_bUpdate = TRUE;
  m_bUpdateErase = m_bUpdateErase || erase;
}

void CWnd::ValidateRect()
{
  m_bUpdate = FALSE;
  m_bUpdateErase = FALSE;
}

BOOL CWnd::GetUpdateRect(RECT * rect) const
{
  *rect = m_bUpdate ? m_Update : RECT{};
  return m_bUpdate;
}

BOOL CWnd::EnableToolTips(BOOL enable)
{
  m_bToolTips = enable;
  return TRUE;
}
