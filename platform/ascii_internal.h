// Names compared without regard to the case of ASCII letters, whatever the locale.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zp {

constexpr char LowerAscii(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string LowerAscii(std::string_view text)
{
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return LowerAscii(c); });
  return lower;
}

inline bool EqualsNoCase(std::string_view a, std::string_view b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

// FNV-1a over the lower-case letters; chained by its second argument.
inline uint64_t HashNoCase(std::string_view text, uint64_t hash = 0xCBF29CE484222325u)
{
  for (char const c : text) hash = (hash ^ static_cast<unsigned char>(LowerAscii(c))) * 0x100000001B3u;
  return hash;
}

// Two names that together address something, as the key of a hash table.
struct NamePair {
  std::string_view m_First;
  std::string_view m_Second;
};

struct HashNames {
  size_t operator()(NamePair const & names) const { return HashNoCase(names.m_Second, HashNoCase(names.m_First)); }
};

struct EqualNames {
  bool operator()(NamePair const & a, NamePair const & b) const
  {
    return EqualsNoCase(a.m_Second, b.m_Second) && EqualsNoCase(a.m_First, b.m_First);
  }
};

}  // namespace zp
