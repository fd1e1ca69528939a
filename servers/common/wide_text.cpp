// Decoding and encoding.

#include "servers/common/wide_text.h"

namespace servers {
namespace {

constexpr char32_t firstHalf = 0xD800;
constexpr char32_t secondHalf = 0xDC00;
constexpr char32_t behindHalves = 0xE000;
constexpr char32_t firstPair = 0x10000;
constexpr char32_t replacement = 0xFFFD;

}  // namespace

void AppendUtf8(std::string & text, char32_t c)
{
  auto const tail = [&](int shift) { text += static_cast<char>(0x80 | (c >> shift & 0x3F)); };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | c >> 6);
    tail(0);
  } else if (c < firstPair) {
    text += static_cast<char>(0xE0 | c >> 12);
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | c >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

char32_t TakeUtf8(std::string_view & rest)
{
  auto const byteAt = [&](size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(rest[i])); };
  char32_t const lead = byteAt(0);
  size_t const length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  char32_t c = lead < 0x80 ? lead : lead & (0x7FU >> length);
  bool good = length <= rest.size() && (lead < 0x80 || lead >= 0xC2) && lead < 0xF5;
  for (size_t i = 1; good && i < length; ++i) {
    good = (byteAt(i) & 0xC0U) == 0x80U;
    c = c << 6 | (byteAt(i) & 0x3FU);
  }
  rest.remove_prefix(good ? length : 1);
  return good && c < 0x110000 ? c : replacement;
}

std::u16string ToWide(std::string_view utf8)
{
  std::u16string wide;
  wide.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t const c = TakeUtf8(utf8);
    if (c < firstPair) {
      wide += static_cast<char16_t>(c);
    } else {
      wide += static_cast<char16_t>(firstHalf + ((c - firstPair) >> 10));
      wide += static_cast<char16_t>(secondHalf + ((c - firstPair) & 0x3FF));
    }
  }
  return wide;
}

std::string FromWide(std::u16string_view wide)
{
  std::string utf8;
  utf8.reserve(wide.size());
  for (size_t i = 0; i < wide.size(); ++i) {
    char32_t c = wide[i];
    bool const isPair =
        c >= firstHalf && c < secondHalf && i + 1 < wide.size() && wide[i + 1] >= secondHalf && wide[i + 1] < behindHalves;
    if (isPair) c = firstPair + ((c - firstHalf) << 10) + (wide[++i] - secondHalf);
    AppendUtf8(utf8, c);
  }
  return utf8;
}

}  // namespace servers
