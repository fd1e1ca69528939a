// The families of zp store's commands, and the arguments that all of them take.
#pragma once

#include <memory>
#include <string>

#include "tools/commands.h"
#include "tools/store/store_names.h"

struct StoreArguments {
  std::string m_strStore;
  std::string m_strRecord;
  bool m_bJson = false;

  StoreNames GetNames() const { return ResolveStore(m_strStore, m_strRecord); }
};

// A command with its store argument, --record and --json.
CLI::App * AddStoreCommand(CLI::App & store, StoreArguments & arguments, char const * name, char const * help);

void AddTransferCommands(CLI::App & store, int & status);  // import, export
void AddRecordCommands(CLI::App & store, int & status);    // list, show, get, put, delete
void AddCheckCommand(CLI::App & store, int & status);
void AddCompactCommand(CLI::App & store, int & status);
void AddRecoverCommand(CLI::App & store, int & status);
void AddMapCommand(CLI::App & store, int & status);
