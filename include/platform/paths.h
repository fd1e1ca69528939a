// Where the two forms of a path meet: inside the library a path uses backslashes and "C:\" is the host's root; the host has
// slashes. Bytes and case of names pass unchanged. Also the places of the program and of the user's settings, and the durable
// replacement of whole files.
#pragma once

#include <string>
#include <string_view>

#include "string.h"
#include "types.h"

struct SECURITY_ATTRIBUTES;

// A search for files that is under way.
struct FileSearch;
using HANDLE = FileSearch *;
inline HANDLE const INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(~uintptr_t{0});

struct WIN32_FIND_DATA {
  DWORD dwFileAttributes;  // 0x10 for a folder
  char cFileName[260];     // cut to fit, with a terminating zero
};

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

// What the last of the following functions that failed on this thread ran into, as the system's error number.
ZP_API DWORD GetLastError();

// The first entry of a folder whose name fits the pattern, the path's last part: '*' stands for any characters, '?' for one,
// "*.*" for every name; ASCII case doesn't count. Its name goes to found, if one is given. The caller closes the search.
// INVALID_HANDLE_VALUE if there is none.
ZP_API HANDLE FindFirstFileA(char const * pattern, WIN32_FIND_DATA * found);
ZP_API BOOL FindClose(HANDLE search);

// FALSE with error 183 for a name that exists, 3 where the folder above is missing. Security is the host's default.
ZP_API BOOL CreateDirectoryA(char const * path, SECURITY_ATTRIBUTES * security);

// Looks for a file along path, folders separated by semicolons, or without one in the program's folder, the current one and the
// folders of $PATH. The extension, with its dot, is added to a name without one. The full path goes to buffer, filePart points
// to its last part; the result is its length, the size that it needs if it doesn't fit, 0 if there is no such file.
ZP_API DWORD SearchPathA(char const * path, char const * name, char const * extension, DWORD size, char * buffer,
                         char ** filePart);
