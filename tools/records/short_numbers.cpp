// Nine digits from one product, where that is near enough to tell which way they are rounded.

#include "tools/records/short_numbers.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr int digitCount = 9;
constexpr uint32_t aboveDigits = 1000000000;

// All of them are exact.
constexpr double tens[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                           1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

struct Digits {
  uint32_t whole;  // nine of them
  int exponent;    // of ten, for the first one
};

double scaled(double size, int exponent)
{
  int const further = digitCount - 1 - exponent;
  return further >= 0 ? size * tens[further] : size / tens[-further];
}

// False where the product, which is off by up to 1.2e-7, doesn't tell which way to round, and beyond the exact powers.
bool takeDigits(double size, Digits & digits)
{
  constexpr double least = 1e-12;
  constexpr double above = 1e28;
  constexpr double doubt = 1e-6;
  if (!(size >= least && size < above)) return false;
  int const twos = static_cast<int>(std::bit_cast<uint64_t>(size) >> 52) - 1023;
  digits.exponent = (twos * 78913) >> 18;  // log10(2); one too low at times
  double value = scaled(size, digits.exponent);
  if (value >= aboveDigits) value = scaled(size, ++digits.exponent);
  digits.whole = static_cast<uint32_t>(value);
  double const rest = value - digits.whole;
  if (std::abs(rest - 0.5) < doubt) return false;
  if (rest > 0.5) ++digits.whole;
  if (digits.whole == aboveDigits) {
    digits.whole /= 10;
    ++digits.exponent;
  }
  return digits.whole >= aboveDigits / 10;
}

char * putExponent(char * out, int exponent)
{
  *out++ = 'e';
  *out++ = exponent < 0 ? '-' : '+';
  int const size = std::abs(exponent);
  *out++ = static_cast<char>('0' + size / 10);
  *out++ = static_cast<char>('0' + size % 10);
  return out;
}

// digits are those that are left without zeros at the end.
char * putPlain(char * out, char const * digits, int count, int exponent)
{
  if (exponent < 0) {
    out = std::copy_n("0.000", 1 - exponent, out);
    return std::copy_n(digits, count, out);
  }
  out = std::copy_n(digits, exponent + 1, out);
  if (count <= exponent + 1) return out;
  *out++ = '.';
  return std::copy_n(digits + exponent + 1, count - exponent - 1, out);
}

}  // namespace

char * PutNineDigits(char * out, float value)
{
  constexpr int lowestPlain = -4;
  Digits digits = {};
  if (!takeDigits(std::abs(static_cast<double>(value)), digits))
    return std::to_chars(out, out + nineCharacters, value, std::chars_format::general, digitCount).ptr;
  char text[digitCount];
  std::to_chars(text, text + digitCount, digits.whole);
  int count = digitCount;
  while (text[count - 1] == '0') --count;
  if (value < 0) *out++ = '-';
  if (digits.exponent >= lowestPlain && digits.exponent < digitCount) return putPlain(out, text, count, digits.exponent);
  *out++ = text[0];
  if (count > 1) *out++ = '.';
  return putExponent(std::copy_n(text + 1, count - 1, out), digits.exponent);
}
