// Conversion between the inside's Windows-1252 bytes and the 16-bit and UTF-8 texts of the outside.

#include <zpbase/platform/encoding.h>

#include <algorithm>
#include <iterator>

#include <zpbase/platform/string.h>

namespace {

// Code points of the bytes 0x80 to 0x9F; the five bytes that the code page leaves open stand for themselves.
// Source: the Unicode consortium's mapping file for code page 1252, with its best-fit rows for the open bytes.
constexpr char16_t high[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                               0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                               0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t firstPair = 0x10000;
constexpr char32_t firstHalf = 0xD800;
constexpr char32_t secondHalf = 0xDC00;
constexpr char32_t behindHalves = 0xE000;
constexpr char32_t replacement = 0xFFFD;

char32_t codePointOf(BYTE byte)
{
  return byte >= 0x80 && byte < 0xA0 ? high[byte - 0x80] : byte;
}

// The byte of a code point, or -1.
int byteOf(char32_t point)
{
  if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) return static_cast<int>(point);
  auto const found = std::find(std::begin(high), std::end(high), point);
  return found == std::end(high) ? -1 : static_cast<int>(0x80 + (found - std::begin(high)));
}

// Takes one code point off the front of text; false for a malformed one.
bool takeCodePoint(std::string_view & text, char32_t & point)
{
  auto const lead = static_cast<BYTE>(text.front());
  int const extra = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : -1;
  if (extra < 0 || text.size() <= static_cast<size_t>(extra)) return false;
  point = extra == 0 ? lead : lead & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    auto const next = static_cast<BYTE>(text[static_cast<size_t>(i)]);
    if ((next & 0xC0) != 0x80) return false;
    point = (point << 6) | (next & 0x3F);
  }
  text.remove_prefix(static_cast<size_t>(extra) + 1);
  constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
  return point >= smallest[extra] && !(point >= firstHalf && point < behindHalves) && point <= 0x10FFFF;
}

// Takes one character off the front of text.
char32_t takeWide(std::u16string_view & text)
{
  char32_t const first = text.front();
  text.remove_prefix(1);
  if (first < firstHalf || first >= behindHalves) return first;
  if (first >= secondHalf || text.empty() || text.front() < secondHalf || text.front() >= behindHalves) return replacement;
  char32_t const second = text.front();
  text.remove_prefix(1);
  return firstPair + ((first - firstHalf) << 10) + (second - secondHalf);
}

void appendUtf8(std::string & out, char32_t point)
{
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    if (point >= firstPair) out += static_cast<char>(0xF0 | (point >> 18));
    out += static_cast<char>(point >= firstPair ? 0x80 | ((point >> 12) & 0x3F) : 0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  }
}

}  // namespace

namespace zp {

void AppendWide(std::string & out, std::u16string_view wide)
{
  for (char16_t const unit : wide) {
    int const byte = byteOf(unit);
    out += byte < 0 ? '?' : static_cast<char>(byte);
  }
}

std::u16string TextToWide(std::string_view text)
{
  std::u16string wide(text.size(), u'\0');
  std::transform(text.begin(), text.end(), wide.begin(),
                 [](char c) { return static_cast<char16_t>(codePointOf(static_cast<BYTE>(c))); });
  return wide;
}

bool Utf8ToText(std::string_view utf8, CString & text)
{
  auto const plain = std::find_if(utf8.begin(), utf8.end(), [](char c) { return static_cast<BYTE>(c) >= 0x80; });
  std::string bytes(utf8.begin(), plain);
  utf8.remove_prefix(bytes.size());
  while (!utf8.empty()) {
    char32_t point;
    if (!takeCodePoint(utf8, point)) return false;
    int const byte = byteOf(point);
    if (byte < 0) return false;
    bytes += static_cast<char>(byte);
  }
  text = CString(std::move(bytes));
  return true;
}

std::string TextToUtf8(std::string_view text)
{
  auto const plain = std::find_if(text.begin(), text.end(), [](char c) { return static_cast<BYTE>(c) >= 0x80; });
  std::string utf8(text.begin(), plain);
  for (char const c : text.substr(utf8.size())) appendUtf8(utf8, codePointOf(static_cast<BYTE>(c)));
  return utf8;
}

bool Utf8ToWide(std::string_view utf8, std::u16string & wide)
{
  std::u16string read;
  read.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t point;
    if (!takeCodePoint(utf8, point)) return false;
    if (point >= firstPair) read += static_cast<char16_t>(firstHalf + ((point - firstPair) >> 10));
    read += static_cast<char16_t>(point >= firstPair ? secondHalf + ((point - firstPair) & 0x3FF) : point);
  }
  wide = std::move(read);
  return true;
}

void AppendUtf8(std::string & out, std::u16string_view wide)
{
  while (!wide.empty()) appendUtf8(out, takeWide(wide));
}

}  // namespace zp
