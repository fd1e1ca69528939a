// Reading numbers from text by the rules of the C locale. A real number's digits are gathered in one pass; most values are then
// exact in one operation, and the nearest double to the others is told by what was gathered. More than 19 digits may need the
// standard library, and what atof alone accepts (hexadecimal, infinities, NaNs) needs the host.

#include <zpbase/platform/number_text.h>

#include <locale.h>
#include <stdlib.h>

#include <charconv>
#include <cstdint>
#include <string>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/number_reader.h>

#include "platform/string/decimal_internal.h"

namespace zp {

namespace {

constexpr ptrdiff_t maxGatheredDigits = 19;  // as many as 64 bits always hold

bool belongsToSpecial(char c)
{
  return IsDigit(c) || IsLetter(c) || c == '.' || c == '+' || c == '-' || c == '(' || c == ')' || c == '_';
}

// What the host makes of the unsigned number at p; an end of p where there is none.
NumberText hostValue(char const * p, char const * last)
{
  static locale_t const cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char const * stop = p;
  while (stop != last && belongsToSpecial(*stop)) ++stop;
  std::string const copy(p, stop);
  char * copyEnd = nullptr;
  double const value = strtod_l(copy.c_str(), &copyEnd, cLocale);
  return {value, p + (copyEnd - copy.c_str())};
}

// The first digits that count of those from p to end, as many as 64 bits hold, in mantissa; exponent, that of the last digit,
// becomes theirs. False if a digit that was left out isn't 0.
bool takeLeadingDigits(char const * p, char const * end, uint64_t & mantissa, int64_t & exponent)
{
  ptrdiff_t digits = 0;
  bool isAll = true;
  for (; p != end && (*p == '.' || IsDigit(*p)); ++p) {
    if (*p == '.' || (*p == '0' && digits == 0)) continue;
    if (digits < maxGatheredDigits) {
      mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
      ++digits;
    } else {
      isAll = isAll && *p == '0';
      ++exponent;
    }
  }
  return isAll;
}

// The number from p to end, which has more digits than 64 bits surely hold. Those left out decide where the leading ones lie
// within them of the middle between two doubles.
double valueOfMany(char const * p, int64_t exponent, char const * end)
{
  uint64_t mantissa = 0;
  bool const isAll = takeLeadingDigits(p, end, mantissa, exponent);
  double const value = NearestDouble(mantissa, exponent);
  if (isAll || value == NearestDouble(mantissa + 1, exponent)) return value;
  double exact = 0.0;
  if (std::from_chars(p, end, exact).ec == std::errc()) return exact;
  return hostValue(p, end).value;
}

// The unsigned number at p, whose first character is the point.
NumberText fraction(char const * p, ViewEnd end)
{
  uint64_t mantissa = 0;
  char const * q = detail::gatherDigits(p + 1, end, mantissa);
  if (q == p + 1) return {0.0, p};
  bool const isMany = q - p > maxGatheredDigits;
  int64_t exponent = p + 1 - q;
  if (!end.IsAt(q) && (*q | 0x20) == 'e') q = detail::gatherExponent(q, end, exponent);
  return {isMany ? valueOfMany(p, exponent, q) : NearestDouble(mantissa, exponent), q};
}

// The unsigned number at p, which no digit begins or which looks hexadecimal; an end of p where there is none.
NumberText specialNumber(char const * p, char const * last)
{
  if (p == last) return {0.0, p};
  if (*p == '.') return fraction(p, ViewEnd{last});
  bool const mayBeSpecial = *p == '0' || (*p | 0x20) == 'i' || (*p | 0x20) == 'n';
  return mayBeSpecial ? hostValue(p, last) : NumberText{0.0, p};
}

bool looksHexadecimal(Decimal const & decimal, char const * last)
{
  return decimal.length == 1 && decimal.mantissa == 0 && decimal.end != last && (*decimal.end | 0x20) == 'x';
}

NumberText unsignedNumber(char const * p, char const * last, Decimal const & decimal)
{
  if (decimal.length == 0 || looksHexadecimal(decimal, last)) return specialNumber(p, last);
  bool const isMany = decimal.length > maxGatheredDigits;
  return {isMany ? valueOfMany(p, decimal.exponent, decimal.end) : NearestDouble(decimal.mantissa, decimal.exponent),
          decimal.end};
}

}  // namespace

NumberText FinishNumber(char const * first, char const * last, Decimal decimal)
{
  if (first == last) return {0.0, first};
  char const * const p = first + (*first == '-' || *first == '+');
  NumberText const number = unsignedNumber(p, last, decimal);
  if (number.end == p) return {0.0, first};
  return {*first == '-' ? -number.value : number.value, number.end};
}

double TextToDouble(std::string_view text, size_t * used)
{
  char const * first = text.data();
  ViewEnd const end{first + text.size()};
  while (!end.IsAt(first) && IsWhite(*first)) ++first;
  Decimal const decimal = GatherDecimal(first, end);
  NumberText const number =
      decimal.isExact ? NumberText{ExactValue(first, decimal), decimal.end} : FinishNumber(first, end.last, decimal);
  if (used != nullptr) *used = number.end == first ? 0 : static_cast<size_t>(number.end - text.data());
  return number.value;
}

int TextToInt(std::string_view text)
{
  char const * p = text.data();
  char const * const last = p + text.size();
  while (p != last && IsWhite(*p)) ++p;
  bool const negative = p != last && *p == '-';
  if (p != last && (*p == '-' || *p == '+')) ++p;
  uint32_t value = 0;
  for (; p != last && IsDigit(*p); ++p) value = value * 10 + static_cast<uint32_t>(*p - '0');
  return static_cast<int>(negative ? 0 - value : value);
}

}  // namespace zp
