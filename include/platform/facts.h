// Facts that the system tells: its version, its languages, and the texts of its error numbers.
#pragma once

#include <cstdarg>

#include "types.h"

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
inline constexpr DWORD LANG_USER_DEFAULT = 0x0400;

// The sentence for a system error number, its length as result; 0 if there is none. With the first flag buffer is the address of
// a char * that gets a block to be released with LocalFree, else the sentence must fit in size characters with its terminator.
// There are no other sources than the system, and one language.
ZP_API DWORD FormatMessageA(DWORD flags, void const * source, DWORD error, DWORD language, char * buffer, DWORD size,
                            va_list * args);
ZP_API void LocalFree(void * block);

struct _OSVERSIONINFOA {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  char szCSDVersion[128];
};
using OSVERSIONINFOA = _OSVERSIONINFOA;

inline constexpr DWORD VER_PLATFORM_WIN32s = 0;
inline constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

// The host's release as a version of the NT family, "6.1.76" as 6, 1 and 76, with the host's own words on its build as
// szCSDVersion. 0 if the host doesn't tell.
ZP_API BOOL GetVersionExA(OSVERSIONINFOA * version);

// Language identifiers of the user's locales of messages (the language) and of LC_TIME (the thread's locale): U.S. English for
// the C locale, 0x0400 for a language that isn't known here.
ZP_API WORD GetSystemDefaultLangID();
ZP_API DWORD GetThreadLocale();

namespace zp {

// What GetVersionExA asks, replaceable so that other systems can be tried.
struct SystemCalls {
  bool (*GetVersion)(OSVERSIONINFOA & version);
};
ZP_API SystemCalls & GetSystemCalls();

}  // namespace zp
