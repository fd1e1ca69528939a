// Documents and the views that show them. A document is made by its template, which knows the classes of document, frame and
// view; the application owns the templates.
#pragma once

#include "collections.h"
#include "windows.h"

class CDocument;
class CDocTemplate;
class CFrameWnd;
class CView;

// What a frame and its views are made from: the lpCreateParams of their WM_CREATE.
struct CCreateContext {
  CRuntimeClass * m_pNewViewClass = nullptr;
  CDocument * m_pCurrentDoc = nullptr;
  CDocTemplate * m_pNewDocTemplate = nullptr;
};

class ZP_API CDocument : public CCmdTarget {
  DECLARE_DYNAMIC(CDocument)
 public:
  CDocument();
  ~CDocument() override;  // its template and its views forget it

  CString const & GetTitle() const { return m_strTitle; }
  virtual void SetTitle(char const * title);  // and that of its frames
  CString const & GetPathName() const { return m_strPathName; }
  virtual void SetPathName(char const * path);  // and the title: the path's last part
  CDocTemplate * GetDocTemplate() const { return m_pDocTemplate; }
  BOOL IsModified() const { return m_bModified; }
  void SetModifiedFlag(BOOL modified = TRUE) { m_bModified = modified; }

  // Views in the order in which they were added; they belong to their frames.
  void AddView(CView * view);
  void RemoveView(CView * view);
  POSITION GetFirstViewPosition() const { return m_Views.GetHeadPosition(); }
  CView * GetNextView(POSITION & position) const;

  // Calls OnUpdate of all views but sender.
  void UpdateAllViews(CView * sender, LPARAM hint = 0, CObject * object = nullptr);

  virtual void DeleteContents() {}

  // Empty the document for new content, or fill it from a file, or write it to one: 0 on failure. A file that can't be read
  // leaves an empty document, one that can't be written stands as it was; the user is told.
  virtual BOOL OnNewDocument();
  virtual BOOL OnOpenDocument(char const * path);
  virtual BOOL OnSaveDocument(char const * path);

  // Destroys the frames and empties the document, which then deletes itself unless m_bAutoDelete is cleared.
  virtual void OnCloseDocument();

  // Whether a frame may close; asks about changes that aren't saved: yes saves them under the document's path.
  virtual BOOL CanCloseFrame(CFrameWnd * frame);
  virtual BOOL SaveModified();

  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override;  // itself, then its template

  BOOL m_bAutoDelete = TRUE;

 protected:
  static AFX_MSGMAP const * GetThisMessageMap();

 private:
  friend class CDocTemplate;

  void DestroyFrames();

  CString m_strTitle;
  CString m_strPathName;
  CDocTemplate * m_pDocTemplate = nullptr;
  CObList m_Views;
  BOOL m_bModified = FALSE;
};

// A part of a document that streams itself, such as an embedded object.
class ZP_API CDocItem : public CCmdTarget {
  DECLARE_SERIAL(CDocItem)
 public:
  CDocItem() = default;
  CDocument * GetDocument() const { return m_pDocument; }

 private:
  friend class COleDocument;

  CDocument * m_pDocument = nullptr;
};

// A document with items, which it owns. Its own content is the items: their count, then each as an object.
class ZP_API COleDocument : public CDocument {
  DECLARE_DYNAMIC(COleDocument)
 public:
  COleDocument() = default;
  ~COleDocument() override;

  void AddItem(CDocItem * item);
  void RemoveItem(CDocItem * item);  // which then is the caller's
  POSITION GetStartPosition() const { return m_Items.GetHeadPosition(); }
  CDocItem * GetNextItem(POSITION & position) const;

  void DeleteContents() override;
  void Serialize(CArchive & ar) override;  // items that are read take the place of those that were there

 protected:
  // Of the standard commands on embedded objects. There is no clipboard of objects and no link, and no item is selected.
  void OnUpdatePasteMenu(CCmdUI * item);
  void OnUpdatePasteLinkMenu(CCmdUI * item);
  void OnUpdateEditLinksMenu(CCmdUI * item);
  void OnUpdateObjectVerbMenu(CCmdUI * item);
  void OnEditLinks();
  void OnEditConvert();

 private:
  CObList m_Items;
};

// Makes documents with their frames and views, and keeps the list of those that are open.
class ZP_API CDocTemplate : public CCmdTarget {
  DECLARE_DYNAMIC(CDocTemplate)
 public:
  ~CDocTemplate() override;  // its documents forget it

  CRuntimeClass * GetDocClass() const { return m_pDocClass; }
  CRuntimeClass * GetFrameClass() const { return m_pFrameClass; }
  CRuntimeClass * GetViewClass() const { return m_pViewClass; }
  UINT GetResourceID() const { return m_nIDResource; }

  // Documents in the order in which they were opened.
  virtual void AddDocument(CDocument * doc);
  virtual void RemoveDocument(CDocument * doc);
  POSITION GetFirstDocPosition() const { return m_Documents.GetHeadPosition(); }
  CDocument * GetNextDoc(POSITION & position) const;

  // A document on the list, or a frame with a view of doc, in the main window if that can hold it; null if it can't be made. A
  // document belongs to itself, see m_bAutoDelete, a frame to its window.
  virtual CDocument * CreateNewDocument();
  virtual CFrameWnd * CreateNewFrame(CDocument * doc, CFrameWnd * other);
  virtual void InitialUpdateFrame(CFrameWnd * frame, CDocument * doc, BOOL visible = TRUE);

  // A new document, or that of a file, in a frame of its own; null if it can't be made or read, and nothing is left of it.
  virtual CDocument * OpenDocumentFile(char const * path, BOOL visible = TRUE) = 0;

  BOOL SaveAllModified();    // 0 as soon as a document's SaveModified refuses
  void CloseAllDocuments();  // without a question

 protected:
  CDocTemplate(UINT resource, CRuntimeClass * docClass, CRuntimeClass * frameClass, CRuntimeClass * viewClass);

  UINT m_nIDResource;
  CRuntimeClass * m_pDocClass;
  CRuntimeClass * m_pFrameClass;
  CRuntimeClass * m_pViewClass;

 private:
  CObList m_Documents;
};

// A template for any number of documents at a time.
class ZP_API CMultiDocTemplate : public CDocTemplate {
  DECLARE_DYNAMIC(CMultiDocTemplate)
 public:
  CMultiDocTemplate(UINT resource, CRuntimeClass * docClass, CRuntimeClass * frameClass, CRuntimeClass * viewClass);

  CDocument * OpenDocumentFile(char const * path, BOOL visible = TRUE) override;

 private:
  int m_nUntitled = 0;
};

// What a view is told before it draws for the printer; none is used here.
struct CPrintInfo;

// Shows a document in a frame. A view is a heap object that deletes itself with its window, also when that can't be created.
class ZP_API CView : public CWnd {
  DECLARE_DYNAMIC(CView)
 public:
  ~CView() override;

  CDocument * GetDocument() const { return m_pDocument; }

  virtual void OnPrepareDC(CDC * dc, CPrintInfo * info = nullptr);
  virtual void OnInitialUpdate();  // document and frame are there
  virtual void OnUpdate(CView * sender, LPARAM hint, CObject * object);
  virtual void OnActivateView(BOOL, CView *, CView *) {}  // activate, the one that becomes active, the one that was

  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override;  // itself, then its document

 protected:
  CView() = default;
  virtual void OnDraw(CDC * dc) = 0;
  int OnCreate(CREATESTRUCT * create);
  void OnDestroy();
  void PostNcDestroy() override;
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  friend class CDocument;

  LRESULT OnInitialUpdateMessage(WPARAM wParam, LPARAM lParam);

  CDocument * m_pDocument = nullptr;
};

// A view onto a part of a picture: its contexts are shifted by the scroll position.
class ZP_API CScrollView : public CView {
  DECLARE_DYNAMIC(CScrollView)
 public:
  void SetScrollSizes(int mapMode, SIZE total);  // logical units; the position goes back to the begin
  CSize GetTotalSize() const { return m_Total; }

  // The place in the picture that stands at the view's begin, kept inside the picture; logical units.
  void ScrollToPosition(POINT position);
  CPoint GetScrollPosition() const { return m_Position; }

  void OnPrepareDC(CDC * dc, CPrintInfo * info = nullptr) override;

 protected:
  static AFX_MSGMAP const * GetThisMessageMap();

 private:
  int m_nMapMode = MM_TEXT;
  CSize m_Total;
  CPoint m_Position;
};
