// Commands as manual pages.

#include "tools/pages/manual_pages.h"

#include <algorithm>

#include <fmt/format.h>

namespace {

// The text with what troff would take for its own.
std::string inTroff(std::string const & text)
{
  std::string troff;
  bool isLineStart = true;
  for (char const c : text) {
    if (isLineStart && (c == '.' || c == '\'')) troff += "\\&";
    if (c == '\\') {
      troff += "\\e";
    } else {
      troff += c == '-' ? "\\-" : std::string(1, c);
    }
    isLineStart = c == '\n';
  }
  return troff;
}

std::string namesOf(CommandOption const & option)
{
  std::string names;
  for (std::string const & name : option.names) {
    names += fmt::format("{}{}{}\\fR", names.empty() ? "" : ", ", option.isPositional ? "\\fI" : "\\fB", inTroff(name));
  }
  return names + (option.value.empty() ? "" : fmt::format(" \\fI{}\\fR", option.value));
}

std::string synopsisOf(CommandPage const & page)
{
  std::string line = fmt::format("\\fB{}\\fR", inTroff(JoinWords(page.words, ' ')));
  bool const hasOptions = std::ranges::any_of(page.options, [](CommandOption const & option) { return !option.isPositional; });
  if (hasOptions) line += " [\\fIOPTION\\fR]...";
  if (!page.commands.empty()) line += " \\fICOMMAND\\fR ...";
  for (CommandOption const & option : page.options) {
    if (!option.isPositional) continue;
    std::string const name = fmt::format("\\fI{}\\fR{}", inTroff(option.names.front()), option.isRepeated ? "..." : "");
    line += option.isRequired ? " " + name : fmt::format(" [{}]", name);
  }
  return line + "\n";
}

std::string optionsOf(CommandPage const & page)
{
  std::string text;
  for (CommandOption const & option : page.options) {
    text += fmt::format(".TP\n{}\n{}{}\n", namesOf(option), inTroff(option.help), option.help.empty() ? "\\&" : "");
  }
  return text;
}

std::string footerOf(CommandPage const & page)
{
  return page.footer.empty() ? "" : fmt::format(".PP\n.nf\n{}\n.fi\n", inTroff(page.footer));
}

std::string commandOf(CommandPage const & page)
{
  return fmt::format(".SS {}\n{}.PP\n{}.\n{}{}", inTroff(page.words.back()), synopsisOf(page), inTroff(page.help),
                     optionsOf(page), footerOf(page));
}

// A family has its commands on its page; the program has a page for each.
std::string commandsOf(CommandPage const & page)
{
  if (page.commands.empty()) return "";
  std::string text = ".SH COMMANDS\n";
  bool const isProgram = page.words.size() == 1;
  for (CommandPage const & command : page.commands) {
    text += isProgram ? fmt::format(".TP\n\\fB{}\\fR\n{}; see \\fB{}\\fR(1)\n", inTroff(command.words.back()),
                                    inTroff(command.help), inTroff(JoinWords(command.words, '-')))
                      : commandOf(command);
  }
  return text;
}

}  // namespace

std::string MakeManualPage(CommandPage const & page, std::string const & version)
{
  std::string const name = JoinWords(page.words, '-');
  std::string title = name;
  std::ranges::transform(title, title.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return fmt::format(
      ".TH \"{}\" \"1\" \"\" \"zp {}\" \"Tools of the Zephlow base library\"\n.SH NAME\n{} \\- {}\n.SH SYNOPSIS\n{}"
      ".SH OPTIONS\n{}{}{}"
      ".SH EXIT STATUS\n0 when all was done, 1 when something was found wanting or couldn't be done, 2 when the command was used "
      "wrongly.\n",
      inTroff(title), version, inTroff(name), inTroff(page.help), synopsisOf(page), optionsOf(page), footerOf(page),
      commandsOf(page));
}
