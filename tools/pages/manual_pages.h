// Manual pages of the program and of each family, in the man macros.
#pragma once

#include <string>

#include "tools/pages/command_tree.h"

// A page with the commands below it in sections of their own; the program's lists its families. The name of its file is the words
// joined by hyphens with ".1".
std::string MakeManualPage(CommandPage const & page, std::string const & version);
