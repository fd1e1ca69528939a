// The user's formats of dates and times, in the fields that the published formatting has.

#pragma once

#include <locale.h>

#include <string>

namespace zp {

// For strftime: day, month and year as numbers in the locale's order, between its separators. "%m/%d/%y" for a locale whose date
// has other fields. Literal text is in the locale's own encoding.
std::string ShortDateFormat(locale_t locale);

// The same in the published letters, such as "dd.MM.yyyy", in ASCII: words between fields are one '/'.
std::string ShortDatePicture(locale_t locale);

// For strftime: the time of day, without a zone.
std::string TimeFormat(locale_t locale, bool withSeconds);

}  // namespace zp
