// Any bytes as a table of components or a JSON export. Nothing is stored of what zp store import refuses; what it takes comes
// back the same through every format that can tell it.

#include <cstdint>

#include "fuzz/zp_commands.h"

namespace {

void removeAll()
{
  for (std::string const stem : {"a", "b", "c"}) removeFiles({stem + ".SI", stem + ".SR"});
}

bool store(std::string const & stem, std::string const & file)
{
  return runStore({"import", pathOf(stem), pathOf(file)}) == exitDone;
}

// What was stored is stored once more from its export.
void goRound(bool isTable)
{
  auto const records = recordsOf("a");
  require(runStore({"export", "--json", pathOf("a"), pathOf("json")}) == exitDone);
  require(store("b", "json") && recordsOf("b") == records);
  require(runStore({"export", "--json", pathOf("b"), pathOf("again")}) == exitDone && readFile("again") == readFile("json"));

  int const told = runStore({"export", pathOf("a"), pathOf("table")});
  require(!isTable || told == exitDone);
  require(store("c", "table"));
  if (!isFile("c.SR")) return;
  auto const back = recordsOf("c");
  require(told != exitDone || back.size() == records.size());
  for (auto const & [id, bytes] : back) require(records.at(id) == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string_view const bytes(reinterpret_cast<char const *>(data), size);
  removeAll();
  writeFile("in", bytes);
  bool const isStored = store("a", "in");
  require(isStored || (!isFile("a.SI") && !isFile("a.SR")));
  if (!isStored || !isFile("a.SR")) return 0;
  bool const isTable = bytes[bytes.find_first_not_of(" \t\r\n")] != '{';
  require(runStore({"check", pathOf("a")}) == exitDone || !isTable);
  goRound(isTable);
  return 0;
}
