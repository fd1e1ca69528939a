// Turns the C library's formats of a locale into those of a short date and of a time of day: numbers alone, neither weekday nor
// zone.

#include "platform/time/locale_formats_internal.h"

#include <langinfo.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include <zpbase/platform/ascii.h>

namespace zp {
namespace {

constexpr char const * usualDate = "%m/%d/%y";

// A conversion with its flags ("%-d"), or the text between two, for which the letter is 0.
struct Part {
  char letter;
  std::string text;
};
using Parts = std::vector<Part>;

void replaceAll(std::string & text, std::string_view what, std::string_view by)
{
  for (size_t place = 0; (place = text.find(what, place)) != std::string::npos; place += by.size())
    text.replace(place, what.size(), by);
}

// The E and O of other calendars and digits are left out.
Parts partsOf(std::string_view format)
{
  Parts parts;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      if (parts.empty() || parts.back().letter != 0) parts.push_back({0, {}});
      parts.back().text += format[i];
      continue;
    }
    Part part{0, "%"};
    for (++i; i < format.size() && std::string_view("-_0EO").find(format[i]) != std::string_view::npos; ++i)
      if (format[i] != 'E' && format[i] != 'O') part.text += format[i];
    if (i == format.size()) break;
    part.letter = format[i];
    part.text += format[i];
    parts.push_back(std::move(part));
  }
  return parts;
}

std::string textOf(Parts const & parts)
{
  std::string text;
  for (Part const & part : parts) text += part.text;
  return text;
}

bool isText(Parts const & parts, size_t place)
{
  return place < parts.size() && parts[place].letter == 0;
}

bool isFieldOf(Part const & part, std::string_view letters)
{
  return part.letter != 0 && letters.find(part.letter) != std::string_view::npos;
}

void trimEnd(std::string & text, std::string_view what)
{
  text.erase(text.find_last_not_of(what) + 1);
}

// Takes out the fields of those letters: with the text behind them, or of one at the end with the blanks in front of it.
void takeOut(Parts & parts, std::string_view letters)
{
  for (size_t i = 0; i < parts.size();) {
    if (!isFieldOf(parts[i], letters)) {
      ++i;
      continue;
    }
    size_t const count = isText(parts, i + 1) ? 2 : 1;
    bool const isLast = i + count == parts.size();
    parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(i), parts.begin() + static_cast<std::ptrdiff_t>(i + count));
    if (isLast && i > 0) trimEnd(parts.back().text, " (,");
  }
}

// No number is padded with a blank.
void dropBlanks(Parts & parts)
{
  for (Part & part : parts) {
    if (part.letter == 'e') part = {'d', "%-d"};
    if (part.letter == 'k') part = {'H', "%-H"};
    if (part.letter == 'l') part = {'I', "%-I"};
  }
}

// Names of months become their numbers, which need something between them and the next field.
void useNumbers(Parts & parts)
{
  for (Part & part : parts)
    if (isFieldOf(part, "bBh")) part = {'m', "%m"};
  for (size_t i = 1; i < parts.size(); ++i)
    if (!isText(parts, i - 1) && !isText(parts, i)) parts.insert(parts.begin() + static_cast<std::ptrdiff_t>(i), {0, "/"});
}

bool hasEachFieldOnce(Parts const & parts)
{
  auto const count = [&parts](std::string_view letters) {
    return std::count_if(parts.begin(), parts.end(), [letters](Part const & part) { return isFieldOf(part, letters); });
  };
  auto const fields = std::count_if(parts.begin(), parts.end(), [](Part const & part) { return part.letter != 0; });
  return fields == 3 && count("d") == 1 && count("m") == 1 && count("yY") == 1;
}

Parts shortDateParts(locale_t locale)
{
  std::string format = nl_langinfo_l(D_FMT, locale);
  replaceAll(format, "%D", "%m/%d/%y");
  replaceAll(format, "%F", "%Y-%m-%d");
  replaceAll(format, "%OC%Oy", "%Y");
  Parts parts = partsOf(format);
  takeOut(parts, "aA");
  useNumbers(parts);
  dropBlanks(parts);
  return hasEachFieldOnce(parts) ? parts : partsOf(usualDate);
}

bool isWordCharacter(char c)
{
  return static_cast<unsigned char>(c) >= 0x80 || IsLetter(c);
}

bool hasWord(std::string_view text)
{
  return std::any_of(text.begin(), text.end(), &isWordCharacter);
}

char const * pictureOf(Part const & field)
{
  bool const padded = field.text.size() == 2;
  if (field.letter == 'd') return padded ? "dd" : "d";
  if (field.letter == 'm') return padded ? "MM" : "M";
  return field.letter == 'y' ? "yy" : "yyyy";
}

// Takes "%S" out with the separator in front of it, or where fields have marks behind them ("%Hh%Mm%Ss") with its mark.
void takeOutSeconds(Parts & parts)
{
  auto const found = std::find_if(parts.begin(), parts.end(), [](Part const & part) { return part.letter == 'S'; });
  if (found == parts.end()) return;
  auto const place = static_cast<size_t>(found - parts.begin());
  bool const marked = place > 0 && isText(parts, place - 1) && hasWord(parts[place - 1].text);
  bool const hasMark = marked && isText(parts, place + 1);
  bool const hasSeparator = !marked && place > 1 && isText(parts, place - 1);
  if (hasMark) {
    std::string & mark = parts[place + 1].text;
    mark.erase(0, std::min(mark.find(' '), mark.size()));
  }
  parts.erase(found - (hasSeparator ? 1 : 0), found + 1);
}

// Hours of 24, for a locale that has no words for the halves of the day.
void useWholeDay(Parts & parts)
{
  for (Part & part : parts)
    if (isFieldOf(part, "I")) part = {'H', "%H"};
}

}  // namespace

std::string ShortDateFormat(locale_t locale)
{
  return textOf(shortDateParts(locale));
}

std::string ShortDatePicture(locale_t locale)
{
  Parts const parts = shortDateParts(locale);
  std::string picture;
  for (Part const & part : parts) {
    bool const atEdge = &part == &parts.front() || &part == &parts.back();
    if (part.letter != 0)
      picture += pictureOf(part);
    else if (!hasWord(part.text))
      picture += part.text;
    else if (!atEdge)
      picture += '/';
  }
  return picture;
}

std::string TimeFormat(locale_t locale, bool withSeconds)
{
  std::string format = nl_langinfo_l(T_FMT, locale);
  char const * const halfDays = nl_langinfo_l(T_FMT_AMPM, locale);
  replaceAll(format, "%r", *halfDays != '\0' ? halfDays : "%I:%M:%S %p");
  replaceAll(format, "%T", "%H:%M:%S");
  Parts parts = partsOf(format);
  takeOut(parts, "zZ");
  dropBlanks(parts);
  if (!withSeconds) takeOutSeconds(parts);
  if (*nl_langinfo_l(PM_STR, locale) == '\0') useWholeDay(parts);
  return textOf(parts);
}

}  // namespace zp
