// The commands of zp. Each adds one subcommand to the program, whose callbacks do the work: they leave the exit status in
// status and raise Failure, or let a framework exception pass, when something stops them.
#pragma once

#include <CLI/CLI.hpp>

void AddStoreCommands(CLI::App & app, int & status);
void AddSettingsCommands(CLI::App & app, int & status);
void AddTextCommands(CLI::App & app, int & status);
