// Run control: the flags of a run, the poll that keeps the messages moving and holds a paused run, and the ids of timers.

#include <zpbase/messages.h>

#include <utility>

#include <zpbase/platform/messages.h>

namespace {

constexpr int pausedWait = 10;  // milliseconds between two rounds of a paused run without messages

int g_nSimulation = 0;
int g_nAbort = 0;
int g_nPause = 0;
unsigned int g_nLastTimerID = 0;

// False for the quit. A thread without an object delivers its messages all the same.
bool pump(CWinThread * thread)
{
  if (thread != nullptr) return thread->PumpMessage() != 0;
  MSG message;
  if (!GetMessageA(&message)) return false;
  DispatchMessageA(&message);
  return true;
}

}  // namespace

void SetSimulationInProgress(int value)
{
  g_nSimulation = value;
}

int SimulationIsInProgress()
{
  return g_nSimulation;
}

int GetAbortFlag()
{
  return g_nAbort;
}

int SetAbortFlag(int value)
{
  return std::exchange(g_nAbort, value);
}

void ClearAbortFlag()
{
  g_nAbort = 0;
}

int GetPauseFlag()
{
  return g_nPause;
}

int SetPauseFlag(int value)
{
  return std::exchange(g_nPause, value);
}

void ClearPauseFlag()
{
  g_nPause = 0;
}

int AbortRun()
{
  for (;;) {
    ProcessMessages();
    if (g_nAbort != 0 || g_nPause == 0) return g_nAbort;
    zp::WaitForMessage(pausedWait);
  }
}

void ProcessMessages()
{
  CWinThread * const thread = AfxGetThread();
  for (MSG next; PeekMessageA(&next, PM_NOREMOVE);) {
    if (pump(thread)) continue;
    PostQuitMessage(static_cast<int>(next.wParam));
    return;
  }
  if (thread == nullptr) return;
  thread->OnIdle(0);
  thread->OnIdle(1);
}

unsigned int GetNextTimerID()
{
  return ++g_nLastTimerID;
}
