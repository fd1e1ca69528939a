// Windows without painting: handles, parents, focus, texts, enabling, places and what would be repainted; dialogs on templates;
// and the one object that everything a person sees or answers goes through. Message maps see message_map.h.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "drawing.h"
#include "messages.h"
#include "string.h"
#include "types.h"
#include "window_records.h"

class CDialog;
class CFrameWnd;

// The style of message boxes: buttons, or'ed with an icon; and the ids of their answers.
enum MessageBoxStyle : UINT {
  MB_OK = 0,
  MB_OKCANCEL = 1,
  MB_ABORTRETRYIGNORE = 2,
  MB_YESNOCANCEL = 3,
  MB_YESNO = 4,
  MB_RETRYCANCEL = 5,
  MB_TYPEMASK = 0xF,
  MB_ICONHAND = 16,
  MB_ICONQUESTION = 32,
  MB_ICONEXCLAMATION = 48,
  MB_ICONASTERISK = 64,
  MB_ICONMASK = 0xF0
};

enum DialogAnswer : int { IDOK = 1, IDCANCEL = 2, IDABORT = 3, IDRETRY = 4, IDIGNORE = 5, IDYES = 6, IDNO = 7 };

enum ControlColorType : UINT { CTLCOLOR_BTN = 3, CTLCOLOR_DLG = 4, CTLCOLOR_STATIC = 6 };

// The question of WM_CTLCOLOR: with which text colour and brush a control is drawn.
struct AFX_CTLCOLOR {
  CDC * pDC;
  CWnd * pWnd;
  UINT nCtlType;
};

class ZP_API CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)
 public:
  CWnd() = default;
  CWnd(CWnd const &) = delete;
  CWnd & operator=(CWnd const &) = delete;
  ~CWnd() override;  // destroys its window

  // Gives the object a window: a child of parent with WS_CHILD, else a window of its own that parent owns. 0 if it has one. Sends
  // WM_CREATE with param in its record; the answer -1 destroys the window again and gives 0.
  BOOL Create(char const * title, DWORD style = WS_OVERLAPPED, CWnd * parent = nullptr, UINT id = 0, void * param = nullptr);

  // Sends WM_DESTROY and destroys the window and those of its children; 0 without a window. A main window that goes is nobody's
  // main window any more.
  BOOL DestroyWindow();

  static CWnd * FromHandle(HWND window);  // null for a window that is gone
  static CWnd * GetFocus();               // the calling thread's
  static CWnd * GetForegroundWindow();
  CWnd * SetFocus();  // gives the former one
  BOOL SetForegroundWindow();

  HWND GetSafeHwnd() const { return m_hWnd; }
  DWORD GetStyle() const { return m_nStyle; }
  BOOL ModifyStyle(DWORD remove, DWORD add);  // 0 if nothing changed
  int GetDlgCtrlID() const { return static_cast<int>(m_nID); }
  CWnd * GetParent() const { return m_pParent; }
  CWnd * GetParentOwner();             // the nearest window that is no child, from this one upwards
  CWnd * GetDlgItem(int id) const;     // the child of that id, or null
  CFrameWnd * GetParentFrame() const;  // the nearest frame above it, or null
  std::vector<CWnd *> const & GetChildren() const { return m_Children; }  // in the order of their creation

  BOOL EnableWindow(BOOL enable = TRUE);  // non-zero if it was disabled
  BOOL IsWindowEnabled() const { return m_bEnabled; }
  void SetWindowText(char const * text) { m_strText = text; }
  void GetWindowText(CString & text) const { text = m_strText; }
  void SetDlgItemText(int id, char const * text);

  // Places are those of the screen, a child's those of its parent's inside. A window has no border, and keeps the place that it
  // was given whatever its show state. Moving sends WM_WINDOWPOSCHANGING, whose record may be changed, and WM_WINDOWPOSCHANGED.
  BOOL SetWindowPos(CWnd const * insertAfter, int x, int y, int cx, int cy, UINT flags);
  void MoveWindow(int x, int y, int width, int height);
  void MoveWindow(RECT const * rect);
  void GetWindowRect(RECT * rect) const;  // on the screen
  void GetClientRect(RECT * rect) const;  // from (0, 0)
  void ScreenToClient(RECT * rect) const;
  void ClientToScreen(RECT * rect) const;
  BOOL ShowWindow(UINT command);  // non-zero if it was shown before
  BOOL GetWindowPlacement(WINDOWPLACEMENT * placement) const;
  BOOL SetWindowPlacement(WINDOWPLACEMENT const * placement);  // 0 for a record of another length

  // What would be repainted: the rectangle around all that was invalidated since the last ValidateRect, null for the whole
  // inside, and whether it would be erased first.
  void InvalidateRect(RECT const * rect, BOOL erase = TRUE);
  void ValidateRect();
  BOOL GetUpdateRect(RECT * rect) const;  // 0, and an empty rectangle, if there is nothing
  BOOL GetUpdateErase() const { return m_bUpdateErase; }

  BOOL EnableToolTips(BOOL enable = TRUE);
  BOOL HasToolTips() const { return m_bToolTips; }

  // Delivers at once, on the calling thread; posting puts the message in the queue of the window's thread, 0 without a window.
  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
  BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

  virtual BOOL PreTranslateMessage(MSG * message);

  // Offers a message to its window and those above it, up to stop: TRUE if one took it.
  static BOOL WalkPreTranslateTree(HWND stop, MSG * message);

  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);  // the message map, else DefWindowProc
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);

  // Sends a command along the route of OnCmdMsg: TRUE if it was taken. One that its update handler disables is taken by nobody
  // and goes no further. For a control, lParam, the high word of wParam is its notification.
  virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);

  HWND m_hWnd = nullptr;

 protected:
  // What DefWindowProc makes of the message that is being handled.
  LRESULT Default();

  int OnCreate(CREATESTRUCT * create);
  void OnDestroy();
  BOOL OnSetCursor(CWnd * window, UINT hitTest, UINT message);
  void OnWindowPosChanging(WINDOWPOS * position);
  void OnWindowPosChanged(WINDOWPOS * position);
  HBRUSH OnCtlColor(CDC * dc, CWnd * control, UINT type);  // the default brush

  // The last that an object hears of its window, also of one that can't be created. Frames and views delete themselves.
  virtual void PostNcDestroy() {}
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  POINT GetOrigin() const;  // of the inside, on the screen

  CString m_strText;
  CWnd * m_pParent = nullptr;
  std::vector<CWnd *> m_Children;
  DWORD m_nStyle = 0;
  UINT m_nID = 0;
  BOOL m_bEnabled = TRUE;
  BOOL m_bToolTips = FALSE;
  BOOL m_bDestroying = FALSE;
  WINDOWPLACEMENT m_Placement{};
  RECT m_Update{};
  BOOL m_bUpdate = FALSE;
  BOOL m_bUpdateErase = FALSE;
};

// A dialog on a template: a static text or a button for each control.
struct DialogControl {
  enum Kind { Static, Button };

  Kind kind;
  UINT id;
  char const * text;  // '&' in front of the key that presses a button
  bool isDefault;     // the button that is pressed when nobody can be asked
};

struct DialogTemplate {
  UINT id;
  char const * title;
  std::span<DialogControl const> controls;
};

class ZP_API CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)
 public:
  explicit CDialog(UINT templateId, CWnd * parent = nullptr);
  ~CDialog() override;

  // Runs until the dialog is ended; the result is that of EndDialog, IDCANCEL if it was dismissed, -1 without a template.
  virtual int DoModal();
  virtual BOOL OnInitDialog();  // before it is shown; the controls are there
  void EndDialog(int result);

  bool IsEnded() const { return m_bEnded; }
  int GetResult() const { return m_nResult; }
  DialogTemplate const & GetTemplate() const { return *m_pTemplate; }  // while it runs

  // The colour that the dialog gives the text of a control.
  COLORREF GetControlTextColor(CWnd & control, UINT type);

 protected:
  virtual void OnOK();
  virtual void OnCancel();
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  void CreateControls();

  UINT m_nTemplateID;
  CWnd * m_pDialogParent;
  DialogTemplate const * m_pTemplate = nullptr;
  std::vector<std::unique_ptr<CWnd>> m_Controls;
  int m_nResult = -1;
  bool m_bEnded = false;
};

// Pages of a dialog in one window, which is not itself a dialog.
class ZP_API CPropertySheet : public CWnd {
  DECLARE_DYNAMIC(CPropertySheet)
};

class CUserInterface {
 public:
  virtual ~CUserInterface() = default;

  // Gives the id of the answer, IDOK, IDYES, ...
  virtual int ShowMessage(CString const & text, UINT style, UINT helpId) = 0;

  // Shows the texts of the template's controls and sends WM_COMMAND for a press until the dialog is ended. The result is the
  // dialog's; one that returns earlier dismisses the dialog.
  virtual int RunDialog(CDialog & dialog) = 0;

  virtual void Beep(UINT type) = 0;
  virtual void SetWaitCursor(int on) = 0;
};

// Installs the interface, which stays the caller's, and gives the former one. Null is the terminal's: it prints to standard
// error, asks on a terminal, and without one gives the safe answer at once.
ZP_API CUserInterface * SetUserInterface(CUserInterface * ui);
ZP_API CUserInterface & GetUserInterface();

// Shows the wait cursor as long as it lives; of several, until the last is gone.
class ZP_API CWaitCursor {
 public:
  CWaitCursor();
  ~CWaitCursor();
  CWaitCursor(CWaitCursor const &) = delete;
  CWaitCursor & operator=(CWaitCursor const &) = delete;
};

// Both go to the user interface.
ZP_API int AfxMessageBox(char const * text, UINT type = MB_OK, UINT helpId = 0);
ZP_API void MessageBeep(UINT type);

namespace zp {

using FindDialogTemplate = DialogTemplate const * (*)(UINT id);

// Puts a module of dialog templates in front of those registered before, or takes it out again.
ZP_API void RegisterTemplateModule(FindDialogTemplate find);
ZP_API void UnregisterTemplateModule(FindDialogTemplate find);

}  // namespace zp
