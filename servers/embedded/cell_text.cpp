// UTF-8, 16-bit characters, and the escapes of texts in files.

#include "servers/embedded/cell_text.h"

#include <array>

#include <fmt/format.h>

namespace embedded {
namespace {

constexpr char32_t firstHalf = 0xD800;
constexpr char32_t secondHalf = 0xDC00;
constexpr char32_t behindHalves = 0xE000;
constexpr char32_t firstPair = 0x10000;
constexpr char32_t replacement = 0xFFFD;
constexpr size_t escapeLength = 7;  // _xHHHH_

bool isHalf(char32_t c)
{
  return c >= firstHalf && c < behindHalves;
}

void appendUtf8(std::string & text, char32_t c)
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

// The next character; what is no UTF-8 gives the replacement character and takes a byte.
char32_t takeUtf8(std::string_view & rest)
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

int hexDigit(char c)
{
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// The character of an escape at the start of text, or -1.
int escapeAt(std::string_view text)
{
  if (text.size() < escapeLength || text[0] != '_' || text[1] != 'x' || text[escapeLength - 1] != '_') return -1;
  int value = 0;
  for (size_t i = 2; i < escapeLength - 1; ++i) {
    int const digit = hexDigit(text[i]);
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

bool isBlank(char c)
{
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

void appendMarkup(std::string & xml, char c)
{
  switch (c) {
    case '&':
      xml += "&amp;";
      break;
    case '<':
      xml += "&lt;";
      break;
    case '>':
      xml += "&gt;";
      break;
    case '"':
      xml += "&quot;";
      break;
    default:
      xml += c;
  }
}

// What XML 1.0 has no character for, and what would come back changed.
bool needsEscape(char32_t c)
{
  return (c < 0x20 && c != '\t' && c != '\n') || isHalf(c) || c == 0xFFFE || c == 0xFFFF;
}

struct CaseRange {
  char32_t first;
  char32_t last;
  int distance;  // to the upper case
  int step;      // 2 where upper and lower case take turns
};

constexpr std::array caseRanges = {
    CaseRange{'a', 'z', -32, 1},     CaseRange{0xE0, 0xF6, -32, 1},   CaseRange{0xF8, 0xFE, -32, 1},
    CaseRange{0xFF, 0xFF, 0x79, 1},  CaseRange{0x101, 0x137, -1, 2},  CaseRange{0x13A, 0x148, -1, 2},
    CaseRange{0x14B, 0x177, -1, 2},  CaseRange{0x17A, 0x17E, -1, 2},  CaseRange{0x3AC, 0x3AC, -38, 1},
    CaseRange{0x3AD, 0x3AF, -37, 1}, CaseRange{0x3B1, 0x3C1, -32, 1}, CaseRange{0x3C3, 0x3CB, -32, 1},
    CaseRange{0x430, 0x44F, -32, 1}, CaseRange{0x450, 0x45F, -80, 1},
};

char32_t upperCase(char32_t c)
{
  for (CaseRange const & range : caseRanges) {
    if (c < range.first || c > range.last || (c - range.first) % static_cast<char32_t>(range.step) != 0) continue;
    return static_cast<char32_t>(static_cast<int>(c) + range.distance);
  }
  return c;
}

}  // namespace

std::u16string ToWide(std::string_view utf8)
{
  std::u16string wide;
  wide.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t const c = takeUtf8(utf8);
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
    appendUtf8(utf8, c);
  }
  return utf8;
}

size_t CountUnits(std::string_view utf8)
{
  size_t units = 0;
  while (!utf8.empty()) units += takeUtf8(utf8) < firstPair ? 1 : 2;
  return units;
}

std::string Unescape(std::string_view text)
{
  std::string plain;
  bool halves = false;
  while (!text.empty()) {
    size_t const low = text.find('_');
    plain.append(text.substr(0, low));
    if (low == std::string_view::npos) break;
    text.remove_prefix(low);
    int const c = escapeAt(text);
    if (c < 0) {
      plain += '_';
      text.remove_prefix(1);
      continue;
    }
    halves = halves || isHalf(static_cast<char32_t>(c));
    appendUtf8(plain, static_cast<char32_t>(c));
    text.remove_prefix(escapeLength);
  }
  return halves ? FromWide(ToWide(plain)) : plain;  // two halves that met are one character
}

void AppendContent(std::string & xml, std::string_view utf8)
{
  while (!utf8.empty()) {
    char const byte = utf8.front();
    if (byte == '_' && escapeAt(utf8) >= 0) {
      xml += "_x005F_";
      utf8.remove_prefix(1);
    } else if (static_cast<unsigned char>(byte) >= 0x20 && static_cast<unsigned char>(byte) < 0x80) {
      appendMarkup(xml, byte);
      utf8.remove_prefix(1);
    } else if (char32_t const c = takeUtf8(utf8); needsEscape(c)) {
      xml += fmt::format("_x{:04X}_", static_cast<unsigned int>(c));
    } else {
      appendUtf8(xml, c);
    }
  }
}

void AppendAttribute(std::string & xml, std::string_view utf8)
{
  while (!utf8.empty()) {
    char32_t const c = takeUtf8(utf8);
    if (c == '\t' || c == '\n' || c == '\r')
      xml += fmt::format("&#{};", static_cast<unsigned int>(c));
    else if (needsEscape(c))
      appendUtf8(xml, replacement);
    else if (c < 0x80)
      appendMarkup(xml, static_cast<char>(c));
    else
      appendUtf8(xml, c);
  }
}

bool HasOuterBlanks(std::string_view utf8)
{
  return !utf8.empty() && (isBlank(utf8.front()) || isBlank(utf8.back()));
}

std::string_view TrimBlanks(std::string_view text)
{
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string FoldCase(std::string_view utf8)
{
  std::string folded;
  while (!utf8.empty()) appendUtf8(folded, upperCase(takeUtf8(utf8)));
  return folded;
}

}  // namespace embedded
