// Dates and times as the user's locale shows them, and the local time.

#include <zpbase/platform/time.h>

#include <langinfo.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <ctime>
#include <string>

#include <zpbase/platform/string.h>

#include "platform/user_locale_internal.h"

namespace {

constexpr size_t maxShown = 256;  // bytes of a date or time in the locale's own encoding

bool isDate(SYSTEMTIME const & date)
{
  if (date.wYear < 1601 || date.wYear > 30827) return false;
  return std::chrono::year_month_day(std::chrono::year(date.wYear), std::chrono::month(date.wMonth), std::chrono::day(date.wDay))
      .ok();
}

bool isTime(SYSTEMTIME const & time)
{
  return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60;
}

std::tm brokenDown(SYSTEMTIME const & time)
{
  std::tm fields{};
  fields.tm_year = time.wYear - 1900;
  fields.tm_mon = time.wMonth - 1;
  fields.tm_mday = time.wDay;
  fields.tm_hour = time.wHour;
  fields.tm_min = time.wMinute;
  fields.tm_sec = time.wSecond;
  return fields;
}

// Only for a date that exists.
void addDays(std::tm & fields)
{
  using namespace std::chrono;
  year_month_day const date(year(fields.tm_year + 1900), month(static_cast<unsigned>(fields.tm_mon + 1)),
                            day(static_cast<unsigned>(fields.tm_mday)));
  fields.tm_wday = static_cast<int>(weekday(sys_days(date)).c_encoding());
  fields.tm_yday = static_cast<int>((sys_days(date) - sys_days(date.year() / January / 1)).count());
}

// Length of the UTF-8 sequence that begins with lead; 1 for a byte that begins none.
size_t sequenceLength(unsigned char lead)
{
  return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}

CString textOf(std::string_view shown, std::string_view codeset)
{
  bool const isUtf8 = codeset == "UTF-8";
  bool const isLatin = codeset.starts_with("ISO-8859-1") || codeset == "CP1252";
  CString text;
  for (size_t i = 0; i < shown.size();) {
    size_t const length = isUtf8 ? sequenceLength(static_cast<unsigned char>(shown[i])) : 1;
    CString character;
    if (isUtf8 || !isLatin) {
      if (!zp::Utf8ToText(shown.substr(i, length), character)) character = "?";
    } else {
      character = shown[i];
    }
    text += character;
    i += length;
  }
  return text;
}

// Takes "%S" out of a time format: with the separator in front of it, or in a format that marks its fields behind them
// ("%Hh%Mm%Ss") with the mark behind it.
std::string withoutSeconds(std::string format)
{
  size_t const seconds = format.find("%S");
  if (seconds == std::string::npos) return format;
  size_t const behind = seconds + 2;
  size_t const markEnd = std::min(format.find_first_of(" %", behind), format.size());
  if (markEnd > behind) return format.erase(seconds, markEnd - seconds);
  size_t const field = seconds > 0 ? format.rfind('%', seconds - 1) : std::string::npos;
  size_t const separator = field == std::string::npos ? 0 : std::min(field + 2, seconds);
  return format.erase(separator, behind - separator);
}

void replaceAll(std::string & text, std::string_view what, std::string_view by)
{
  for (size_t place = 0; (place = text.find(what, place)) != std::string::npos; place += by.size())
    text.replace(place, what.size(), by);
}

std::string timeFormat(locale_t locale, DWORD flags)
{
  std::string format = nl_langinfo_l(T_FMT, locale);
  char const * const halfDays = nl_langinfo_l(T_FMT_AMPM, locale);
  replaceAll(format, "%r", *halfDays != '\0' ? halfDays : "%I:%M:%S %p");
  replaceAll(format, "%T", "%H:%M:%S");
  return (flags & TIME_NOSECONDS) != 0 ? withoutSeconds(format) : format;
}

// The result of the published operations: the characters with their zero, or 0.
int show(locale_t locale, std::string const & format, std::tm const & fields, char * out, int size)
{
  char shown[maxShown];
  size_t const length = strftime_l(shown, sizeof shown, format.c_str(), &fields, locale);
  CString const text = textOf({shown, length}, nl_langinfo_l(_NL_TIME_CODESET, locale));
  if (length == 0 || text.GetLength() >= size) return 0;
  std::memcpy(out, text.GetString(), static_cast<size_t>(text.GetLength()) + 1);
  return text.GetLength() + 1;
}

}  // namespace

void GetLocalTime(SYSTEMTIME * time)
{
  auto const seconds = static_cast<std::time_t>(zp::GetClockCalls().WallSeconds());
  std::tm fields{};
  tzset();
  localtime_r(&seconds, &fields);
  *time = {static_cast<WORD>(fields.tm_year + 1900), static_cast<WORD>(fields.tm_mon + 1),
           static_cast<WORD>(fields.tm_wday),        static_cast<WORD>(fields.tm_mday),
           static_cast<WORD>(fields.tm_hour),        static_cast<WORD>(fields.tm_min),
           static_cast<WORD>(fields.tm_sec),         0};
}

int GetDateFormatA(LCID, DWORD, SYSTEMTIME const * date, char const *, char * text, int size)
{
  zp::Locale const locale = zp::UserLocale(LC_TIME_MASK);
  if (!locale || !isDate(*date)) return 0;
  std::tm fields = brokenDown(*date);
  addDays(fields);
  return show(locale.get(), "%x", fields, text, size);
}

int GetTimeFormatA(LCID, DWORD flags, SYSTEMTIME const * time, char const *, char * text, int size)
{
  zp::Locale const locale = zp::UserLocale(LC_TIME_MASK);
  if (!locale || !isTime(*time)) return 0;
  return show(locale.get(), timeFormat(locale.get(), flags), brokenDown(*time), text, size);
}
