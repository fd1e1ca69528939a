// CDocTemplate and CMultiDocTemplate: making documents with their frames and views; the application's list of templates.

#include <zpbase/platform/documents.h>

#include <memory>
#include <utility>

#include <zpbase/platform/application.h>
#include <zpbase/platform/frames.h>

IMPLEMENT_DYNAMIC(CDocTemplate, CCmdTarget)
IMPLEMENT_DYNAMIC(CMultiDocTemplate, CDocTemplate)

namespace {

// A new object of a class that is of the kind wanted, or null.
template <class Wanted>
Wanted * makeObject(CRuntimeClass const * record)
{
  std::unique_ptr<CObject> made(record != nullptr ? record->CreateObject() : nullptr);
  if (made == nullptr || !made->IsKindOf(RUNTIME_CLASS(Wanted))) return nullptr;
  return static_cast<Wanted *>(made.release());
}

}  // namespace

CDocTemplate::CDocTemplate(UINT resource, CRuntimeClass * docClass, CRuntimeClass * frameClass, CRuntimeClass * viewClass)
    : m_nIDResource(resource), m_pDocClass(docClass), m_pFrameClass(frameClass), m_pViewClass(viewClass)
{
}

CDocTemplate::~CDocTemplate()
{
  while (!m_Documents.IsEmpty()) static_cast<CDocument *>(m_Documents.RemoveHead())->m_pDocTemplate = nullptr;
}

void CDocTemplate::AddDocument(CDocument * doc)
{
  m_Documents.AddTail(doc);
  doc->m_pDocTemplate = this;
}

void CDocTemplate::RemoveDocument(CDocument * doc)
{
  POSITION const position = m_Documents.Find(doc);
  if (position == nullptr) return;
  m_Documents.RemoveAt(position);
  doc->m_pDocTemplate = nullptr;
}

CDocument * CDocTemplate::GetNextDoc(POSITION & position) const
{
  return static_cast<CDocument *>(m_Documents.GetNext(position));
}

CDocument * CDocTemplate::CreateNewDocument()
{
  auto * const doc = makeObject<CDocument>(m_pDocClass);
  if (doc != nullptr) AddDocument(doc);
  return doc;
}

CFrameWnd * CDocTemplate::CreateNewFrame(CDocument * doc, CFrameWnd *)
{
  auto * const frame = makeObject<CFrameWnd>(m_pFrameClass);
  if (frame == nullptr) return nullptr;
  CCreateContext context{m_pViewClass, doc, this};
  CWinThread * const thread = AfxGetThread();
  CWnd * const main = thread != nullptr ? thread->GetMainWnd() : nullptr;
  bool const inside = frame->IsKindOf(RUNTIME_CLASS(CMDIChildWnd));
  return frame->LoadFrame(m_nIDResource, inside ? WS_CHILD : WS_OVERLAPPED, inside ? main : nullptr, &context) ? frame : nullptr;
}

void CDocTemplate::InitialUpdateFrame(CFrameWnd * frame, CDocument * doc, BOOL visible)
{
  frame->InitialUpdateFrame(doc, visible);
}

BOOL CDocTemplate::SaveAllModified()
{
  for (POSITION position = GetFirstDocPosition(); position != nullptr;)
    if (!GetNextDoc(position)->SaveModified()) return FALSE;
  return TRUE;
}

void CDocTemplate::CloseAllDocuments()
{
  while (!m_Documents.IsEmpty()) {
    auto * const doc = static_cast<CDocument *>(m_Documents.GetHead());
    BOOL const deletesItself = doc->m_bAutoDelete;
    doc->OnCloseDocument();
    if (!deletesItself) RemoveDocument(doc);
  }
}

CMultiDocTemplate::CMultiDocTemplate(UINT resource, CRuntimeClass * docClass, CRuntimeClass * frameClass,
                                     CRuntimeClass * viewClass)
    : CDocTemplate(resource, docClass, frameClass, viewClass)
{
}

CDocument * CMultiDocTemplate::OpenDocumentFile(char const * path, BOOL visible)
{
  std::unique_ptr<CDocument> made(CreateNewDocument());
  if (made == nullptr) return nullptr;
  BOOL const deletesItself = std::exchange(made->m_bAutoDelete, FALSE);  // not while its first frame is made
  CFrameWnd * const frame = CreateNewFrame(made.get(), nullptr);
  made->m_bAutoDelete = deletesItself;
  if (frame == nullptr) return nullptr;

  CDocument * const doc = made.release();
  CString title;
  title.Format("Untitled%d", ++m_nUntitled);
  if (path == nullptr) doc->SetTitle(title);
  if (path == nullptr ? doc->OnNewDocument() : doc->OnOpenDocument(path)) {
    if (path != nullptr) doc->SetPathName(path);
    InitialUpdateFrame(frame, doc, visible);
    return doc;
  }
  doc->m_bAutoDelete = TRUE;
  doc->OnCloseDocument();
  return nullptr;
}

void CWinApp::AddDocTemplate(CDocTemplate * docTemplate)
{
  m_Templates.AddTail(docTemplate);
}

CDocTemplate * CWinApp::GetNextDocTemplate(POSITION & position) const
{
  return static_cast<CDocTemplate *>(m_Templates.GetNext(position));
}

BOOL CWinApp::SaveAllModified()
{
  for (POSITION position = GetFirstDocTemplatePosition(); position != nullptr;)
    if (!GetNextDocTemplate(position)->SaveAllModified()) return FALSE;
  return TRUE;
}

void CWinApp::CloseAllDocuments()
{
  for (POSITION position = GetFirstDocTemplatePosition(); position != nullptr;) GetNextDocTemplate(position)->CloseAllDocuments();
}
