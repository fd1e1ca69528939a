// Frame windows: a window around the views of a document; a main window with any number of such frames in it, one of them active.
// A frame is a heap object that deletes itself with its window, also when that can't be created.
#pragma once

#include "bars.h"
#include "documents.h"
#include "windows.h"

class CMDIChildWnd;

class ZP_API CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
 public:
  CFrameWnd() = default;

  // Creates the window, titled by the string resource, and in it what the context asks for. 0 if it can't.
  virtual BOOL LoadFrame(UINT resource, DWORD style = WS_OVERLAPPED, CWnd * parent = nullptr, CCreateContext * context = nullptr);

  // The view that takes the frame's commands first, or null, and its document.
  CView * GetActiveView() const { return m_pActiveView; }
  void SetActiveView(CView * view);
  virtual CDocument * GetActiveDocument();
  virtual CFrameWnd * GetActiveFrame() { return this; }

  // A view of the context's class and document inside the frame, or null.
  CView * CreateView(CCreateContext * context, UINT id = AFX_IDW_PANE_FIRST);

  // Sends the views WM_INITIALUPDATE, makes the first one active unless one is, and with visible brings the frame forward.
  void InitialUpdateFrame(CDocument * doc, BOOL visible);
  virtual void ActivateFrame();

  // Titles the window by the document, and by the frame's own title behind it.
  virtual void OnUpdateFrameTitle();

  // The bar whose text is the status text: the child of the id AFX_IDW_STATUS_BAR, or null.
  virtual CWnd * GetMessageBar() { return GetDlgItem(AFX_IDW_STATUS_BAR); }

  // The sides on which bars may be docked, none at first. A bar is docked if frame and bar have a side in common.
  void EnableDocking(DWORD sides) { m_nDockSides = sides & CBRS_ALIGN_ANY; }
  DWORD GetDockSides() const { return m_nDockSides; }
  void DockControlBar(CControlBar * bar);

  // Its active view, itself, the application.
  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override;

 protected:
  virtual BOOL OnCreateClient(CREATESTRUCT * create, CCreateContext * context);  // 0 gives the frame up
  int OnCreate(CREATESTRUCT * create);

  // Closes the frame unless its document refuses. The main window closes all documents, and ends the message loop.
  void OnClose();
  LRESULT OnSetMessageString(WPARAM wParam, LPARAM lParam);  // the former resource
  void PostNcDestroy() override;
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  CString m_strTitle;
  CView * m_pActiveView = nullptr;
  DWORD m_nDockSides = 0;
  UINT m_nMessage = 0;  // resource of the status text, 0 for one that has none
};

// A main window with frames in it.
class ZP_API CMDIFrameWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIFrameWnd)
 public:
  CMDIFrameWnd() = default;

  // The frame that was brought forward last, or null.
  CMDIChildWnd * MDIGetActive() const { return m_Order.empty() ? nullptr : m_Order.back(); }
  void MDIActivate(CMDIChildWnd * child);
  CFrameWnd * GetActiveFrame() override;

  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override;  // first the active frame

 protected:
  static AFX_MSGMAP const * GetThisMessageMap();

 private:
  friend class CMDIChildWnd;

  void Forget(CMDIChildWnd * child);

  std::vector<CMDIChildWnd *> m_Order;  // the active one last
};

// A frame in a main window.
class ZP_API CMDIChildWnd : public CFrameWnd {
  DECLARE_DYNCREATE(CMDIChildWnd)
 public:
  CMDIChildWnd() = default;

  // parent has to be a CMDIFrameWnd.
  BOOL LoadFrame(UINT resource, DWORD style = WS_CHILD, CWnd * parent = nullptr, CCreateContext * context = nullptr) override;
  CMDIFrameWnd * GetMDIFrame() const;
  void ActivateFrame() override;

 protected:
  void OnDestroy();
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;
};
