// CWinThread: the thread's object and its message pump.

#include <zpbase/platform/windows.h>

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)

namespace {

thread_local CWinThread * t_pThread = nullptr;

}  // namespace

CWinThread::CWinThread()
{
  t_pThread = this;
}

CWinThread::~CWinThread()
{
  if (t_pThread == this) t_pThread = nullptr;
}

int CWinThread::Run()
{
  constexpr int asLongAsItTakes = -1;
  MSG next;
  for (LONG idle = 0;;) {
    if (PeekMessageA(&next, PM_NOREMOVE)) {
      if (!PumpMessage()) return static_cast<int>(next.wParam);
      idle = 0;
    } else if (!OnIdle(idle++)) {
      zp::WaitForMessage(asLongAsItTakes);
    }
  }
}

BOOL CWinThread::PumpMessage()
{
  MSG message;
  if (!GetMessageA(&message)) return FALSE;
  if (!PreTranslateMessage(&message)) DispatchMessageA(&message);
  return TRUE;
}

BOOL CWinThread::OnIdle(LONG)
{
  return FALSE;
}

BOOL CWinThread::PreTranslateMessage(MSG * message)
{
  CWnd * const main = GetMainWnd();
  if (CWnd::WalkPreTranslateTree(main != nullptr ? main->GetSafeHwnd() : nullptr, message)) return TRUE;
  CWnd * const window = CWnd::FromHandle(message->hwnd);
  return main != nullptr && window != nullptr && window->GetParentOwner() != main && main->PreTranslateMessage(message);
}

CWinThread * AfxGetThread()
{
  return t_pThread;
}
