// Where the program's own file and the user's settings are.
#pragma once

#include <string>

#include "types.h"

// The inside path of the file that a module was loaded from. Cut to size - 1 characters, with a terminating zero; the result
// is their count, size if the path was cut, 0 if the module isn't known.
ZP_API DWORD GetModuleFileName(HINSTANCE module, char * path, DWORD size);

// The host folder of the user's configuration: $XDG_CONFIG_HOME if that is absolute, else $HOME/.config, else empty.
ZP_API std::string GetUserConfigFolder();
