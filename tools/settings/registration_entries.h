// Settings to and from registration-entries files.
#pragma once

#include <string>

#include "tools/program.h"

struct SettingsOptions;

void ExportSettings(SettingsOptions const & options, std::string const & file);

// Tells what it took, also before it raises, and gives exitWanting where it couldn't take all. Raises SystemFailure where another
// program keeps the store locked, and Failure where it is interrupted.
ExitStatus ImportSettings(SettingsOptions const & options, std::string const & file);
