// The marks at the begin of a text that tell its encoding.
#pragma once

#include <string_view>

inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
inline constexpr std::string_view wideMark = "\xFF\xFE";  // of UTF-16, low byte first
inline constexpr std::string_view turnedWideMark = "\xFE\xFF";

inline bool HasWideMark(std::string_view bytes)
{
  return bytes.starts_with(wideMark) || bytes.starts_with(turnedWideMark);
}
