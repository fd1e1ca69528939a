// The host's folders: looking for entries by pattern, making one, and the system's own search for a file. A failure leaves the
// system's error number for GetLastError.
#pragma once

#include "security.h"
#include "types.h"

// A search for files that is under way.
struct FileSearch;
using HANDLE = FileSearch *;
inline HANDLE const INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(~uintptr_t{0});

struct WIN32_FIND_DATA {
  DWORD dwFileAttributes;  // 0x10 for a folder
  char cFileName[260];     // cut to fit, with a terminating zero
};

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
