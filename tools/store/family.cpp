// zp store: the command line of the record store's tools.

#include "tools/store/store_commands.h"

CLI::App * AddStoreCommand(CLI::App & store, StoreArguments & arguments, char const * name, char const * help)
{
  CLI::App * const command = store.add_subcommand(name, help);
  command->add_option("store", arguments.m_strStore, "Index file, record file, or the stem of both")->required();
  command->add_option("--record", arguments.m_strRecord, "Record file, when its name doesn't follow from the index file's");
  command->add_flag("--json", arguments.m_bJson, "Print the result as JSON");
  return command;
}

void AddStoreCommands(CLI::App & app, int & status)
{
  CLI::App * const store = app.add_subcommand("store", "Keep and inspect records in a record store");
  store->require_subcommand(1);
  AddTransferCommands(*store, status);
  AddRecordCommands(*store, status);
  AddCheckCommand(*store, status);
  AddCompactCommand(*store, status);
  AddRecoverCommand(*store, status);
  AddMapCommand(*store, status);
}
