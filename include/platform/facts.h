// Facts that the system tells: its version and its languages.
#pragma once

#include "types.h"

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
