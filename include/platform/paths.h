// Where the two forms of a path meet: inside the library a path uses backslashes and "C:\" is the host's root; the host has
// slashes. Bytes and case of names pass unchanged. Also the places of the program and of the user's settings, and the durable
// replacement of whole files.
#pragma once

#include <string>
#include <string_view>

#include "string.h"
#include "types.h"

// The host's form of a path: a drive prefix "C:" is dropped and backslashes become slashes; a path that starts with "/" is
// taken as it stands. False, with hostPath empty, for another drive, a network name, or a path with a zero byte (badPath).
ZP_API bool ToHostPath(std::string_view path, std::string & hostPath);

// The inside form: "/var/job" gives "C:\var\job", a relative path stays relative.
ZP_API CString FromHostPath(std::string_view hostPath);

// The inside path of the file that a module was loaded from. Cut to size - 1 characters, with a terminating zero; the result
// is their count, size if the path was cut, 0 if the module isn't known.
ZP_API DWORD GetModuleFileName(HINSTANCE module, char * path, DWORD size);

// The host folder of the user's configuration: $XDG_CONFIG_HOME if that is absolute, else $HOME/.config, else empty.
ZP_API std::string GetUserConfigFolder();

// Replaces a whole file so that every reader, also after a crash, sees the old bytes or the new ones: written beside it, synced
// and renamed, under a lock on the folder. Both forms of path will do; links are followed, the mode of the old file is kept.
// False on failure, with the host's error number in error; the old file then stands untouched.
ZP_API bool ReplaceFileDurably(char const * target, std::string_view content, int * error = nullptr);

// The same with a file that is written already and lies in the same file system: it is synced and takes the target's place.
ZP_API bool MoveFileDurably(char const * written, char const * target, int * error = nullptr);
