// The words of a command line that come before its arguments: the family and the command.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

// The commands of a family in the order of their making; none for a command. Borrowed from it.
std::vector<CLI::App const *> GetCommands(CLI::App const & family);

// "help store list" is "store list --help": the words of the command line without the program's name, in order.
std::vector<std::string> ResolveHelp(std::vector<std::string> words);

// The command that a command line names, as far as its words are known: the program itself, a family, or a command.
struct NamedCommand {
  CLI::App const * command;
  std::string name;     // with the program's: "zp store"
  std::string unknown;  // the word behind it that should name a command and doesn't; empty without one
};
NamedCommand FindNamedCommand(CLI::App const & program, std::vector<std::string> const & words);

// The command of the family whose name is nearest to the word, by letters to be changed, added, left out or exchanged; empty
// where none is near.
std::string FindNearestCommand(CLI::App const & family, std::string const & word);
