// What a command line may hold, read from the commands themselves: for the pages and the completions that are made of it.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

struct CommandOption {
  std::vector<std::string> names;  // with their dashes, the short ones first; one without a dash for a positional argument
  std::string help;
  std::string value;                 // what stands for the value; empty for a flag
  std::vector<std::string> choices;  // the only values, where they are listed
  bool isPositional = false;
  bool isRequired = false;
  bool isRepeated = false;
};

struct CommandPage {
  std::vector<std::string> words;  // "zp", "store", "list"
  std::string help;
  std::string footer;
  std::vector<CommandOption> options;  // positional arguments first
  std::vector<CommandPage> commands;
};

// The page of a program or command and of all below it.
CommandPage ReadCommandTree(CLI::App const & app);

// "zp store list" with any separator.
std::string JoinWords(std::vector<std::string> const & words, char separator);
