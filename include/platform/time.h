// The local time, and dates and times as the user's locale (LC_TIME) shows them.
#pragma once

#include "types.h"

struct _SYSTEMTIME {
  WORD wYear;
  WORD wMonth;      // from 1
  WORD wDayOfWeek;  // Sunday is 0
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};
using SYSTEMTIME = _SYSTEMTIME;
using LCID = DWORD;

inline constexpr DWORD DATE_SHORTDATE = 1;
inline constexpr DWORD TIME_NOSECONDS = 2;

// Now, in local time, to the second.
ZP_API void GetLocalTime(SYSTEMTIME * time);

// The short date, and the time without seconds, or with them for flags 0, in at most size - 1 characters and a terminating zero;
// what the code page lacks becomes '?'. The result counts the zero; it is 0, and text stays, for a date or time that doesn't
// exist, years outside 1601 to 30827, and a text that doesn't fit. The day of the week isn't looked at. There is one locale, the
// user's, and no format but the locale's: format is null.
ZP_API int GetDateFormatA(LCID locale, DWORD flags, SYSTEMTIME const * date, char const * format, char * text, int size);
ZP_API int GetTimeFormatA(LCID locale, DWORD flags, SYSTEMTIME const * time, char const * format, char * text, int size);

// The system's own profile: "sShortDate" of the section "intl", the short date pattern of the user's locale such as
// "dd.MM.yyyy". All else is defaultValue, and so is the pattern of a locale without one. Cut to size - 1 characters with a
// terminating zero; the result is their count.
ZP_API DWORD GetProfileStringA(char const * section, char const * key, char const * defaultValue, char * text, DWORD size);
