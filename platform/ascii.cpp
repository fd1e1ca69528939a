// Names without regard to the case of ASCII letters.
#include <zpbase/platform/ascii.h>

#include <algorithm>

namespace zp {

std::string ToLower(std::string_view text)
{
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return ToLower(c); });
  return lower;
}

int CompareNoCase(std::string_view a, std::string_view b)
{
  size_t const common = std::min(a.size(), b.size());
  for (size_t i = 0; i < common; ++i) {
    int const difference = static_cast<unsigned char>(ToLower(a[i])) - static_cast<unsigned char>(ToLower(b[i]));
    if (difference != 0) return difference;
  }
  return a.size() < b.size() ? -1 : a.size() > b.size();
}

bool EqualsNoCase(std::string_view a, std::string_view b)
{
  return a.size() == b.size() && CompareNoCase(a, b) == 0;
}

uint64_t HashNoCase(std::string_view text, uint64_t hash)
{
  for (char const c : text) hash = (hash ^ static_cast<unsigned char>(ToLower(c))) * 0x100000001B3u;
  return hash;
}

}  // namespace zp
