// Reading numbers from text by the rules of the C locale. A real number's digits are gathered in one pass; most values are then
// exact in one operation, the others go through the standard library, and only what atof alone accepts (hexadecimal, infinities,
// NaNs) or what leaves the range of doubles goes to the host's strtod.

#include <zpbase/platform/number_text.h>

#include <locale.h>
#include <stdlib.h>

#include <charconv>
#include <cstdint>
#include <string>

#include <zpbase/platform/ascii.h>

namespace zp {

namespace {

// Powers that a double holds exactly: 10^22 = 2^22 * 5^22, and 5^22 < 2^53.
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int64_t maxExactPower = 22;
constexpr uint64_t maxExactInteger = uint64_t{1} << 53;
constexpr ptrdiff_t maxGatheredDigits = 19;  // as many as 64 bits always hold
constexpr int64_t maxExponent = 1'000'000'000'000'000;

// Where a text ends: behind its view, or at any character that no number has, such as its terminating zero. The second saves a
// comparison for each character.
struct ViewEnd {
  char const * last;
  bool IsAt(char const * p) const { return p == last; }
};
struct TerminatedEnd {
  bool IsAt(char const *) const { return false; }
};

// Takes the digits at p into mantissa, which wraps when there are too many of them. One at a time: the ends of the digits of
// like numbers are foreseen by the processor, which then works on several numbers at once.
template <class End>
inline char const * gatherDigits(char const * p, End end, uint64_t & mantissa)
{
  for (; !end.IsAt(p); ++p) {
    unsigned int const digit = static_cast<unsigned char>(*p) - unsigned{'0'};
    if (digit > 9) break;
    mantissa = mantissa * 10 + digit;
  }
  return p;
}

// The exponent behind an 'e' at p, if digits follow; otherwise p stays.
template <class End>
inline char const * gatherExponent(char const * p, End end, int64_t & exponent)
{
  char const * q = p + 1;
  bool const negative = !end.IsAt(q) && *q == '-';
  if (!end.IsAt(q) && (*q == '-' || *q == '+')) ++q;
  if (end.IsAt(q) || !IsDigit(*q)) return p;
  int64_t value = 0;
  for (; !end.IsAt(q) && IsDigit(*q); ++q) {
    if (value < maxExponent) value = value * 10 + (*q - '0');
  }
  exponent += negative ? -value : value;
  return q;
}

bool belongsToSpecial(char c)
{
  return IsDigit(c) || IsLetter(c) || c == '.' || c == '+' || c == '-' || c == '(' || c == ')' || c == '_';
}

// What the host makes of the unsigned number at p; an end of p where there is none.
template <class End>
[[gnu::noinline]] NumberText hostValue(char const * p, End end)
{
  static locale_t const cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char const * stop = p;
  while (!end.IsAt(stop) && belongsToSpecial(*stop)) ++stop;
  std::string const copy(p, stop);
  char * copyEnd = nullptr;
  double const value = strtod_l(copy.c_str(), &copyEnd, cLocale);
  return {value, p + (copyEnd - copy.c_str())};
}

// The number that is known to stand from p to last.
[[gnu::noinline]] NumberText libraryValue(char const * p, char const * last)
{
  double value = 0.0;
  if (std::from_chars(p, last, value).ec == std::errc()) return {value, last};
  return hostValue(p, ViewEnd{last});
}

// An integer of at most 2^53; the host converts signed ones faster.
double asDouble(uint64_t mantissa)
{
  return static_cast<double>(static_cast<int64_t>(mantissa));
}

// A text without digits: an infinity, a NaN or nothing.
template <class End>
NumberText specialValue(char const * p, End end)
{
  bool const mayBeSpecial = !end.IsAt(p) && ((*p | 0x20) == 'i' || (*p | 0x20) == 'n');
  return mayBeSpecial ? hostValue(p, end) : NumberText{0.0, p};
}

// The unsigned number at p; an end of p where there is none.
template <class End>
inline NumberText unsignedValue(char const * p, End end)
{
  uint64_t mantissa = 0;
  int64_t exponent = 0;
  char const * q = gatherDigits(p, end, mantissa);
  ptrdiff_t digits = q - p;
  if (!end.IsAt(q) && *q == '.') {
    char const * const fraction = q + 1;
    q = gatherDigits(fraction, end, mantissa);
    exponent = fraction - q;
    digits += q - fraction;
  }
  if (digits == 0) return specialValue(p, end);
  if (!end.IsAt(q)) {
    int const letter = *q | 0x20;
    if (letter == 'e') q = gatherExponent(q, end, exponent);
    if (letter == 'x' && q - p == 1 && mantissa == 0) return hostValue(p, end);
  }
  if (digits > maxGatheredDigits || mantissa > maxExactInteger) return libraryValue(p, q);
  if (exponent <= 0 && exponent >= -maxExactPower) return {asDouble(mantissa) / exactPowers[-exponent], q};
  if (exponent > 0 && exponent <= maxExactPower) return {asDouble(mantissa) * exactPowers[exponent], q};
  return libraryValue(p, q);
}

template <class End>
inline NumberText signedValue(char const * first, End end)
{
  char const * p = first;
  while (!end.IsAt(p) && IsWhite(*p)) ++p;
  bool const negative = !end.IsAt(p) && *p == '-';
  if (!end.IsAt(p) && (*p == '-' || *p == '+')) ++p;
  NumberText const number = unsignedValue(p, end);
  if (number.end == p) return {0.0, first};
  return {negative ? -number.value : number.value, number.end};
}

}  // namespace

NumberText ReadNumber(char const * text)
{
  return signedValue(text, TerminatedEnd{});
}

double TextToDouble(std::string_view text, size_t * used)
{
  NumberText const number = signedValue(text.data(), ViewEnd{text.data() + text.size()});
  if (used != nullptr) *used = static_cast<size_t>(number.end - text.data());
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
