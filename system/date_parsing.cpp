// Dates as the user types them, and the serial day number.

#include <zpbase/system.h>

#include <algorithm>
#include <array>
#include <chrono>

#include <zpbase/config.h>
#include <zpbase/platform/number_text.h>
#include <zpbase/text.h>

#include "system/calendar_internal.h"

namespace {

enum Field : size_t { Year, Month, Day };
using FieldOrder = std::array<Field, 3>;

constexpr FieldOrder usualOrder = {Month, Day, Year};

FieldOrder g_Order = usualOrder;
bool g_bOrderFound = false;

bool isFieldLetter(char c)
{
  return std::string_view("DdMmYy").find(c) != std::string_view::npos;
}

Field fieldOf(char letter)
{
  if (letter == 'D' || letter == 'd') return Day;
  return letter == 'M' || letter == 'm' ? Month : Year;
}

// The order of the runs of letters in the pattern; the usual one if it doesn't tell all three fields.
FieldOrder orderOf(std::string_view pattern)
{
  FieldOrder order{};
  auto place = pattern.begin();
  for (Field & field : order) {
    place = std::find_if(place, pattern.end(), &isFieldLetter);
    if (place == pattern.end()) return usualOrder;
    field = fieldOf(*place);
    place = std::find_if_not(place, pattern.end(), &isFieldLetter);
  }
  bool const allDiffer = order[0] != order[1] && order[0] != order[2] && order[1] != order[2];
  return allDiffer ? order : usualOrder;
}

FieldOrder const & dateOrder()
{
  if (!g_bOrderFound) {
    g_Order = orderOf(GetShortDateFormat().View());
    g_bOrderFound = true;
  }
  return g_Order;
}

// The raised digits of the code page count, as in the text functions.
bool isDigit(char c)
{
  return IsCharDigit(c) != 0;
}

// The first three numbers of the text by their fields; 0 for those that it doesn't reach.
std::array<int, 3> readFields(std::string_view text)
{
  std::array<int, 3> fields{};
  auto place = text.begin();
  for (Field const field : dateOrder()) {
    place = std::find_if(place, text.end(), &isDigit);
    if (place == text.end()) break;
    fields[field] = zp::TextToInt({place, text.end()});
    place = std::find_if_not(place, text.end(), &isDigit);
  }
  return fields;
}

int fullYear(int year)
{
  if (year < 70) return year + 2000;
  return year < 100 ? year + 1900 : year;
}

}  // namespace

int ParseDateString(DateVals & date, CString const & text)
{
  date = DateVals();
  if (text.IsEmpty()) return 1;
  auto const fields = readFields(text.View());
  if (fields[Year] < 0) return 0;  // a number of more than 31 bits
  DateVals const read(fullYear(fields[Year]), fields[Month], fields[Day]);
  if (!zp::IsDate(read.m_nYear, read.m_nMonth, read.m_nDay)) return 0;
  date = read;
  return 1;
}

// Leap days are those of every fourth year from 1972, without the rule of centuries.
long GetJulianDate(DateVals const & date)
{
  using namespace std::chrono;
  constexpr LONGLONG manyMonths = LONGLONG{10000} * 12;
  LONGLONG const months = LONGLONG{date.m_nYear} * 12 + date.m_nMonth - 1;
  if (months < 0 || months > manyMonths) return 0;
  sys_days const first(year(static_cast<int>(months / 12)) / month(static_cast<unsigned>(months % 12 + 1)) / 1);
  sys_days const place = first + days(LONGLONG{date.m_nDay} - 1);
  if (place < sys_days(year(zp::firstYear) / January / 1) || place > sys_days(year(zp::lastYear) / December / 31)) return 0;
  int const normalYear = static_cast<int>(year_month_day(place).year());
  int const years = normalYear - zp::firstYear;
  auto const dayOfYear = static_cast<int>((place - sys_days(year(normalYear) / January / 1)).count());
  return years * 365 + (years + 1) / 4 + dayOfYear;
}

namespace zp {

void ForgetDateOrder()
{
  g_bOrderFound = false;
}

}  // namespace zp
