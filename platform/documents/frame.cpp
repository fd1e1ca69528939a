// CFrameWnd: a frame's views, commands, status text and bars.

#include <zpbase/platform/frames.h>

#include <memory>
#include <utility>

#include <zpbase/platform/application.h>
#include <zpbase/platform/message_map.h>

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)

namespace {

// A frame's string resource, or a command's: its first line is the title, or the status text.
CString firstLine(UINT resource)
{
  CString text;
  text.LoadString(resource);
  int const end = text.Find('\n');
  return end >= 0 ? text.Left(end) : text;
}

}  // namespace

CFrameWnd * CWnd::GetParentFrame() const
{
  for (CWnd * window = m_pParent; window != nullptr; window = window->m_pParent)
    if (window->IsKindOf(RUNTIME_CLASS(CFrameWnd))) return static_cast<CFrameWnd *>(window);
  return nullptr;
}

BOOL CFrameWnd::LoadFrame(UINT resource, DWORD style, CWnd * parent, CCreateContext * context)
{
  m_strTitle = firstLine(resource);
  return CWnd::Create(CString(m_strTitle), style, parent, 0, context);
}

int CFrameWnd::OnCreate(CREATESTRUCT * create)
{
  if (CWnd::OnCreate(create) == -1) return -1;
  return OnCreateClient(create, static_cast<CCreateContext *>(create->lpCreateParams)) ? 0 : -1;
}

BOOL CFrameWnd::OnCreateClient(CREATESTRUCT *, CCreateContext * context)
{
  return context == nullptr || context->m_pNewViewClass == nullptr || CreateView(context) != nullptr;
}

CView * CFrameWnd::CreateView(CCreateContext * context, UINT id)
{
  std::unique_ptr<CObject> made(context->m_pNewViewClass->CreateObject());
  if (made == nullptr || !made->IsKindOf(RUNTIME_CLASS(CView))) return nullptr;
  auto * const view = static_cast<CView *>(made.release());
  return view->Create("", WS_CHILD | WS_VISIBLE, this, id, context) ? view : nullptr;
}

void CFrameWnd::SetActiveView(CView * view)
{
  if (view == m_pActiveView) return;
  CView * const former = std::exchange(m_pActiveView, view);
  if (former != nullptr) former->OnActivateView(FALSE, view, former);
  if (view != nullptr) view->OnActivateView(TRUE, view, former);
}

CDocument * CFrameWnd::GetActiveDocument()
{
  return m_pActiveView != nullptr ? m_pActiveView->GetDocument() : nullptr;
}

void CFrameWnd::InitialUpdateFrame(CDocument * doc, BOOL visible)
{
  for (CWnd * const child : std::vector<CWnd *>(GetChildren())) {
    if (!child->IsKindOf(RUNTIME_CLASS(CView))) continue;
    child->SendMessage(WM_INITIALUPDATE);
    if (m_pActiveView == nullptr) SetActiveView(static_cast<CView *>(child));
  }
  if (visible) ActivateFrame();
  if (doc != nullptr) OnUpdateFrameTitle();
}

void CFrameWnd::ActivateFrame()
{
  SetForegroundWindow();
}

void CFrameWnd::OnUpdateFrameTitle()
{
  CDocument const * const doc = GetActiveDocument();
  if (doc == nullptr) return SetWindowText(m_strTitle);
  SetWindowText(m_strTitle.IsEmpty() ? doc->GetTitle() : doc->GetTitle() + " - " + m_strTitle);
}

void CFrameWnd::DockControlBar(CControlBar * bar)
{
  if ((bar->m_nDockSides & m_nDockSides) != 0) bar->m_pDockingFrame = this;
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info)
{
  if (m_pActiveView != nullptr && m_pActiveView->OnCmdMsg(id, code, extra, info)) return TRUE;
  if (CWnd::OnCmdMsg(id, code, extra, info)) return TRUE;
  CWinApp * const app = AfxGetApp();
  return app != nullptr && app->OnCmdMsg(id, code, extra, info);
}

void CFrameWnd::OnClose()
{
  CDocument * const doc = GetActiveDocument();
  if (doc != nullptr && !doc->CanCloseFrame(this)) return;
  CWinApp * const app = AfxGetApp();
  if (app != nullptr && app->m_pMainWnd == this) {
    if (!app->SaveAllModified()) return;
    app->CloseAllDocuments();
    PostQuitMessage(0);
  }
  DestroyWindow();
}

LRESULT CFrameWnd::OnSetMessageString(WPARAM wParam, LPARAM lParam)
{
  auto const resource = static_cast<UINT>(wParam);
  CWnd * const bar = GetMessageBar();
  if (bar != nullptr) bar->SetWindowText(lParam != 0 ? CString(reinterpret_cast<char const *>(lParam)) : firstLine(resource));
  return std::exchange(m_nMessage, resource);
}

void CFrameWnd::PostNcDestroy()
{
  delete this;
}

AFX_MSGMAP const * CFrameWnd::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCreate<&CFrameWnd::OnCreate>(), zp::OnPlain<&CFrameWnd::OnClose>(WM_CLOSE),
                                                 zp::OnMessage<&CFrameWnd::OnSetMessageString>(WM_SETMESSAGESTRING)};
  static constexpr AFX_MSGMAP map{&CWnd::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * CFrameWnd::GetMessageMap() const
{
  return GetThisMessageMap();
}
