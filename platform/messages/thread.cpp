// CWinThread: the thread's object and its message pump.

#include <zpbase/platform/windows.h>

IMPLEMENT_DYNAMIC(CWinThread, CObject)

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
  CWnd * const window = CWnd::FromHandle(message->hwnd);
  return window != nullptr && window->PreTranslateMessage(message);
}

CWinThread * AfxGetThread()
{
  return t_pThread;
}
