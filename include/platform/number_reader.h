// The reading of decimal numbers in place, for loops over many of them: the digits are gathered inline, and most values are exact
// in one operation; FinishNumber tells the others. The rules are those of zp::TextToDouble.
#pragma once

#include <cstddef>
#include <cstdint>

#include "types.h"

namespace zp {

// A number at the start of a text, and the place behind it: the start where there is none.
struct NumberText {
  double value;
  char const * end;
};

// Where a text ends: behind it, or at any character that no number has, such as its terminating zero. The second saves a
// comparison for each character.
struct ViewEnd {
  char const * last;
  bool IsAt(char const * p) const { return p == last; }
};
struct TerminatedEnd {
  static constexpr char const * last = nullptr;
  bool IsAt(char const *) const { return false; }
};

// A number's digits, and where they and its exponent end: it is mantissa * 10^exponent as long as mantissa holds all its digits.
struct Decimal {
  uint64_t mantissa = 0;
  int64_t exponent = 0;
  ptrdiff_t length = 0;  // of the digits and their point; 0 unless a digit comes first
  char const * end = nullptr;
  bool isExact = false;  // ExactValue tells the number
};

// The number at first, of which decimal was gathered, also if that isn't exact. last is where the text ends, or null for a
// terminated one.
ZP_API NumberText FinishNumber(char const * first, char const * last, Decimal decimal);

namespace detail {

// Powers that a double holds exactly: 10^22 = 2^22 * 5^22, and 5^22 < 2^53.
inline constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr int64_t maxExactPower = 22;
inline constexpr ptrdiff_t exactLength = 15;              // 10^15 < 2^53
inline constexpr int64_t enoughExponent = 1'000'000'000;  // its tenfold is more than any text has digits

// The value of the character as a digit; above 9 for another one.
constexpr unsigned int digitValue(char c)
{
  return static_cast<unsigned char>(c) - unsigned{'0'};
}

// Takes the digits at p into mantissa, which wraps when there are too many. One at a time: the ends of the digits of like numbers
// are foreseen by the processor, which then works on several numbers at once; taking eight in a word would make each number wait
// for the one in front of it.
template <class End>
char const * gatherDigits(char const * p, End end, uint64_t & mantissa)
{
  for (; !end.IsAt(p); ++p) {
    unsigned int const digit = digitValue(*p);
    if (digit > 9) break;
    mantissa = mantissa * 10 + digit;
  }
  return p;
}

// The exponent behind an 'e' at p, if digits follow; otherwise p stays.
template <class End>
char const * gatherExponent(char const * p, End end, int64_t & exponent)
{
  char const * q = p + 1;
  bool const negative = !end.IsAt(q) && *q == '-';
  if (!end.IsAt(q) && (*q == '-' || *q == '+')) ++q;
  char const * const first = q;
  int64_t value = 0;
  for (; !end.IsAt(q) && digitValue(*q) <= 9; ++q) {
    if (value < enoughExponent) value = value * 10 + digitValue(*q);
  }
  exponent += negative ? -value : value;
  return q == first ? p : q;
}

}  // namespace detail

// What stands at first, which is no white space. Without an exponent so few digits as are exact are so at any point.
template <class End>
[[gnu::always_inline]] inline Decimal GatherDecimal(char const * first, End end)
{
  Decimal decimal;
  bool const negative = !end.IsAt(first) && *first == '-';
  char const * const p = first + (negative || (!end.IsAt(first) && *first == '+'));
  char const * q = detail::gatherDigits(p, end, decimal.mantissa);
  if (q == p) [[unlikely]]
    return decimal;
  if (!end.IsAt(q) && *q == '.') {
    char const * const fraction = q + 1;
    q = detail::gatherDigits(fraction, end, decimal.mantissa);
    decimal.exponent = fraction - q;
  }
  decimal.length = q - p;
  decimal.isExact = decimal.length <= detail::exactLength;
  decimal.end = q;
  if (!end.IsAt(q) && (*q | 0x20) >= 'e') {
    bool const isHexadecimal = decimal.length == 1 && decimal.mantissa == 0 && (*q | 0x20) == 'x';
    if ((*q | 0x20) == 'e') decimal.end = detail::gatherExponent(q, end, decimal.exponent);
    bool const isSmall = decimal.exponent >= -detail::maxExactPower && decimal.exponent <= detail::maxExactPower;
    decimal.isExact = decimal.isExact && isSmall && !isHexadecimal;
  }
  return decimal;
}

// The number at first, of which decimal was gathered.
inline double ExactValue(char const * first, Decimal const & decimal)
{
  auto const mantissa = static_cast<double>(static_cast<int64_t>(decimal.mantissa));  // the host converts signed integers faster
  int64_t const power = decimal.exponent;
  double const value = power < 0 ? mantissa / detail::exactPowers[-power] : mantissa * detail::exactPowers[power];
  return *first == '-' ? -value : value;
}

}  // namespace zp
