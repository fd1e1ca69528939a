// Hexadecimal digits.
#include <zpbase/platform/bytes.h>

namespace zp {

void AppendHex(std::string & out, std::string_view bytes)
{
  constexpr char digits[] = "0123456789abcdef";
  out.reserve(out.size() + 2 * bytes.size());
  for (char const c : bytes) {
    auto const byte = static_cast<unsigned char>(c);
    out += digits[byte >> 4];
    out += digits[byte & 15];
  }
}

bool AppendFromHex(std::string & out, std::string_view digits)
{
  size_t const before = out.size();
  bool isHex = digits.size() % 2 == 0;
  for (size_t i = 0; isHex && i < digits.size(); i += 2) {
    int const high = HexDigitValue(digits[i]);
    int const low = HexDigitValue(digits[i + 1]);
    isHex = high >= 0 && low >= 0;
    if (isHex) out += static_cast<char>(high * 16 + low);
  }
  if (!isHex) out.resize(before);
  return isHex;
}

}  // namespace zp
