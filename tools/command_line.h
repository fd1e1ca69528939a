// The program as a function, for its main and for what tests it.
#pragma once

// The program's exit status. The first argument is its name.
int RunCommandLine(int argc, char const * const * argv);
