// The commands of zp. Each is a struct of its arguments with
//
//   static constexpr char const * name, * help, * example;   // the example is a whole command line
//   void AddOptions(CLI::App & command);   // its arguments and options
//   ExitStatus Run() const;                // the work; raises Failure, or lets a framework exception pass, when something stops
//   it
//
// and is added to its family by AddCommand.
#pragma once

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/program.h"

// Ends a command's help with a line that can be typed.
inline void AddExample(CLI::App & command, std::string const & line)
{
  std::string const before = command.get_footer();
  command.footer((before.empty() ? "" : before + "\n\n") + "Example: " + line);
}

// Refuses an option's empty value, which names no file.
inline CLI::Option * RequireNamed(CLI::Option * option)
{
  return option->check([](std::string const & name) { return std::string(name.empty() ? "a file must be named" : ""); });
}

// status gets what Run gives.
template <class Command>
void AddCommand(CLI::App & family, int & status)
{
  CLI::App * const app = family.add_subcommand(Command::name, Command::help);
  auto const command = std::make_shared<Command>();
  command->AddOptions(*app);
  AddExample(*app, Command::example);
  app->callback([command, &status] { status = command->Run(); });
}

// The families, each a subcommand of the program.
void AddStoreCommands(CLI::App & app, int & status);
void AddSettingsCommands(CLI::App & app, int & status);
void AddTextCommands(CLI::App & app, int & status);
void AddDrawingCommands(CLI::App & app, int & status);
void AddViewCommands(CLI::App & app, int & status);
void AddSheetCommands(CLI::App & app, int & status);
void AddInspectCommand(CLI::App & app, int & status);

// The one of that name alone, or all of them where there is none, with the program's name and version.
void AddCommands(CLI::App & app, int & status, std::string_view family = "");
