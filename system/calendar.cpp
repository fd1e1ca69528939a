// The calendar below the operations on dates.

#include "system/calendar_internal.h"

#include <chrono>

#include <zpbase/platform/automation.h>
#include <zpbase/platform/exceptions.h>

namespace zp {
namespace {

using namespace std::chrono;

constexpr int firstYearOfFields = 1900;

bool isBetween(int value, int low, int high)
{
  return value >= low && value <= high;
}

sys_days daysOf(DateVals const & date)
{
  return sys_days(year(date.m_nYear) / month(static_cast<unsigned>(date.m_nMonth)) / 1) + days(date.m_nDay - 1);
}

void requireInRange(sys_days place)
{
  if (!isBetween(static_cast<int>(year_month_day(place).year()), firstYear, lastYear)) AfxThrowOleException(E_INVALIDARG);
}

}  // namespace

LONGLONG DayNumber(DateVals const & date)
{
  if (date.m_nYear < firstYearOfFields || !isBetween(date.m_nMonth, 1, 12) || !isBetween(date.m_nDay, 1, 31))
    AfxThrowOleException(E_FAIL);
  if (date.m_nYear > lastYear) AfxThrowOleException(E_INVALIDARG);
  sys_days const place = daysOf(date);
  requireInRange(place);
  return place.time_since_epoch().count();
}

void SetDayNumber(DateVals & date, LONGLONG day)
{
  sys_days const place{days(day)};
  requireInRange(place);
  year_month_day const fields(place);
  date = DateVals(static_cast<int>(fields.year()), static_cast<int>(static_cast<unsigned>(fields.month())),
                  static_cast<int>(static_cast<unsigned>(fields.day())));
}

int SecondOfDay(TimeVals const & time)
{
  if (!isBetween(time.m_nHour, 0, 23) || !isBetween(time.m_nMinute, 0, 59) || !isBetween(time.m_nSecond, 0, 59))
    AfxThrowOleException(E_FAIL);
  return (time.m_nHour * 60 + time.m_nMinute) * 60 + time.m_nSecond;
}

int Weekday(LONGLONG day)
{
  return static_cast<int>(weekday(sys_days(days(day))).c_encoding());
}

bool IsDate(int y, int m, int d)
{
  if (!isBetween(y, firstYear, lastYear) || !isBetween(m, 1, 12) || !isBetween(d, 1, 31)) return false;
  return (year(y) / month(static_cast<unsigned>(m)) / day(static_cast<unsigned>(d))).ok();
}

}  // namespace zp
