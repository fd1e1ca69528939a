// Completions of the program's command line for the shells bash, zsh and fish.
#pragma once

#include <string>

#include "tools/pages/command_tree.h"

std::string MakeBashCompletion(CommandPage const & program);
std::string MakeZshCompletion(CommandPage const & program);
std::string MakeFishCompletion(CommandPage const & program);
