// What programs ask of the terminal.

#include <zpbase/platform/terminal.h>

#include <zpbase/platform/host_calls.h>

bool IsTerminal(int stream)
{
  return zp::GetHostCalls().IsTerminal(stream) == 1;
}
