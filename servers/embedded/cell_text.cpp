// UTF-8, 16-bit characters, and the escapes of texts in files.

#include "servers/embedded/cell_text.h"

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

#include "servers/common/wide_text.h"

namespace embedded {

using servers::AppendUtf8;
using servers::IsHalf;
using servers::TakeUtf8;

namespace {

constexpr char32_t firstPair = 0x10000;
constexpr char32_t replacement = 0xFFFD;
constexpr size_t escapeLength = 7;  // _xHHHH_

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
  return (c < 0x20 && c != '\t' && c != '\n') || IsHalf(c) || c == 0xFFFE || c == 0xFFFF;
}

}  // namespace

size_t CountUnits(std::string_view utf8)
{
  size_t units = 0;
  while (!utf8.empty()) units += TakeUtf8(utf8) < firstPair ? 1 : 2;
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
    halves = halves || IsHalf(static_cast<char32_t>(c));
    AppendUtf8(plain, static_cast<char32_t>(c));
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
    } else if (char32_t const c = TakeUtf8(utf8); needsEscape(c)) {
      xml += fmt::format("_x{:04X}_", static_cast<unsigned int>(c));
    } else {
      AppendUtf8(xml, c);
    }
  }
}

void AppendAttribute(std::string & xml, std::string_view utf8)
{
  while (!utf8.empty()) {
    char32_t const c = TakeUtf8(utf8);
    if (c == '\t' || c == '\n' || c == '\r')
      xml += fmt::format("&#{};", static_cast<unsigned int>(c));
    else if (needsEscape(c))
      AppendUtf8(xml, replacement);
    else if (c < 0x80)
      appendMarkup(xml, static_cast<char>(c));
    else
      AppendUtf8(xml, c);
  }
}

void AppendName(std::string & xml, std::string_view utf8)
{
  std::string content;
  AppendContent(content, utf8);
  for (char const c : content) {
    if (c == '\t' || c == '\n')
      xml += fmt::format("&#{};", static_cast<unsigned int>(c));
    else
      xml += c;
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
  return FromWide(zp::FoldCase(ToWide(utf8)));
}

}  // namespace embedded
