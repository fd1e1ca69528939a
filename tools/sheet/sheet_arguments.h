// What the commands on workbooks share: their arguments, and the end of a server's refusals.
#pragma once

#include <functional>
#include <string>

#include "tools/commands.h"

struct SheetArguments {
  void AddBook(CLI::App & command);  // and the server
  void AddJson(CLI::App & command);
  void AddDrop(CLI::App & command);

  std::string book;
  std::string server;
  bool json = false;
  bool drop = false;
};

CLI::Option * AddServerOption(CLI::App & command, std::string & server);
CLI::Option * AddDropOption(CLI::App & command, bool & drop);

// Does the work on a workbook. What the server warns of is told at once; what it refuses becomes a Failure.
ExitStatus Told(std::string const & book, std::function<void()> const & work);
