// Settings to and from registration-entries files.
#pragma once

#include <string>

#include "tools/program.h"

struct SettingsOptions;

void ExportSettings(SettingsOptions const & options, std::string const & file);

// Tells what it took, and gives exitWanting where it couldn't take all. Raises SystemFailure, with what was taken before, where
// another program keeps the store locked.
ExitStatus ImportSettings(SettingsOptions const & options, std::string const & file);
