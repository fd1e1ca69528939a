// CMDIFrameWnd and CMDIChildWnd: a main window and the frames in it, of which one is active.

#include <zpbase/platform/frames.h>

#include <algorithm>

#include <zpbase/platform/message_map.h>

IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)
IMPLEMENT_DYNCREATE(CMDIChildWnd, CFrameWnd)

void CMDIFrameWnd::MDIActivate(CMDIChildWnd * child)
{
  CMDIChildWnd * const former = MDIGetActive();
  if (child == former || child->GetMDIFrame() != this) return;
  std::erase(m_Order, child);
  m_Order.push_back(child);
  CView * const left = former != nullptr ? former->GetActiveView() : nullptr;
  CView * const entered = child->GetActiveView();
  if (left != nullptr) left->OnActivateView(FALSE, entered, left);
  if (entered != nullptr) entered->OnActivateView(TRUE, entered, left);
}

CFrameWnd * CMDIFrameWnd::GetActiveFrame()
{
  CMDIChildWnd * const child = MDIGetActive();
  return child != nullptr ? child : static_cast<CFrameWnd *>(this);
}

// The frame that was active before becomes so again.
void CMDIFrameWnd::Forget(CMDIChildWnd * child)
{
  bool const wasActive = child == MDIGetActive();
  std::erase(m_Order, child);
  CView * const next = wasActive && !m_Order.empty() ? m_Order.back()->GetActiveView() : nullptr;
  if (next != nullptr) next->OnActivateView(TRUE, next, nullptr);
}

BOOL CMDIFrameWnd::OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info)
{
  CMDIChildWnd * const child = MDIGetActive();
  return (child != nullptr && child->OnCmdMsg(id, code, extra, info)) || CFrameWnd::OnCmdMsg(id, code, extra, info);
}

AFX_MSGMAP const * CMDIFrameWnd::GetThisMessageMap()
{
  return CFrameWnd::GetThisMessageMap();
}

BOOL CMDIChildWnd::LoadFrame(UINT resource, DWORD style, CWnd * parent, CCreateContext * context)
{
  if (parent == nullptr || !parent->IsKindOf(RUNTIME_CLASS(CMDIFrameWnd))) {
    PostNcDestroy();
    return FALSE;
  }
  return CFrameWnd::LoadFrame(resource, style | WS_CHILD, parent, context);
}

CMDIFrameWnd * CMDIChildWnd::GetMDIFrame() const
{
  CWnd * const parent = GetParent();
  return parent != nullptr && parent->IsKindOf(RUNTIME_CLASS(CMDIFrameWnd)) ? static_cast<CMDIFrameWnd *>(parent) : nullptr;
}

void CMDIChildWnd::ActivateFrame()
{
  if (CMDIFrameWnd * const frame = GetMDIFrame(); frame != nullptr) frame->MDIActivate(this);
}

void CMDIChildWnd::OnDestroy()
{
  if (CMDIFrameWnd * const frame = GetMDIFrame(); frame != nullptr) frame->Forget(this);
  CFrameWnd::OnDestroy();
}

AFX_MSGMAP const * CMDIChildWnd::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnPlain<&CMDIChildWnd::OnDestroy>(WM_DESTROY)};
  static constexpr AFX_MSGMAP map{&CFrameWnd::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * CMDIChildWnd::GetMessageMap() const
{
  return GetThisMessageMap();
}
