// CView and CScrollView: a view's life in its frame and document, its commands, and the scrolled context.

#include <zpbase/platform/documents.h>

#include <algorithm>

#include <zpbase/platform/frames.h>
#include <zpbase/platform/message_map.h>

IMPLEMENT_DYNAMIC(CView, CWnd)
IMPLEMENT_DYNAMIC(CScrollView, CView)

CView::~CView()
{
  if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

void CView::OnPrepareDC(CDC *, CPrintInfo *) {}

void CView::OnInitialUpdate()
{
  OnUpdate(nullptr, 0, nullptr);
}

void CView::OnUpdate(CView *, LPARAM, CObject *)
{
  InvalidateRect(nullptr);
}

BOOL CView::OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info)
{
  return CWnd::OnCmdMsg(id, code, extra, info) || (m_pDocument != nullptr && m_pDocument->OnCmdMsg(id, code, extra, info));
}

int CView::OnCreate(CREATESTRUCT * create)
{
  if (CWnd::OnCreate(create) == -1) return -1;
  auto const * const context = static_cast<CCreateContext const *>(create->lpCreateParams);
  if (context != nullptr && context->m_pCurrentDoc != nullptr) context->m_pCurrentDoc->AddView(this);
  return 0;
}

void CView::OnDestroy()
{
  CFrameWnd * const frame = GetParentFrame();
  if (frame != nullptr && frame->GetActiveView() == this) frame->SetActiveView(nullptr);
  CWnd::OnDestroy();
}

void CView::PostNcDestroy()
{
  delete this;
}

LRESULT CView::OnInitialUpdateMessage(WPARAM, LPARAM)
{
  OnInitialUpdate();
  return 0;
}

AFX_MSGMAP const * CView::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCreate<&CView::OnCreate>(), zp::OnPlain<&CView::OnDestroy>(WM_DESTROY),
                                                 zp::OnMessage<&CView::OnInitialUpdateMessage>(WM_INITIALUPDATE)};
  static constexpr AFX_MSGMAP map{&CWnd::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * CView::GetMessageMap() const
{
  return GetThisMessageMap();
}

void CScrollView::SetScrollSizes(int mapMode, SIZE total)
{
  m_nMapMode = mapMode;
  m_Total = total;
  m_Position = {};
}

void CScrollView::ScrollToPosition(POINT position)
{
  m_Position = {std::clamp(position.x, LONG{0}, std::max(m_Total.cx, LONG{0})),
                std::clamp(position.y, LONG{0}, std::max(m_Total.cy, LONG{0}))};
}

void CScrollView::OnPrepareDC(CDC * dc, CPrintInfo *)
{
  dc->SetMapMode(m_nMapMode);
  dc->SetViewportOrg(0, 0);
  POINT shift = m_Position;
  dc->LPtoDP(&shift);
  dc->SetViewportOrg(-shift.x, -shift.y);
}

AFX_MSGMAP const * CScrollView::GetThisMessageMap()
{
  return CView::GetThisMessageMap();
}
