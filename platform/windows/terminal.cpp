// What programs ask of the terminal.

#include <zpbase/platform/terminal.h>

#include <unistd.h>

bool IsTerminal(int stream)
{
  return isatty(stream) == 1;
}
