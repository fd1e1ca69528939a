// The commands, options and listed values as completions. Whatever else a command takes completes as the name of a file.

#include "tools/pages/completions.h"

#include <fmt/format.h>

namespace {

template <class Visit>
void forEachPage(CommandPage const & page, Visit const & visit)
{
  visit(page);
  for (CommandPage const & command : page.commands) forEachPage(command, visit);
}

// For single quotes of a shell.
std::string inQuotes(std::string const & text)
{
  std::string shown;
  for (char const c : text) shown += c == '\'' ? "'\\''" : std::string(1, c);
  return "'" + shown + "'";
}

// What can follow the words of a page, but for its values.
std::vector<std::string> followersOf(CommandPage const & page)
{
  std::vector<std::string> words;
  for (CommandPage const & command : page.commands) words.push_back(command.words.back());
  for (CommandOption const & option : page.options) {
    if (!option.isPositional) words.insert(words.end(), option.names.begin(), option.names.end());
  }
  return words;
}

// All commands as a pattern of a shell's case.
std::string patternOf(CommandPage const & program)
{
  std::string pattern;
  forEachPage(program, [&](CommandPage const & page) {
    pattern += fmt::format("{}'{}'", pattern.empty() ? "" : "|", JoinWords(page.words, ' '));
  });
  return pattern;
}

std::string choicesInBash(CommandPage const & page)
{
  std::string cases;
  for (CommandOption const & option : page.options) {
    if (option.isPositional || option.choices.empty()) continue;
    for (std::string const & name : option.names) {
      cases += fmt::format("    '{} {}') COMPREPLY=($(compgen -W '{}' -- \"$word\")); return ;;\n", JoinWords(page.words, ' '),
                           name, JoinWords(option.choices, ' '));
    }
  }
  return cases;
}

// Of zsh's _arguments: the help in brackets.
std::string helpInZsh(std::string const & help)
{
  std::string shown;
  for (char const c : help) shown += c == '[' || c == ']' || c == ':' || c == '\\' ? "\\" + std::string(1, c) : std::string(1, c);
  return shown;
}

std::string optionInZsh(CommandOption const & option, std::string const & name)
{
  std::string const values = option.choices.empty() ? "_files" : fmt::format("({})", JoinWords(option.choices, ' '));
  return inQuotes(fmt::format("{}{}[{}]{}", option.isRepeated ? "*" : "", name, helpInZsh(option.help),
                              option.value.empty() ? "" : fmt::format(":{}:{}", option.value, values)));
}

std::string argumentsInZsh(CommandPage const & page)
{
  std::string arguments;
  for (CommandOption const & option : page.options) {
    for (std::string const & name : option.names) {
      if (!option.isPositional) arguments += " " + optionInZsh(option, name);
    }
  }
  return arguments + " '*:FILE:_files'";
}

std::string commandsInZsh(CommandPage const & page)
{
  std::string commands;
  for (CommandPage const & command : page.commands) {
    commands += " " + inQuotes(fmt::format("{}:{}", command.words.back(), helpInZsh(command.help)));
  }
  return commands;
}

// "help" may stand in front of the commands.
std::string conditionInFish(CommandPage const & page)
{
  std::string condition;
  for (size_t i = 1; i < page.words.size(); ++i) condition += fmt::format("__fish_seen_subcommand_from {}; and ", page.words[i]);
  if (page.commands.empty()) return condition.substr(0, condition.rfind(';'));
  condition += "not __fish_seen_subcommand_from";
  for (CommandPage const & command : page.commands) condition += " " + command.words.back();
  return condition;
}

std::string optionInFish(CommandOption const & option)
{
  std::string line;
  for (std::string const & name : option.names) {
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  if (!option.value.empty()) line += option.choices.empty() ? " -r" : " -x -a " + inQuotes(JoinWords(option.choices, ' '));
  return line + " -d " + inQuotes(option.help);
}

}  // namespace

std::string MakeBashCompletion(CommandPage const & program)
{
  std::string followers;
  std::string choices;
  forEachPage(program, [&](CommandPage const & page) {
    followers += fmt::format("    '{}') words='{}' ;;\n", JoinWords(page.words, ' '), JoinWords(followersOf(page), ' '));
    choices += choicesInBash(page);
  });
  return fmt::format(
      "# Completion of zp for bash.\n_zp()\n{{\n  local word=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD-1]}} "
      "command=zp "
      "words= i\n  for ((i = 1; i < COMP_CWORD; ++i)); do\n    case \"$command ${{COMP_WORDS[i]}}\" in\n      {})\n        "
      "command+=\" ${{COMP_WORDS[i]}}\" ;;\n    esac\n  done\n  case \"$command $before\" in\n{}  esac\n  case \"$command\" "
      "in\n{}  "
      "esac\n  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n}}\ncomplete -o default -F _zp zp\n",
      patternOf(program), choices, followers);
}

std::string MakeZshCompletion(CommandPage const & program)
{
  std::string cases;
  forEachPage(program, [&](CommandPage const & page) {
    std::string const body = page.commands.empty()
                                 ? "_arguments" + argumentsInZsh(page)
                                 : fmt::format("commands=({})\n      _describe command commands", commandsInZsh(page));
    cases += fmt::format("    '{}')\n      {} ;;\n", JoinWords(page.words, ' '), body);
  });
  return fmt::format(
      "#compdef zp\n# Completion of zp for zsh.\n_zp()\n{{\n  local command=zp i\n  local -a commands\n  integer used=1\n"
      "  for ((i = 2; i < CURRENT; ++i)); do\n    case \"$command $words[i]\" in\n      {})\n        command+=\" $words[i]\"; "
      "used=i ;;\n    esac\n  done\n  if ((used > 1)); then\n    words=(\"${{(@)words[used,-1]}}\")\n    ((CURRENT -= used - "
      "1))\n  fi\n"
      "  case \"$command\" in\n{}  esac\n}}\n_zp \"$@\"\n",
      patternOf(program), cases);
}

std::string MakeFishCompletion(CommandPage const & program)
{
  std::string lines = "# Completion of zp for fish.\n";
  forEachPage(program, [&](CommandPage const & page) {
    std::string const start = fmt::format("complete -c zp -n {}", inQuotes(conditionInFish(page)));
    for (CommandPage const & command : page.commands) {
      lines += fmt::format("{} -f -a {} -d {}\n", start, command.words.back(), inQuotes(command.help));
    }
    for (CommandOption const & option : page.options) {
      if (!option.isPositional) lines += start + optionInFish(option) + "\n";
    }
  });
  return lines;
}
