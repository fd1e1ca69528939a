// The commands of zp. Each is a struct of its arguments with
//
//   static constexpr char const * name, * help;
//   void AddOptions(CLI::App & command);   // its arguments and options
//   ExitStatus Run() const;                // the work; raises Failure, or lets a framework exception pass, when something stops
//   it
//
// and is added to its family by AddCommand.
#pragma once

#include <memory>

#include <CLI/CLI.hpp>

#include "tools/program.h"

// status gets what Run gives.
template <class Command>
void AddCommand(CLI::App & family, int & status)
{
  CLI::App * const app = family.add_subcommand(Command::name, Command::help);
  auto const command = std::make_shared<Command>();
  command->AddOptions(*app);
  app->callback([command, &status] { status = command->Run(); });
}

// The families, each a subcommand of the program.
void AddStoreCommands(CLI::App & app, int & status);
void AddSettingsCommands(CLI::App & app, int & status);
void AddTextCommands(CLI::App & app, int & status);
void AddDrawingCommands(CLI::App & app, int & status);
void AddViewCommands(CLI::App & app, int & status);
