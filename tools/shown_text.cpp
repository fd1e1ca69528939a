// Making control characters harmless.

#include "tools/shown_text.h"

#include <algorithm>

#include <fmt/format.h>

namespace {

unsigned int byteAt(std::string_view text, size_t at)
{
  return static_cast<unsigned char>(text[at]);
}

bool isPlain(char c)
{
  return c >= 0x20 && c < 0x7F;
}

// Plain characters are copied in runs.
template <class Append>
std::string replaced(std::string_view text, std::string_view kept, Append append)
{
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    auto const plain = static_cast<size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin());
    shown += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    size_t const control = ControlBytes(text);
    bool const isKept = control == 0 || kept.find(text.front()) != std::string_view::npos;
    size_t const bytes = control > 0 ? control : CharacterBytes(text);
    if (isKept)
      shown += text.substr(0, bytes);
    else
      append(shown, text.substr(0, bytes));
    text.remove_prefix(bytes);
  }
  return shown;
}

void appendBytes(std::string & shown, std::string_view control)
{
  for (char const c : control) shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
}

}  // namespace

size_t CharacterBytes(std::string_view utf8)
{
  unsigned int const first = byteAt(utf8, 0);
  size_t const bytes = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
  if (bytes > utf8.size()) return 0;
  for (size_t i = 1; i < bytes; ++i) {
    if ((byteAt(utf8, i) & 0xC0) != 0x80) return 0;
  }
  return bytes;
}

size_t ControlBytes(std::string_view utf8)
{
  if (utf8.empty()) return 0;
  unsigned int const first = byteAt(utf8, 0);
  if (first >= 0x20 && first < 0x7F) return 0;
  if (first < 0x80) return 1;
  size_t const bytes = CharacterBytes(utf8);
  if (bytes == 0) return 1;
  return bytes == 2 && first == 0xC2 && byteAt(utf8, 1) < 0xA0 ? 2 : 0;
}

std::string Visible(std::string_view utf8)
{
  return replaced(utf8, "", appendBytes);
}

std::string VisibleLines(std::string_view utf8)
{
  return replaced(utf8, "\n\t\f", appendBytes);
}

void AppendJsonControl(std::string & json, std::string_view control)
{
  constexpr std::string_view characters = "\b\t\n\f\r";
  constexpr std::string_view letters = "btnfr";
  if (size_t const known = characters.find(control.front()); known != std::string_view::npos) {
    json += '\\';
    json += letters[known];
    return;
  }
  bool const isOne = control.size() == 1 && static_cast<unsigned char>(control.front()) < 0x80;
  unsigned int const code = static_cast<unsigned char>(control.back());
  json += isOne || control.size() == 2 ? fmt::format("\\u{:04x}", code) : "\\ufffd";
}

std::string VisibleJson(std::string_view json)
{
  return replaced(json, "\n", AppendJsonControl);
}
