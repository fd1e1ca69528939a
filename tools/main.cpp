// The program zp.

#include "tools/command_line.h"

// What is raised outside of the commands' reach is memory that runs out with no command at work: the program may end on it.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char ** argv)
{
  return RunCommandLine(argc, argv);
}
