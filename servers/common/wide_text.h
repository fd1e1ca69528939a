// UTF-8 and 16-bit characters. Both hold any row of 16-bit characters: a half of a pair that stands alone has three bytes.
#pragma once

#include <string>
#include <string_view>

namespace servers {

// The next character; what is no UTF-8 gives U+FFFD and takes a byte.
char32_t TakeUtf8(std::string_view & rest);
void AppendUtf8(std::string & text, char32_t c);

std::u16string ToWide(std::string_view utf8);
std::string FromWide(std::u16string_view wide);

inline bool IsHalf(char32_t c)
{
  return c >= 0xD800 && c < 0xE000;
}

}  // namespace servers
