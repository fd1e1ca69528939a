// Wrapping of text for a terminal.

#include "platform/wrap_text_internal.h"

#include <algorithm>

namespace zp {
namespace {

std::string harmless(std::string_view line)
{
  std::string shown(line);
  std::erase(shown, '\r');
  for (char & c : shown)
    if (c == '\t')
      c = ' ';
    else if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
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
