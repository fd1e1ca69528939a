// Message boxes: the one routine that shows them, its formatted forms, system errors and the question before the end.

#include <zpbase/messages.h>

#include <zpbase/config.h>
#include <zpbase/platform/format.h>
#include <zpbase/platform/resources.h>
#include <zpbase/platform/system_error.h>
#include <zpbase/platform/windows.h>

#include "messages/abort_box_internal.h"

namespace {

constexpr unsigned int defaultHelpID = 1454;
constexpr unsigned int quitQuestionID = 43150;
constexpr int maxMessage = 5000;  // characters

// The window behind the focus takes no input while it lives.
class DisabledOwner {
 public:
  explicit DisabledOwner(CWnd * focus)
  {
    CWnd * const owner = focus != nullptr ? focus->GetParentOwner() : nullptr;
    if (owner == nullptr) return;
    m_hOwner = owner->GetSafeHwnd();
    owner->EnableWindow(FALSE);
  }
  ~DisabledOwner()
  {
    if (CWnd * const owner = CWnd::FromHandle(m_hOwner); owner != nullptr) owner->EnableWindow(TRUE);
  }
  DisabledOwner(DisabledOwner const &) = delete;
  DisabledOwner & operator=(DisabledOwner const &) = delete;

 private:
  HWND m_hOwner = nullptr;  // a handle: the window may go while the box stands
};

void bringMainWindowForward()
{
  CWinThread * const thread = AfxGetThread();
  CWnd * const window = thread != nullptr ? thread->GetMainWnd() : nullptr;
  if (window != nullptr) window->SetForegroundWindow();
}

int showFormatted(unsigned int type, unsigned int icon, unsigned int id, va_list args)
{
  CString format;
  if (!format.LoadString(id)) return BeepMsgBox(id, type, icon, id);
  CString text;
  text.FormatV(format, args);
  return BeepMsgBox(text, type, icon, id);
}

// The text as it stands in the resources, or the id.
CString resourceText(unsigned int id)
{
  CString text;
  return text.LoadString(id) != 0 ? text : zp::FormatResource(id, {});
}

CString systemText(unsigned long error)
{
  char * text = nullptr;
  DWORD const length = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                                      static_cast<DWORD>(error), LANG_USER_DEFAULT, reinterpret_cast<char *>(&text), 0, nullptr);
  if (length == 0) return "There is no text for this error.";
  CString copy(text, static_cast<int>(length));
  LocalFree(text);
  return copy;
}

}  // namespace

int BeepMsgBox(CString const & text, unsigned int type, unsigned int icon, unsigned int helpId)
{
  if (icon == 0) icon = type == MB_OK ? MB_ICONASTERISK : MB_ICONQUESTION;
  if (helpId == 0) helpId = defaultHelpID;
  CWnd * const focus = CWnd::GetFocus();
  bringMainWindowForward();
  DisabledOwner const disabled(focus);
  GPBeep(icon);
  CString const shown = text.Left(maxMessage);
  if (SimulationIsInProgress()) return AbortMsgBox(shown).DoModal();
  return AfxMessageBox(shown, type | icon, helpId);
}

int BeepMsgBox(unsigned int id, unsigned int type, unsigned int icon, unsigned int helpId)
{
  return BeepMsgBox(resourceText(id), type, icon, helpId != 0 ? helpId : id);
}

int PrintfMsgBox(unsigned int id, ...)
{
  va_list args;
  va_start(args, id);
  int const answer = showFormatted(MB_OK, MB_ICONASTERISK, id, args);
  va_end(args);
  return answer;
}

int PrintfMsgBox(unsigned int id, std::initializer_list<zp::FormatArg> args)
{
  return PrintfMsgBoxStyle(MB_OK, MB_ICONASTERISK, id, args);
}

int PrintfMsgBoxStyle(unsigned int type, unsigned int icon, unsigned int id, ...)
{
  va_list args;
  va_start(args, id);
  int const answer = showFormatted(type, icon, id, args);
  va_end(args);
  return answer;
}

int PrintfMsgBoxStyle(unsigned int type, unsigned int icon, unsigned int id, std::initializer_list<zp::FormatArg> args)
{
  return BeepMsgBox(zp::FormatResource(id, args), type, icon, id);
}

int SystemErrorMsgBox(unsigned long error, CString const & state)
{
  CString text;
  text.Format("--- SYSTEM ERROR %lu ---\n%s\n\n--- SYSTEM STATE ---\n%s", error, systemText(error).GetString(),
              state.GetString());
  return BeepMsgBox(text, MB_OK, MB_ICONHAND, 0);
}

int SystemErrorMsgBox(unsigned long error, unsigned int id)
{
  return SystemErrorMsgBox(error, resourceText(id));
}

void GPBeep(unsigned int type)
{
  bool const always = type == MB_ICONHAND || type == MB_ICONEXCLAMATION;
  if (always || AllowBeep()) MessageBeep(type);
}

int QuitZephlow()
{
  if (GetSysYes("Misc", GetFastQuitKey())) return 1;
  return BeepMsgBox(quitQuestionID, MB_YESNO, MB_ICONHAND, 0) == IDYES;
}
