// Reading and writing numbers.

#include "servers/embedded/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace embedded {
namespace {

constexpr size_t mostDigits = 32;  // of the shortest form of a double, with sign and exponent

// Whether a number that no double is near to is too small for one, not too large: by the place of its first digit.
bool isTiny(std::string_view text)
{
  size_t const mark = std::min(text.find_first_of("eE"), text.size());
  int exponent = 0;
  if (mark < text.size()) {
    size_t const start = mark + (mark + 1 < text.size() && text[mark + 1] == '+' ? 2 : 1);
    auto const end = std::from_chars(text.data() + start, text.data() + text.size(), exponent);
    if (end.ec != std::errc()) return text[start] == '-';
  }
  std::string_view const digits = text.substr(0, mark);
  auto const point = static_cast<double>(std::min(digits.find('.'), digits.size()));
  auto const first = static_cast<double>(std::min(digits.find_first_of("123456789"), digits.size()));
  return point - first + exponent < 0;
}

}  // namespace

std::optional<double> ReadNumber(std::string_view text)
{
  char const * start = text.data();
  char const * const end = start + text.size();
  if (start != end && *start == '+') ++start;
  if (start == end || (start != text.data() && *start == '-')) return std::nullopt;
  double value = 0.0;
  auto const read = std::from_chars(start, end, value);
  if (read.ptr != end || read.ec == std::errc::invalid_argument) return std::nullopt;
  if (read.ec == std::errc()) return value;
  double const nearest = isTiny(text) ? 0.0 : std::numeric_limits<double>::infinity();
  return *start == '-' ? -nearest : nearest;
}

void AppendNumber(std::string & text, double value)
{
  std::array<char, mostDigits> digits = {};
  auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  text.append(digits.data(), end.ptr);
  if (value == 0 && std::signbit(value)) text += ".0";  // "-0" is the integer zero to others, without its sign
}

}  // namespace embedded
