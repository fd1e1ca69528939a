// What programs ask of the terminal.

#include <zpbase/platform/application.h>

#include <unistd.h>

bool IsTerminal(int stream)
{
  return isatty(stream) == 1;
}
