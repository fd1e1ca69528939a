// Wrapping of text for a terminal.

#include "platform/windows/wrap_text_internal.h"

#include <algorithm>

namespace zp {
namespace {

// A byte that a terminal takes as a command: the controls, and the bytes that code page 1252 leaves open, which are controls in
// the terminal's text.
bool isControl(char c)
{
  return static_cast<unsigned char>(c) < ' ' || std::string_view("\x7F\x81\x8D\x8F\x90\x9D").find(c) != std::string_view::npos;
}

std::string harmless(std::string_view line)
{
  std::string shown(line);
  std::erase(shown, '\r');
  for (char & c : shown)
    if (c == '\t')
      c = ' ';
    else if (isControl(c))
      c = '?';
  return shown;
}

void appendWrapped(std::string & out, std::string_view line, size_t width)
{
  while (line.size() > width) {
    size_t const blank = line.rfind(' ', width);
    bool const atBlank = blank != std::string_view::npos && blank > 0;
    out.append(line.substr(0, atBlank ? blank : width)) += '\n';
    line.remove_prefix(atBlank ? blank + 1 : width);
  }
  out.append(line) += '\n';
}

}  // namespace

std::string WrapText(std::string_view text, size_t width)
{
  std::string out;
  for (bool more = true; more;) {
    size_t const end = text.find('\n');
    more = end != std::string_view::npos;
    appendWrapped(out, harmless(text.substr(0, end)), width);
    if (more) text.remove_prefix(end + 1);
  }
  return out;
}

}  // namespace zp
