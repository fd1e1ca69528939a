// CDocument: title, views and the route of commands. Its files are in document_files.cpp.

#include <zpbase/platform/documents.h>

#include <zpbase/platform/frames.h>
#include <zpbase/platform/resources.h>

IMPLEMENT_DYNAMIC(CDocument, CCmdTarget)

namespace {

constexpr UINT saveQuestion = 61699;

}  // namespace

CDocument::CDocument() = default;

CDocument::~CDocument()
{
  while (!m_Views.IsEmpty()) static_cast<CView *>(m_Views.RemoveHead())->m_pDocument = nullptr;
  if (m_pDocTemplate != nullptr) m_pDocTemplate->RemoveDocument(this);
}

void CDocument::SetTitle(char const * title)
{
  m_strTitle = title;
  for (POSITION position = GetFirstViewPosition(); position != nullptr;)
    if (CFrameWnd * const frame = GetNextView(position)->GetParentFrame(); frame != nullptr) frame->OnUpdateFrameTitle();
}

void CDocument::SetPathName(char const * path)
{
  m_strPathName = path;
  std::string_view const all = m_strPathName.View();
  SetTitle(CString(all.substr(all.find_last_of("\\/") + 1)));
}

void CDocument::AddView(CView * view)
{
  m_Views.AddTail(view);
  view->m_pDocument = this;
}

void CDocument::RemoveView(CView * view)
{
  POSITION const position = m_Views.Find(view);
  if (position == nullptr) return;
  m_Views.RemoveAt(position);
  view->m_pDocument = nullptr;
  if (m_Views.IsEmpty() && m_bAutoDelete) OnCloseDocument();
}

CView * CDocument::GetNextView(POSITION & position) const
{
  return static_cast<CView *>(m_Views.GetNext(position));
}

void CDocument::UpdateAllViews(CView * sender, LPARAM hint, CObject * object)
{
  for (POSITION position = GetFirstViewPosition(); position != nullptr;)
    if (CView * const view = GetNextView(position); view != sender) view->OnUpdate(sender, hint, object);
}

void CDocument::DestroyFrames()
{
  BOOL const autoDelete = m_bAutoDelete;
  m_bAutoDelete = FALSE;
  while (!m_Views.IsEmpty()) {
    auto * const view = static_cast<CView *>(m_Views.GetHead());
    CFrameWnd * const frame = view->GetParentFrame();
    if (frame != nullptr && frame->DestroyWindow()) continue;
    m_Views.RemoveHead();  // there is no frame, or it is going already
    view->m_pDocument = nullptr;
  }
  m_bAutoDelete = autoDelete;
}

void CDocument::OnCloseDocument()
{
  DestroyFrames();
  DeleteContents();
  if (m_bAutoDelete) delete this;
}

BOOL CDocument::CanCloseFrame(CFrameWnd *)
{
  return SaveModified();
}

BOOL CDocument::SaveModified()
{
  if (!m_bModified) return TRUE;
  int const answer = AfxMessageBox(zp::FormatResource(saveQuestion, {m_strTitle.GetString()}), MB_YESNOCANCEL | MB_ICONQUESTION);
  return answer == IDNO || (answer == IDYES && OnSaveDocument(m_strPathName));
}

BOOL CDocument::OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info)
{
  return CCmdTarget::OnCmdMsg(id, code, extra, info) ||
         (m_pDocTemplate != nullptr && m_pDocTemplate->OnCmdMsg(id, code, extra, info));
}

AFX_MSGMAP const * CDocument::GetThisMessageMap()
{
  return CCmdTarget::GetThisMessageMap();
}
