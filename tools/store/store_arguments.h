// The arguments that all of zp store's commands take, and where each command joins the family.
#pragma once

#include <string>

#include "tools/commands.h"
#include "tools/store/store_names.h"

struct StoreArguments {
  void AddOptions(CLI::App & command);

  StoreNames GetNames() const { return ResolveStore(store, record); }

  std::string store;
  std::string record;
  bool json = false;
};

void AddTransferCommands(CLI::App & family, int & status);  // import, export
void AddRecordCommands(CLI::App & family, int & status);    // list, show, get, put, delete
void AddCheckCommand(CLI::App & family, int & status);
void AddFindCommand(CLI::App & family, int & status);
void AddDiffCommand(CLI::App & family, int & status);
void AddCompactCommand(CLI::App & family, int & status);
void AddRecoverCommand(CLI::App & family, int & status);
void AddMapCommand(CLI::App & family, int & status);
void AddCurveCommands(CLI::App & family, int & status);  // eval, plot
