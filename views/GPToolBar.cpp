// GPToolBar: the fixed set-up of a tool bar, and what it repaints when it has moved.

#include <zpbase/views.h>

#include <zpbase/platform/message_map.h>

IMPLEMENT_DYNAMIC(GPToolBar, CToolBar)

int GPToolBar::CreateCustomToolBar(CFrameWnd * frame, unsigned int resource)
{
  if (frame == nullptr || !Create(frame, WS_CHILD | WS_VISIBLE | CBRS_TOP, AFX_IDW_TOOLBAR)) return 0;
  if (!LoadToolBar(resource)) {
    DestroyWindow();
    return 0;
  }
  SetBarStyle(GetBarStyle() | CBRS_TOOLTIPS | CBRS_FLYBY | CBRS_SIZE_DYNAMIC);
  if (m_bDockable) {
    ModifyStyle(0, TBSTYLE_FLAT);
    EnableDocking(CBRS_ALIGN_ANY);
    frame->EnableDocking(CBRS_ALIGN_ANY);
    frame->DockControlBar(this);
  }
  return 1;
}

// The bar still stands at its old place, which the parent has to paint when it is gone.
void GPToolBar::OnWindowPosChanging(WINDOWPOS * position)
{
  CToolBar::OnWindowPosChanging(position);
  CWnd * const parent = GetParent();
  if ((position->flags & SWP_NOMOVE) != 0 || parent == nullptr) return;
  RECT covered;
  GetWindowRect(&covered);
  parent->ScreenToClient(&covered);
  parent->InvalidateRect(&covered, TRUE);
}

void GPToolBar::OnWindowPosChanged(WINDOWPOS * position)
{
  Default();
  if ((position->flags & SWP_NOMOVE) == 0) SendMessage(WM_NCPAINT);
}

AFX_MSGMAP const * GPToolBar::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnWindowPos<&GPToolBar::OnWindowPosChanging>(WM_WINDOWPOSCHANGING),
                                                 zp::OnWindowPos<&GPToolBar::OnWindowPosChanged>(WM_WINDOWPOSCHANGED)};
  static constexpr AFX_MSGMAP map{&CToolBar::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * GPToolBar::GetMessageMap() const
{
  return GetThisMessageMap();
}
