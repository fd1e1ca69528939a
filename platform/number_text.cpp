// Reading numbers from text by the rules of the C locale. A real number's digits are gathered in one pass; most values are then
// exact in one operation, the others go through the standard library, and only what atof alone accepts (hexadecimal, infinities,
// NaNs) or what leaves the range of doubles goes to the host's strtod.
#include <charconv>
#include <cstdint>
#include <string>

#include <locale.h>
#include <stdlib.h>

#include <zpbase/platform/string.h>

namespace zp {

namespace {

bool isBlank(char c)
{
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
  return static_cast<unsigned char>(c - '0') < 10;
}

// Powers that a double holds exactly: 10^22 = 2^22 * 5^22, and 5^22 < 2^53.
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int64_t maxExactPower = 22;
constexpr uint64_t maxExactInteger = uint64_t{1} << 53;
constexpr ptrdiff_t maxGatheredDigits = 19;  // as many as 64 bits always hold
constexpr int64_t maxExponent = 1'000'000'000'000'000;

// Takes the digits at p into mantissa, which wraps when there are too many of them. One at a time: the ends of the digits of
// like numbers are foreseen by the processor, which then works on several numbers at once.
inline char const * gatherDigits(char const * p, char const * last, uint64_t & mantissa)
{
  for (; p != last && isDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
  return p;
}

// The exponent behind an 'e' at p, if digits follow; otherwise p stays.
char const * gatherExponent(char const * p, char const * last, int64_t & exponent)
{
  char const * q = p + 1;
  bool const negative = q != last && *q == '-';
  if (q != last && (*q == '-' || *q == '+')) ++q;
  if (q == last || !isDigit(*q)) return p;
  int64_t value = 0;
  for (; q != last && isDigit(*q); ++q) {
    if (value < maxExponent) value = value * 10 + (*q - '0');
  }
  exponent += negative ? -value : value;
  return q;
}

bool belongsToSpecial(char c)
{
  unsigned char const letter = static_cast<unsigned char>((c | 0x20) - 'a');
  return isDigit(c) || letter < 26 || c == '.' || c == '+' || c == '-' || c == '(' || c == ')' || c == '_';
}

// What the host makes of the unsigned number at p; end moves behind it, or to p where there is none.
double hostValue(char const * p, char const * last, char const *& end)
{
  static locale_t const cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char const * stop = p;
  while (stop != last && belongsToSpecial(*stop)) ++stop;
  std::string const copy(p, stop);
  char * copyEnd = nullptr;
  double const value = strtod_l(copy.c_str(), &copyEnd, cLocale);
  end = p + (copyEnd - copy.c_str());
  return value;
}

double libraryValue(char const * p, char const *& end)
{
  double value = 0.0;
  if (std::from_chars(p, end, value).ec == std::errc()) return value;
  return hostValue(p, end, end);
}

bool startsSpecial(char const * p, char const * last)
{
  return p != last && ((*p | 0x20) == 'i' || (*p | 0x20) == 'n');
}

// An integer of at most 2^53; the host converts signed ones faster.
double asDouble(uint64_t mantissa)
{
  return static_cast<double>(static_cast<int64_t>(mantissa));
}

// The unsigned number at p; end moves behind it, or to p where there is none.
double unsignedValue(char const * p, char const * last, char const *& end)
{
  uint64_t mantissa = 0;
  int64_t exponent = 0;
  char const * q = gatherDigits(p, last, mantissa);
  ptrdiff_t digits = q - p;
  if (q != last && *q == '.') {
    char const * const fraction = q + 1;
    q = gatherDigits(fraction, last, mantissa);
    exponent = fraction - q;
    digits += q - fraction;
    if (digits == 0) q = p;
  }
  if (digits == 0) {
    end = p;
    return startsSpecial(p, last) ? hostValue(p, last, end) : 0.0;
  }
  if (q != last && (*q | 0x20) == 'e') q = gatherExponent(q, last, exponent);
  end = q;
  if (q != last && (*q | 0x20) == 'x' && q - p == 1 && mantissa == 0) return hostValue(p, last, end);
  if (digits > maxGatheredDigits || mantissa > maxExactInteger) return libraryValue(p, end);
  if (exponent <= 0 && exponent >= -maxExactPower) return asDouble(mantissa) / exactPowers[-exponent];
  if (exponent > 0 && exponent <= maxExactPower) return asDouble(mantissa) * exactPowers[exponent];
  return libraryValue(p, end);
}

}  // namespace

double TextToDouble(std::string_view text, size_t * used)
{
  char const * const first = text.data();
  char const * const last = first + text.size();
  char const * p = first;
  while (p != last && isBlank(*p)) ++p;
  bool const negative = p != last && *p == '-';
  if (p != last && (*p == '-' || *p == '+')) ++p;
  char const * end = p;
  double const value = unsignedValue(p, last, end);
  if (used != nullptr) *used = end == p ? 0 : static_cast<size_t>(end - first);
  if (end == p) return 0.0;
  return negative ? -value : value;
}

int TextToInt(std::string_view text)
{
  char const * p = text.data();
  char const * const last = p + text.size();
  while (p != last && isBlank(*p)) ++p;
  bool const negative = p != last && *p == '-';
  if (p != last && (*p == '-' || *p == '+')) ++p;
  uint32_t value = 0;
  for (; p != last && isDigit(*p); ++p) value = value * 10 + static_cast<uint32_t>(*p - '0');
  return static_cast<int>(negative ? 0 - value : value);
}

}  // namespace zp
