// Dates and times: their order, their text, now, and the borders of weeks and months.

#include <zpbase/system.h>

#include <zpbase/platform/time.h>

#include "system/calendar_internal.h"

namespace {

constexpr int maxShown = 100;  // characters, with the terminating zero
constexpr int daysOfWeek = 7;
constexpr int flaggedThreshold = 3;  // Monday to Wednesday

using ShowFunction = int (*)(LCID, DWORD, SYSTEMTIME const *, char const *, char *, int);

void showWith(ShowFunction show, DWORD flags, SYSTEMTIME const & time, CString & text)
{
  char shown[maxShown];
  if (show(static_cast<LCID>(GetCurLCID()), flags, &time, nullptr, shown, maxShown) > 0) text = shown;
}

SYSTEMTIME now()
{
  SYSTEMTIME time;
  GetLocalTime(&time);
  return time;
}

}  // namespace

void DateVals::InitSYSTEMTIMEStruct(_SYSTEMTIME & time) const
{
  time.wYear = static_cast<WORD>(m_nYear);
  time.wMonth = static_cast<WORD>(m_nMonth);
  time.wDay = static_cast<WORD>(m_nDay);
  time.wHour = 12;
  time.wMinute = time.wSecond = time.wMilliseconds = 0;
}

void TimeVals::InitSYSTEMTIMEStruct(_SYSTEMTIME & time) const
{
  time.wYear = 1998;
  time.wMonth = 9;
  time.wDay = 5;
  time.wHour = static_cast<WORD>(m_nHour);
  time.wMinute = static_cast<WORD>(m_nMinute);
  time.wSecond = static_cast<WORD>(m_nSecond);
  time.wMilliseconds = 0;
}

int operator==(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) == zp::DayNumber(b);
}

int operator!=(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) != zp::DayNumber(b);
}

int operator<(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) < zp::DayNumber(b);
}

int operator>(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) > zp::DayNumber(b);
}

int operator<=(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) <= zp::DayNumber(b);
}

int operator>=(DateVals const & a, DateVals const & b)
{
  return zp::DayNumber(a) >= zp::DayNumber(b);
}

int operator==(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) == zp::SecondOfDay(b);
}

int operator!=(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) != zp::SecondOfDay(b);
}

int operator<(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) < zp::SecondOfDay(b);
}

int operator>(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) > zp::SecondOfDay(b);
}

int operator<=(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) <= zp::SecondOfDay(b);
}

int operator>=(TimeVals const & a, TimeVals const & b)
{
  return zp::SecondOfDay(a) >= zp::SecondOfDay(b);
}

void GetSystemDate(DateVals & date)
{
  SYSTEMTIME const time = now();
  date = DateVals(time.wYear, time.wMonth, time.wDay);
}

void GetSystemDate(CString & text)
{
  showWith(&GetDateFormatA, DATE_SHORTDATE, now(), text);
}

void GetUserDate(CString & text, DateVals const & date)
{
  SYSTEMTIME time{};
  date.InitSYSTEMTIMEStruct(time);
  showWith(&GetDateFormatA, DATE_SHORTDATE, time, text);
}

void GetSystemTime(TimeVals & time)
{
  SYSTEMTIME const moment = now();
  time = TimeVals(moment.wHour, moment.wMinute, moment.wSecond);
}

void GetSystemTime(CString & text)
{
  showWith(&GetTimeFormatA, TIME_NOSECONDS, now(), text);
}

void GetUserTime(CString & text, TimeVals const & time)
{
  SYSTEMTIME moment{};
  time.InitSYSTEMTIMEStruct(moment);
  showWith(&GetTimeFormatA, TIME_NOSECONDS, moment, text);
}

void GetStartOfWeek(DateVals & out, DateVals const & date, int flag)
{
  LONGLONG const day = zp::DayNumber(date);
  int back = zp::Weekday(day) - 1;
  if (back < (flag != 0 ? flaggedThreshold : 0)) back += daysOfWeek;
  zp::SetDayNumber(out, day - back);
}

void GetEndOfWeek(DateVals & out, DateVals const & date)
{
  zp::SetDayNumber(out, zp::DayNumber(date) + daysOfWeek - 1);
}

void GetStartOfMonth(DateVals & out, DateVals const & date, int flag)
{
  DateVals within;
  zp::SetDayNumber(within, zp::DayNumber(date) - (flag != 0 ? daysOfWeek : 0));
  out = DateVals(within.m_nYear, within.m_nMonth, 1);
}

void GetEndOfMonth(DateVals & out, DateVals const & date)
{
  zp::DayNumber(date);  // raises for fields that are no date
  bool const isDecember = date.m_nMonth == 12;
  DateVals const next(isDecember ? date.m_nYear + 1 : date.m_nYear, isDecember ? 1 : date.m_nMonth + 1, 1);
  zp::SetDayNumber(out, zp::DayNumber(next) - 1);
}
