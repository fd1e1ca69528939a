// Open documents and views from anywhere, the status text, and the hand-over of a new document to the application.

#include <zpbase/views.h>

#include <zpbase/messages.h>
#include <zpbase/platform/application.h>

#include "views/main_window_internal.h"

namespace {

CDocument * g_pNewDocument = nullptr;

// The first template that fits, or null.
template <class Fits>
CDocTemplate * findTemplate(Fits const & fits)
{
  CWinApp const * const app = AfxGetApp();
  if (app == nullptr) return nullptr;
  for (POSITION position = app->GetFirstDocTemplatePosition(); position != nullptr;)
    if (CDocTemplate * const found = app->GetNextDocTemplate(position); fits(*found)) return found;
  return nullptr;
}

// The first document of a template that fits, or null.
template <class Fits>
CDocument * findDocument(CDocTemplate const & docTemplate, Fits const & fits)
{
  for (POSITION position = docTemplate.GetFirstDocPosition(); position != nullptr;)
    if (CDocument * const doc = docTemplate.GetNextDoc(position); fits(doc)) return doc;
  return nullptr;
}

}  // namespace

CWnd * zp::GetThreadMainWindow()
{
  CWinThread * const thread = AfxGetThread();
  return thread != nullptr ? thread->GetMainWnd() : nullptr;
}

CMDIChildWnd * GetCurrentMDIChildWnd()
{
  CWnd * const main = zp::GetThreadMainWindow();
  if (main == nullptr || !main->IsKindOf(RUNTIME_CLASS(CMDIFrameWnd))) return nullptr;
  return static_cast<CMDIFrameWnd *>(main)->MDIGetActive();
}

CView * GetCurrentView()
{
  CMDIChildWnd const * const child = GetCurrentMDIChildWnd();
  return child != nullptr ? child->GetActiveView() : nullptr;
}

CDocument * GetCurrentDoc()
{
  CMDIChildWnd * const child = GetCurrentMDIChildWnd();
  return child != nullptr ? child->GetActiveDocument() : nullptr;
}

void SetPane0Text(CString const & text)
{
  CWnd * const main = zp::GetThreadMainWindow();
  if (main != nullptr) main->SendMessage(WM_SETMESSAGESTRING, 0, reinterpret_cast<LPARAM>(text.GetString()));
  ProcessMessages();
}

void SetPane0Text(unsigned int resource)
{
  CWnd * const main = zp::GetThreadMainWindow();
  if (main != nullptr) main->PostMessage(WM_SETMESSAGESTRING, resource);
}

void TraceDocViews() {}

int IsValidDoc(CDocument const * doc)
{
  auto const isDoc = [doc](CDocument const * other) { return other == doc; };
  return findTemplate([&](CDocTemplate const & row) { return findDocument(row, isDoc) != nullptr; }) != nullptr;
}

CDocument * FindDocByTitle(CRuntimeClass const * docClass, CString const & title)
{
  CDocTemplate const * const found = findTemplate([&](CDocTemplate const & row) { return row.GetDocClass() == docClass; });
  if (found == nullptr) return nullptr;
  if (title.IsEmpty()) return findDocument(*found, [](CDocument const *) { return true; });
  CDocument * last = nullptr;
  for (POSITION position = found->GetFirstDocPosition(); position != nullptr;)
    if (CDocument * const doc = found->GetNextDoc(position); doc->GetTitle() == title) last = doc;
  return last;
}

CView * FindDocView(CRuntimeClass const * viewClass, CDocument const * doc)
{
  CDocTemplate const * const found = findTemplate([&](CDocTemplate const & row) { return row.GetViewClass() == viewClass; });
  if (found == nullptr) return nullptr;
  CDocument const * const shown = findDocument(*found, [doc](CDocument const * other) { return doc == nullptr || other == doc; });
  CView * last = nullptr;
  for (POSITION position = shown != nullptr ? shown->GetFirstViewPosition() : nullptr; position != nullptr;)
    last = shown->GetNextView(position);
  return last;
}

void LaunchNewDocument(CDocument * doc)
{
  g_pNewDocument = doc;
  CWnd * const main = zp::GetThreadMainWindow();
  if (main != nullptr) main->SendMessage(WM_COMMAND, newDocumentCommand);
  ProcessMessages();
}

CDocument * GetNewDocument()
{
  return g_pNewDocument;
}
