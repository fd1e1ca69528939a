// Reading numbers from text by the rules of the C locale. A real number's digits are gathered in one pass, eight at a time;
// most values are then exact in one operation, the others go through the standard library, and only what atof alone accepts
// (hexadecimal, infinities, NaNs) or what leaves the range of doubles goes to the host's strtod.
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
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

constexpr uint64_t integerPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

// The next eight characters, the first in the low byte, digits as 0 to 9.
uint64_t loadEight(char const * p)
{
  uint64_t bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  if constexpr (std::endian::native == std::endian::big) bytes = __builtin_bswap64(bytes);
  return bytes ^ 0x3030303030303030;
}

int leadingDigits(uint64_t eight)
{
  uint64_t const others = ((eight + 0x7676767676767676) | eight) & 0x8080808080808080;
  return others == 0 ? 8 : std::countr_zero(others) >> 3;
}

// The number that the first count of the eight digits make: pairs, then fours, then all, each step in one multiplication.
uint64_t valueOf(uint64_t eight, int count)
{
  int const half = 4 * (8 - count);
  uint64_t digits = eight << half << half;
  digits = digits * 10 + (digits >> 8);
  constexpr uint64_t mask = 0x000000FF000000FF;
  return ((digits & mask) * 0x000F424000000064 + ((digits >> 16) & mask) * 0x0000271000000001) >> 32;
}

// Takes the digits at p into mantissa, which wraps when there are too many of them.
char const * gatherDigits(char const * p, char const * last, uint64_t & mantissa)
{
  while (last - p >= 8) {
    uint64_t const eight = loadEight(p);
    int const count = leadingDigits(eight);
    mantissa = mantissa * integerPowers[count] + valueOf(eight, count);
    p += count;
    if (count < 8) return p;
  }
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
  if (exponent <= 0 && exponent >= -maxExactPower) return static_cast<double>(mantissa) / exactPowers[-exponent];
  if (exponent > 0 && exponent <= maxExactPower) return static_cast<double>(mantissa) * exactPowers[exponent];
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
