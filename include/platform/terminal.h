// What programs ask of the terminal.
#pragma once

#include "types.h"

// Whether a standard stream, 0 to 2, leads to a terminal.
ZP_API bool IsTerminal(int stream);
