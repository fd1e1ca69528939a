// Commands that take several stores: each of them for itself, whatever becomes of the others.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/commands.h"
#include "tools/store/store_names.h"

// Where a command prints what it has to say of one store. Of several each line of text begins with its name, and the JSON stands
// in an array, each value inside an object:
//
//   {"store": "job", "result": ..., "status": 0}  or without a result  {"store": "job", "error": "...", "status": 1}
class StoreOutput {
 public:
  StoreOutput(std::string store, bool json, bool isOneOfMany) : m_strStore(std::move(store)), m_bJson(json), m_bMany(isOneOfMany)
  {
  }

  void PrintLines(std::string_view lines);
  void PrintJson(std::string_view json);  // laid out, with a line end; once

  // Of one of many: the end of its object, with the error if there is one.
  void End(int status, std::string const & error);

 private:
  void PrintWithMark(std::string_view lines, std::string const & mark);

  std::string m_strStore;
  bool m_bJson;
  bool m_bMany;
  bool m_bResult = false;
};

struct ManyStoresArguments {
  void AddOptions(CLI::App & command);

  // Gives use each store. One for which it raises is told on standard error, and the others are done all the same, unless it
  // is the only one: then the failure passes. Ends behind a use that was interrupted. The result is the worst of the statuses.
  ExitStatus ForEachStore(std::function<ExitStatus(StoreNames const & names, StoreOutput & output)> const & use) const;

  std::vector<std::string> stores;
  std::string record;
  bool json = false;
};
