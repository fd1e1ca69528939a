// Dates, times of day, and what the system is that all this runs on.
#pragma once

#include "platform/facts.h"
#include "platform/runtime.h"
#include "platform/string.h"

struct _SYSTEMTIME;

// A calendar date as it is given, without a check; (0, 0, 0) is the empty date.
class ZP_API DateVals : public CObject {
 public:
  explicit DateVals(int year = 0, int month = 0, int day = 0) : m_nYear(year), m_nMonth(month), m_nDay(day) {}

  // At 12:00:00; the day of the week stays as it is.
  void InitSYSTEMTIMEStruct(_SYSTEMTIME & time) const;

  int m_nYear;   // such as 1998
  int m_nMonth;  // 1 to 12
  int m_nDay;    // 1 to 31
};

// A time of day as it is given, without a check.
class ZP_API TimeVals : public CObject {
 public:
  explicit TimeVals(int hour = 0, int minute = 0, int second = 0) : m_nHour(hour), m_nMinute(minute), m_nSecond(second) {}

  // On 5 September 1998; the day of the week stays as it is.
  void InitSYSTEMTIMEStruct(_SYSTEMTIME & time) const;

  int m_nHour;  // 0 to 23
  int m_nMinute;
  int m_nSecond;
};

// Comparisons, and the weeks and months below, first normalise a date: 31 April is 1 May. They raise COleException: 0x80004005
// for a year below 1900 and fields that no month, day or clock has, such as those of the empty date; 0x80070057 for a date
// outside 1970 to 3000, given or reached.
ZP_API int operator==(DateVals const & a, DateVals const & b);
ZP_API int operator!=(DateVals const & a, DateVals const & b);
ZP_API int operator<(DateVals const & a, DateVals const & b);
ZP_API int operator>(DateVals const & a, DateVals const & b);
ZP_API int operator<=(DateVals const & a, DateVals const & b);
ZP_API int operator>=(DateVals const & a, DateVals const & b);
ZP_API int operator==(TimeVals const & a, TimeVals const & b);
ZP_API int operator!=(TimeVals const & a, TimeVals const & b);
ZP_API int operator<(TimeVals const & a, TimeVals const & b);
ZP_API int operator>(TimeVals const & a, TimeVals const & b);
ZP_API int operator<=(TimeVals const & a, TimeVals const & b);
ZP_API int operator>=(TimeVals const & a, TimeVals const & b);

// Now, in local time; as text in the user's locale, short dates and times without seconds. A given date or time that doesn't
// exist leaves the text as it was.
ZP_API void GetSystemDate(DateVals & date);
ZP_API void GetSystemDate(CString & text);
ZP_API void GetUserDate(CString & text, DateVals const & date);
ZP_API void GetSystemTime(TimeVals & time);
ZP_API void GetSystemTime(CString & text);
ZP_API void GetUserTime(CString & text, TimeVals const & time);

// A date as the user types it: the first three numbers of the text in the order of the short date pattern, which is found once a
// process. Years below 70 are of the 2000s, 70 to 99 of the 1900s. 1, also for the empty text and date; 0, and the empty date,
// if there is no such date from 1970 to 3000.
ZP_API int ParseDateString(DateVals & date, CString const & text);

// The Monday of the date's week; with a flag, of the week before for Monday to Wednesday. Then the date six days on.
ZP_API void GetStartOfWeek(DateVals & out, DateVals const & date, int flag);
ZP_API void GetEndOfWeek(DateVals & out, DateVals const & date);

// The first day of the month that the date, or with a flag the one a week before, is in. Then the last day of the month that the
// date names; it is told by the day behind it, so December 3000 raises the exception of a date out of range.
ZP_API void GetStartOfMonth(DateVals & out, DateVals const & date, int flag);
ZP_API void GetEndOfMonth(DateVals & out, DateVals const & date);

// Days since 1 January 1970; one more from 2101 on. 0 for the empty date and for dates outside 1970 to 3000.
ZP_API long GetJulianDate(DateVals const & date);

// The system's version, asked anew by every object. If it isn't known, the platform's id is 0.
class ZP_API COSVersionInfo : public OSVERSIONINFOA {
 public:
  COSVersionInfo();
};

ZP_API int OSIsWin32s();  // each 1 for its platform id 0, 1 or 2
ZP_API int OSIsWin95();
ZP_API int OSIsWinNT();
ZP_API unsigned long GetOSPlatformID();
ZP_API unsigned long GetOSMajorVersion();
ZP_API unsigned long GetOSMinorVersion();

// Such as "Windows NT - Version 6:1:7601", and the text of the service pack.
ZP_API void GetOSVersionString(CString & text);
ZP_API void GetOSModsString(CString & text);

// The name of a language identifier, padded with blanks to 25 characters, or "Unknown"; the result is its length.
ZP_API unsigned long VerLanguageNameA(unsigned long language, CString & name);
ZP_API int GetOSLanguage(CString & name);  // the system's

// The locale of dates and times, found once a process.
ZP_API unsigned long GetCurLCID();

namespace zp {

// Makes the next ParseDateString find the order of the fields anew.
ZP_API void ForgetDateOrder();

}  // namespace zp
