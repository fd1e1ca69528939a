// Real numbers under e, f and g: exact digits from the standard library's locale-free conversion, laid out as printf does.

#include "platform/string/format_internal.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <zpbase/platform/ascii.h>

namespace zp {

namespace {

// A double has at most 1,074 digits behind the point and 767 significant ones; all further digits are zeros.
constexpr int maxExactDigits = 1100;
constexpr size_t digitsRoom = maxExactDigits + 330;

// The parts of a laid out number: what stands in front of zeros that the precision asks for beyond the exact digits, and
// the exponent behind them.
struct RealText {
  char buffer[digitsRoom];
  size_t length = 0;
  size_t moreZeros = 0;
  char exponent[8];
  size_t exponentLength = 0;

  void Append(char c) { buffer[length++] = c; }
  bool HasPoint() const { return std::find(buffer, buffer + length, '.') != buffer + length; }
};

void splitExponent(RealText & text)
{
  char const * const mark = std::find(text.buffer, text.buffer + text.length, 'e');
  text.exponentLength = static_cast<size_t>(text.buffer + text.length - mark);
  std::copy(mark, mark + text.exponentLength, text.exponent);
  text.length -= text.exponentLength;
}

void layOut(RealText & text, double magnitude, std::chars_format format, int precision)
{
  int const exact = std::min(precision, maxExactDigits);
  char * const end = std::to_chars(text.buffer, text.buffer + digitsRoom, magnitude, format, exact).ptr;
  text.length = static_cast<size_t>(end - text.buffer);
  text.moreZeros = static_cast<size_t>(precision - exact);
  if (format == std::chars_format::scientific) splitExponent(text);
}

void dropTrailingZeros(RealText & text)
{
  text.moreZeros = 0;
  if (!text.HasPoint()) return;
  while (text.buffer[text.length - 1] == '0') --text.length;
  if (text.buffer[text.length - 1] == '.') --text.length;
}

int exponentOf(RealText const & text)
{
  int value = 0;
  std::from_chars(text.exponent + 2, text.exponent + text.exponentLength, value);
  return text.exponent[1] == '-' ? -value : value;
}

// g takes f where the exponent, after rounding to the precision, lies from -4 to below the precision, else e.
void layOutGeneral(RealText & text, double magnitude, int precision, bool keepZeros)
{
  precision = std::max(precision, 1);
  layOut(text, magnitude, std::chars_format::scientific, precision - 1);
  int const exponent = exponentOf(text);
  if (exponent >= -4 && exponent < precision) {
    text.exponentLength = 0;
    layOut(text, magnitude, std::chars_format::fixed, precision - 1 - exponent);
  }
  if (!keepZeros) dropTrailingZeros(text);
}

void makeUpper(std::string & out, size_t from)
{
  for (size_t i = from; i < out.size(); ++i) out[i] = ToUpper(out[i]);
}

void appendFinite(std::string & out, FormatField const & field, std::string_view sign, double magnitude)
{
  RealText text;
  int const precision = field.precision < 0 ? 6 : std::min(field.precision, maxFormatWidth);
  switch (ToLower(field.conversion)) {
    case 'e':
      layOut(text, magnitude, std::chars_format::scientific, precision);
      break;
    case 'f':
      layOut(text, magnitude, std::chars_format::fixed, precision);
      break;
    default:
      layOutGeneral(text, magnitude, precision, field.alternate);
      break;
  }
  if (field.alternate && !text.HasPoint()) text.Append('.');

  AppendPadded(out, field,
               {.sign = sign,
                .body = {text.buffer, text.length},
                .zerosBehind = text.moreZeros,
                .exponent = {text.exponent, text.exponentLength}},
               field.zero);
}

}  // namespace

void AppendReal(std::string & out, FormatField const & field, double value)
{
  size_t const from = out.size();
  std::string_view const sign = std::signbit(value) ? "-" : field.plus ? "+" : field.space ? " " : "";
  if (std::isfinite(value)) {
    appendFinite(out, field, sign, std::abs(value));
  } else {
    AppendPadded(out, field, {.sign = sign, .body = std::isnan(value) ? "nan" : "inf"}, false);
  }
  if (field.conversion < 'a') makeUpper(out, from);
}

}  // namespace zp
