// Report documents, the look-up of open documents and views from anywhere, and what the windows above the library share: the base
// of the scrolling views, a tool bar, a timer that lives with its object, and places of windows in the settings.
#pragma once

#include <memory>

#include "platform/bars.h"
#include "platform/documents.h"
#include "platform/frames.h"
#include "platform/input.h"
#include "platform/windows.h"

// A text report: its lines, and a function for page headers that the document hands out but never calls; what its numbers and its
// result mean is agreed between the creator and who prints. Saved, a report is its lines, as CStringArray streams them, and then
// the content of its base. As long as a report lives, the application's automation lock is held.
class ZP_API GPRptDoc : public COleDocument {
  DECLARE_DYNCREATE(GPRptDoc)
 public:
  // Takes the lines over; null is no lines.
  GPRptDoc(CStringArray * lines, int (*pageHeader)(CString &, int, int));
  ~GPRptDoc() override;

  CStringArray * GetRptArray() { return m_pLines.get(); }
  int (*GetPageHeaderFn())(CString &, int, int) { return m_pPageHeader; }  // null if there is none

  void Serialize(CArchive & ar) override;
  void DeleteContents() override;  // empties the lines; what the base holds stays
  BOOL OnNewDocument() override;   // 1 or 0

 protected:
  GPRptDoc();  // no lines and no page header function
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;
  AFX_DISPMAP const * GetDispatchMap() const override;
  AFX_INTERFACEMAP const * GetInterfaceMap() const override;

 private:
  int (*m_pPageHeader)(CString &, int, int);
  std::unique_ptr<CStringArray> m_pLines;
};

// Looks up an open report by its title; for an empty one the first. Null if there is none.
ZP_API GPRptDoc * FindGPRptDoc(CString const & title);

// Look-ups walk the application's templates, each template's documents, each document's views. The main window is that of the
// calling thread; without one the first three give null.

ZP_API CMDIChildWnd * GetCurrentMDIChildWnd();  // the active frame of the main window
ZP_API CView * GetCurrentView();                // its active view
ZP_API CDocument * GetCurrentDoc();             // that view's document

// The first pane of the main window's status bar: the text at once, and the thread's messages are delivered; or a string resource
// when its message comes up.
ZP_API void SetPane0Text(CString const & text);
ZP_API void SetPane0Text(unsigned int resource);
inline void SetPane0Text(int resource)
{
  SetPane0Text(static_cast<unsigned int>(resource));
}

ZP_API void TraceDocViews();  // nothing to see

// 1 for an open document, else 0. The pointer is compared and never followed.
ZP_API int IsValidDoc(CDocument const * doc);

// Of the first template with exactly that class of documents, even if it has none: the last document of the title, or for an
// empty title the first document.
ZP_API CDocument * FindDocByTitle(CRuntimeClass const * docClass, CString const & title);

// Of the first template with exactly that class of views: the last view of its document doc, or for null of its first document,
// whatever class the view is of.
ZP_API CView * FindDocView(CRuntimeClass const * viewClass, CDocument const * doc);

// Hands a document to the application: keeps it for GetNewDocument, sends the main window the command newDocumentCommand, whose
// handler takes the document from there, and delivers the thread's messages. Without a main window the document is only kept; it
// stays the caller's.
inline constexpr UINT newDocumentCommand = 1965;
ZP_API void LaunchNewDocument(CDocument * doc);
ZP_API CDocument * GetNewDocument();

// Base of the scrolling views: the Escape key as a right click, commands for help and page set-up that it passes on to the main
// window, a cursor of its own, and repainting in logical coordinates.
class ZP_API GPScrollView : public CScrollView {
  DECLARE_DYNAMIC(GPScrollView)
 public:
  ~GPScrollView() override;

  // The cursor over the view: a resource of the application, or a standard one, IDC_ARROW and its kin. The one that was shown
  // before is kept, for one RestoreCursor; without one kept the default handling comes back.
  void SetCursor(unsigned int resource);
  void SetCursor(int resource) { SetCursor(static_cast<unsigned int>(resource)); }
  void SetCursor(char const * name);
  void RestoreCursor();

  // Invalidates a rectangle of logical coordinates and 2 units of the device around it.
  void InvalidateLogRect(CRect const & rect, int erase);

  BOOL PreTranslateMessage(tagMSG * message) override;

 protected:
  GPScrollView() = default;
  int OnCreate(CREATESTRUCT * create);
  void OnEscape();
  BOOL OnSetCursor(CWnd * window, UINT hitTest, UINT message);
  void OnContextHelp();
  void OnHelpTopics();
  void OnGraphicsPageSetup();
  void OnReportPageSetup();
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  void ShowCursor(HCURSOR cursor);

  HCURSOR m_hCursor = nullptr;
  HCURSOR m_hSavedCursor = nullptr;
  HACCEL m_hAccel = nullptr;
};

// A tool bar along the top of a frame; with the flag it is flat and can be docked on all sides.
class ZP_API GPToolBar : public CToolBar {
  DECLARE_DYNAMIC(GPToolBar)
 public:
  explicit GPToolBar(int dockable) : m_bDockable(dockable) {}

  // Creates the bar with the buttons of the resource: 1, or 0 and no new window if either fails or there is no frame.
  int CreateCustomToolBar(CFrameWnd * frame, unsigned int resource);

 protected:
  void OnWindowPosChanging(WINDOWPOS * position);
  void OnWindowPosChanged(WINDOWPOS * position);
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  int m_bDockable;
};

// A timer that runs as long as the object lives, which must not outlive the window.
class ZP_API GPMeter : public CObject {
 public:
  // window may be null; interval in milliseconds.
  GPMeter(CWnd * window, void (*proc)(HWND__ *, unsigned int, unsigned int, unsigned long), unsigned int interval);
  ~GPMeter() override;
  GPMeter(GPMeter const &) = delete;
  GPMeter & operator=(GPMeter const &) = delete;

  unsigned int GetMeterID() { return m_nTimerID; }

 private:
  HWND m_hWnd;
  UINT m_nTimerID;  // as the platform gave it
};

// The place of a window in the settings: section "WindowPlacement", a key for each window. A dialog or property sheet keeps its
// left and top as "10, 20", every other window its normal rectangle as "10, 20, 300, 400".
class ZP_API CWindowPlacement : public tagWINDOWPLACEMENT {
 public:
  CWindowPlacement() : tagWINDOWPLACEMENT{} { length = sizeof(tagWINDOWPLACEMENT); }

  void Save(char const * key, CWnd * window);

  // Moves the window to the place that was saved; a dialog keeps its size. Fields that the setting doesn't tell, and the show
  // state, stay those of the window.
  void Restore(char const * key, CWnd * window);
};
