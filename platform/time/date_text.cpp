// Dates and times as the user's locale shows them, and the local time.

#include <zpbase/platform/time.h>

#include <langinfo.h>

#include <chrono>
#include <cstring>
#include <ctime>
#include <string>

#include <zpbase/platform/encoding.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/string.h>

#include "platform/time/locale_formats_internal.h"
#include "platform/time/user_locale_internal.h"

namespace {

constexpr size_t maxShown = 256;  // bytes of a date or time in the locale's own encoding

bool isDate(SYSTEMTIME const & date)
{
  if (date.wYear < 1601 || date.wYear > 30827 || date.wMonth > 12 || date.wDay > 31) return false;
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

// Length of the UTF-8 sequence that begins with lead; 1 for a byte that begins none.
size_t sequenceLength(unsigned char lead)
{
  return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
}

CString textOf(std::string_view shown, std::string_view codeset)
{
  bool const isUtf8 = codeset == "UTF-8";
  bool const isLatin = codeset == "ISO-8859-1" || codeset == "CP1252";
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

// The result of the published operations: the characters with their zero, or 0.
int show(locale_t locale, std::string const & format, std::tm const & fields, char * out, int size)
{
  char shown[maxShown];
  size_t length = strftime_l(shown, sizeof shown, format.c_str(), &fields, locale);
  while (length > 0 && shown[length - 1] == ' ') --length;  // where a locale has no word for the half of the day
  CString const text = textOf({shown, length}, nl_langinfo_l(_NL_TIME_CODESET, locale));
  if (length == 0 || text.GetLength() >= size) return 0;
  std::memcpy(out, text.GetString(), static_cast<size_t>(text.GetLength()) + 1);
  return text.GetLength() + 1;
}

}  // namespace

void GetLocalTime(SYSTEMTIME * time)
{
  std::tm fields{};
  zp::GetHostCalls().LocalTime(zp::GetHostCalls().WallClock().seconds, fields);
  *time = {static_cast<WORD>(fields.tm_year + 1900), static_cast<WORD>(fields.tm_mon + 1),
           static_cast<WORD>(fields.tm_wday),        static_cast<WORD>(fields.tm_mday),
           static_cast<WORD>(fields.tm_hour),        static_cast<WORD>(fields.tm_min),
           static_cast<WORD>(fields.tm_sec),         0};
}

int GetDateFormatA(LCID, DWORD, SYSTEMTIME const * date, char const *, char * text, int size)
{
  zp::Locale const locale = zp::UserLocale(LC_TIME_MASK);
  if (!locale || !isDate(*date)) return 0;
  return show(locale.get(), zp::ShortDateFormat(locale.get()), brokenDown(*date), text, size);
}

int GetTimeFormatA(LCID, DWORD flags, SYSTEMTIME const * time, char const *, char * text, int size)
{
  zp::Locale const locale = zp::UserLocale(LC_TIME_MASK);
  if (!locale || !isTime(*time)) return 0;
  return show(locale.get(), zp::TimeFormat(locale.get(), (flags & TIME_NOSECONDS) == 0), brokenDown(*time), text, size);
}
