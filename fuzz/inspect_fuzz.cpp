// Any bytes as a file under zp inspect, whose name the first byte chooses: all of them are accounted for, one part behind the
// other, and the file stays as it was.

#include <cstdint>

#include <nlohmann/json.hpp>

#include "fuzz/zp_commands.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  if (size == 0) return 0;
  constexpr char const * names[] = {"in", "in.SR", "in.SI", "WARNINGS"};
  std::string const name = names[data[0] & 3];
  std::string const bytes(reinterpret_cast<char const *>(data) + 1, size - 1);
  writeFile(name, bytes);
  runCommand(AddInspectCommand, {"inspect", "--bytes", "--json", pathOf(name)});
  auto const found = nlohmann::json::parse(readFile("out"))[0];
  size_t end = 0;
  for (auto const & part : found["parts"]) {
    require(part["offset"] == end && part["length"] > 0);
    end += part["length"].get<size_t>();
  }
  require(end == bytes.size() && readFile(name) == bytes);
  runCommand(AddInspectCommand, {"inspect", pathOf(name)});
  removeFiles({name});
  return 0;
}
