// The count of objects for whose sake the application stays alive.

#include <zpbase/platform/automation.h>

namespace {

int g_nLocks = 0;

}  // namespace

void AfxOleLockApp()
{
  ++g_nLocks;
}

void AfxOleUnlockApp()
{
  if (g_nLocks > 0) --g_nLocks;
}

BOOL AfxOleCanExitApp()
{
  return g_nLocks == 0;
}
