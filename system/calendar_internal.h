// Days on the calendar, the same in every time zone: a date stands for its noon, which no change of clocks moves off its day.

#pragma once

#include <zpbase/platform/types.h>
#include <zpbase/system.h>

namespace zp {

inline constexpr int firstYear = 1970;
inline constexpr int lastYear = 3000;

// Days since 1 January 1970 of a date, normalised. Raises as the comparisons do.
LONGLONG DayNumber(DateVals const & date);
void SetDayNumber(DateVals & date, LONGLONG day);

// Seconds since midnight. Raises for fields that no clock has.
int SecondOfDay(TimeVals const & time);

// Sunday is 0.
int Weekday(LONGLONG day);

// True for a date of the years that can be told.
bool IsDate(int year, int month, int day);

}  // namespace zp
