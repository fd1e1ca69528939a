// zp store: the command lines of the record store's tools.

#include "tools/commands.h"

void AddStoreCommands(CLI::App & app, int & status)
{
  CLI::App * const store = app.add_subcommand("store", "Keep and inspect records in a record store");
  store->require_subcommand(1);
  status = 0;
}
