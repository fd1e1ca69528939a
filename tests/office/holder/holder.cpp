// Starts an office, says so, and waits to be killed.

#include <unistd.h>

#include "servers/office/link.h"

int main()
{
  office::LinkSettings settings = office::LinkSettings::FromEnvironment();
  settings.pipe = "none-such";
  office::Link const link(settings);
  if (write(1, "!", 1) != 1) return 1;
  for (;;) pause();
}
