// Characters and names by the letters of ASCII alone, whatever the locale: classes, case, and comparison without case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "types.h"

namespace zp {

constexpr bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

constexpr bool IsLetter(char c)
{
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// A blank, a tab, a line end of any form, a vertical tab or a form feed: white space of the C locale.
constexpr bool IsWhite(char c)
{
  return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr char ToLower(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char ToUpper(char c)
{
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

ZP_API std::string ToLower(std::string_view text);

// Negative, 0 or positive, by the unsigned bytes of the lower-case forms.
ZP_API int CompareNoCase(std::string_view a, std::string_view b);
ZP_API bool EqualsNoCase(std::string_view a, std::string_view b);

// FNV-1a over the lower-case letters, the same for names that are equal without case; chained by its second argument.
ZP_API uint64_t HashNoCase(std::string_view text, uint64_t hash = 0xCBF29CE484222325u);

}  // namespace zp
