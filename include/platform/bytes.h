// Bytes as every file of the system holds them: little-endian numbers at any alignment, and hexadecimal digits.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "types.h"

namespace zp {

namespace detail {

template <size_t width>
struct UnsignedOf;
template <>
struct UnsignedOf<1> {
  using Type = uint8_t;
};
template <>
struct UnsignedOf<2> {
  using Type = uint16_t;
};
template <>
struct UnsignedOf<4> {
  using Type = uint32_t;
};
template <>
struct UnsignedOf<8> {
  using Type = uint64_t;
};

template <class Unsigned>
constexpr Unsigned swapped(Unsigned value)
{
  Unsigned result = 0;
  for (size_t i = 0; i < sizeof value; ++i) result = static_cast<Unsigned>((result << 8) | ((value >> (8 * i)) & 0xFF));
  return result;
}

}  // namespace detail

// The value between the machine's order of bytes and the little-endian one, in either direction.
template <class Unsigned>
constexpr Unsigned LittleEndian(Unsigned value)
{
  static_assert(std::is_unsigned_v<Unsigned>);
  if constexpr (std::endian::native == std::endian::little || sizeof value == 1) return value;
  return detail::swapped(value);
}

// The number, an integer or a real one of up to 8 bytes, that stands at bytes; sizeof(Number) bytes must be there.
template <class Number>
Number ReadLittle(void const * bytes)
{
  typename detail::UnsignedOf<sizeof(Number)>::Type bits;
  std::memcpy(&bits, bytes, sizeof bits);
  return std::bit_cast<Number>(LittleEndian(bits));
}

// Writes sizeof(Number) bytes.
template <class Number>
void WriteLittle(void * bytes, Number value)
{
  auto const bits = LittleEndian(std::bit_cast<typename detail::UnsignedOf<sizeof(Number)>::Type>(value));
  std::memcpy(bytes, &bits, sizeof bits);
}

// The value of a hexadecimal digit of either case, or -1.
constexpr int HexDigitValue(char c)
{
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Appends two lower-case digits for each byte.
ZP_API void AppendHex(std::string & out, std::string_view bytes);

// Appends the bytes that pairs of digits tell; false, with out as it was, for an odd count or a character that is no digit.
ZP_API bool AppendFromHex(std::string & out, std::string_view digits);

}  // namespace zp
