// Run control: the flags of a run and the ids of timers.

#include <zpbase/messages.h>

#include <utility>

namespace {

int g_nSimulation = 0;
int g_nAbort = 0;
int g_nPause = 0;
unsigned int g_nLastTimerID = 0;

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

unsigned int GetNextTimerID()
{
  return ++g_nLastTimerID;
}
