// Windows without painting: handles, parents, focus, texts, enabling and message maps; dialogs on templates; and the one
// object that everything a person sees or answers goes through.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "drawing.h"
#include "messages.h"
#include "runtime.h"
#include "string.h"
#include "types.h"

class CCmdTarget;
class CDialog;

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

enum WindowStyle : DWORD { WS_OVERLAPPED = 0, WS_CHILD = 0x40000000 };

enum ControlColorType : UINT { CTLCOLOR_BTN = 3, CTLCOLOR_DLG = 4, CTLCOLOR_STATIC = 6 };

// The question of WM_CTLCOLOR: with which text colour and brush a control is drawn.
struct AFX_CTLCOLOR {
  CDC * pDC;
  CWnd * pWnd;
  UINT nCtlType;
};

// A message map: which handler takes a message, and for WM_COMMAND a range of commands. Entries are made by the functions
// zp::OnMessage, OnCommand and OnCtlColor below.
struct AFX_MSGMAP_ENTRY {
  UINT nMessage;
  UINT nID;
  UINT nLastID;
  LRESULT (*pHandler)(CCmdTarget & target, WPARAM wParam, LPARAM lParam);
};

struct AFX_MSGMAP {
  AFX_MSGMAP const * (*pfnGetBaseMap)();  // null at the root
  std::span<AFX_MSGMAP_ENTRY const> entries;
};

class ZP_API CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)
 public:
  // True, with the handler's answer, if this map or one of its bases has a handler.
  bool CallHandler(UINT message, WPARAM wParam, LPARAM lParam, LRESULT & answer);

 protected:
  static AFX_MSGMAP const * GetThisMessageMap();
  virtual AFX_MSGMAP const * GetMessageMap() const;
};

class ZP_API CWnd : public CCmdTarget {
  DECLARE_DYNAMIC(CWnd)
 public:
  CWnd() = default;
  CWnd(CWnd const &) = delete;
  CWnd & operator=(CWnd const &) = delete;
  ~CWnd() override;  // destroys its window

  // Gives the object a window: a child of parent with WS_CHILD, else a window of its own that parent owns. 0 if it has one.
  BOOL Create(char const * title, DWORD style = WS_OVERLAPPED, CWnd * parent = nullptr, UINT id = 0);
  BOOL DestroyWindow();  // and those of its children; 0 without a window

  static CWnd * FromHandle(HWND window);  // null for a window that is gone
  static CWnd * GetFocus();               // the calling thread's
  static CWnd * GetForegroundWindow();
  CWnd * SetFocus();  // gives the former one
  BOOL SetForegroundWindow();

  HWND GetSafeHwnd() const { return m_hWnd; }
  DWORD GetStyle() const { return m_nStyle; }
  int GetDlgCtrlID() const { return static_cast<int>(m_nID); }
  CWnd * GetParent() const { return m_pParent; }
  CWnd * GetParentOwner();          // the nearest window that is no child, from this one upwards
  CWnd * GetDlgItem(int id) const;  // the child of that id, or null

  BOOL EnableWindow(BOOL enable = TRUE);  // non-zero if it was disabled
  BOOL IsWindowEnabled() const { return m_bEnabled; }
  void SetWindowText(char const * text) { m_strText = text; }
  void GetWindowText(CString & text) const { text = m_strText; }
  void SetDlgItemText(int id, char const * text);

  // Delivers at once, on the calling thread; posting puts the message in the queue of the window's thread, 0 without a window.
  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
  BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

  virtual BOOL PreTranslateMessage(MSG * message);
  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);  // the message map, else DefWindowProc
  virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);

  HWND m_hWnd = nullptr;

 protected:
  HBRUSH OnCtlColor(CDC * dc, CWnd * control, UINT type);  // the default brush
  static AFX_MSGMAP const * GetThisMessageMap();
  AFX_MSGMAP const * GetMessageMap() const override;

 private:
  CString m_strText;
  CWnd * m_pParent = nullptr;
  std::vector<CWnd *> m_Children;
  DWORD m_nStyle = 0;
  UINT m_nID = 0;
  BOOL m_bEnabled = TRUE;
};

// A dialog on a template: a static text or a button for each control.
struct DialogControl {
  enum Kind { Static, Button };

  Kind m_Kind;
  UINT m_nID;
  char const * m_pText;  // '&' in front of the key that presses a button
  bool m_bDefault;       // the button that is pressed when nobody can be asked
};

struct DialogTemplate {
  UINT m_nID;
  char const * m_pTitle;
  std::span<DialogControl const> m_Controls;
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

// Both go to the user interface.
ZP_API int AfxMessageBox(char const * text, UINT type = MB_OK, UINT helpId = 0);
ZP_API void MessageBeep(UINT type);

namespace zp {

using FindDialogTemplate = DialogTemplate const * (*)(UINT id);

// Puts a module of dialog templates in front of those registered before, or takes it out again.
ZP_API void RegisterTemplateModule(FindDialogTemplate find);
ZP_API void UnregisterTemplateModule(FindDialogTemplate find);

template <class Member>
struct HandlerOf;

template <class Target, class Result, class... Args>
struct HandlerOf<Result (Target::*)(Args...)> {
  using Class = Target;
};

template <auto handler>
typename HandlerOf<decltype(handler)>::Class & TargetOf(CCmdTarget & target)
{
  return static_cast<typename HandlerOf<decltype(handler)>::Class &>(target);
}

// Entries of message maps for handlers of these shapes: LRESULT (WPARAM, LPARAM); void (); HBRUSH (CDC *, CWnd *, UINT).
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnMessage(UINT message)
{
  return {message, 0, 0, [](CCmdTarget & target, WPARAM wParam, LPARAM lParam) -> LRESULT {
            return (TargetOf<handler>(target).*handler)(wParam, lParam);
          }};
}

template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCommand(UINT first, UINT last)
{
  return {WM_COMMAND, first, last, [](CCmdTarget & target, WPARAM, LPARAM) -> LRESULT {
            (TargetOf<handler>(target).*handler)();
            return 0;
          }};
}

template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCommand(UINT id)
{
  return OnCommand<handler>(id, id);
}

template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCtlColor()
{
  return {
      WM_CTLCOLOR, 0, 0, [](CCmdTarget & target, WPARAM, LPARAM lParam) -> LRESULT {
        auto const & question = *reinterpret_cast<AFX_CTLCOLOR const *>(lParam);
        return reinterpret_cast<LRESULT>((TargetOf<handler>(target).*handler)(question.pDC, question.pWnd, question.nCtlType));
      }};
}

}  // namespace zp
