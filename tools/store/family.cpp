// zp store: the command line of the record store's tools.

#include "tools/store/store_arguments.h"

void StoreArguments::AddOptions(CLI::App & command)
{
  command.add_option("STORE", store, "Index file, record file, or the stem of both")->required();
  command.add_option("--record", record, "Record file, when its name doesn't follow from the index file's");
  command.add_flag("--json", json, "Print the result as JSON");
}

void AddStoreCommands(CLI::App & app, int & status)
{
  CLI::App * const family = app.add_subcommand("store", "Keep and inspect records in a record store");
  family->require_subcommand(1);
  AddTransferCommands(*family, status);
  AddRecordCommands(*family, status);
  AddFindCommand(*family, status);
  AddDiffCommand(*family, status);
  AddCheckCommand(*family, status);
  AddCompactCommand(*family, status);
  AddRecoverCommand(*family, status);
  AddMapCommand(*family, status);
  AddCurveCommands(*family, status);
}
