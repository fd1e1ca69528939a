// Commands by name: help as a word, and what was perhaps meant by a word that is no command.

#include "tools/command_words.h"

#include <algorithm>

namespace {

constexpr size_t mostChanges = 2;  // that a name may be away from what was typed

// The number of letters to be changed, added, left out, or exchanged with the next one.
size_t countChanges(std::string const & from, std::string const & to)
{
  std::vector<size_t> before(to.size() + 1), last(to.size() + 1), row(to.size() + 1);
  for (size_t i = 0; i <= from.size(); ++i) {
    for (size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        row[j] = i + j;
        continue;
      }
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1)});
      bool const isExchange = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isExchange) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(last);
    last = row;
  }
  return last[to.size()];
}

}  // namespace

std::vector<CLI::App const *> GetCommands(CLI::App const & family)
{
  return family.get_subcommands([](CLI::App const *) { return true; });
}

std::vector<std::string> ResolveHelp(std::vector<std::string> words)
{
  if (!words.empty() && words.front() == "help") {
    words.erase(words.begin());
    words.emplace_back("--help");
  }
  return words;
}

NamedCommand FindNamedCommand(CLI::App const & program, std::vector<std::string> const & words)
{
  NamedCommand named = {&program, program.get_name(), ""};
  for (std::string const & word : words) {
    auto const commands = GetCommands(*named.command);
    if (commands.empty()) break;
    if (word.starts_with('-')) continue;
    auto const next = std::ranges::find(commands, word, &CLI::App::get_name);
    if (next == commands.end()) {
      named.unknown = word;
      break;
    }
    named.command = *next;
    named.name += " " + word;
  }
  return named;
}

std::string FindNearestCommand(CLI::App const & family, std::string const & word)
{
  std::vector<std::string> names;
  for (CLI::App const * const command : GetCommands(family)) names.push_back(command->get_name());
  if (family.get_parent() == nullptr) names.emplace_back("help");
  std::string nearest;
  size_t fewest = std::min(mostChanges, word.size() / 2) + 1;
  for (std::string const & name : names) {
    size_t const changes = countChanges(word, name);
    if (changes >= fewest) continue;
    fewest = changes;
    nearest = name;
  }
  return nearest;
}
