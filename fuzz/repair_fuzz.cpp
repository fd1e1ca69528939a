// Any two files as a store under zp store: looking changes nothing; what recover saves stood in the record file, and with
// --leave-suspect it passes check; a sound store is recovered whole, and stays sound with the same records when it is changed.

#include <cstdint>

#include "fuzz/structured_input.h"
#include "fuzz/zp_commands.h"

namespace {

void recover(StoreFiles const & files, bool leaveSuspect, bool isSound)
{
  removeFiles({"b.SI", "b.SR"});
  std::vector<std::string> command = {"recover", "--list", pathOf("a"), "--to", pathOf("b")};
  if (leaveSuspect) command.emplace_back("--leave-suspect");
  int const status = runStore(command);
  require(readFile("a.SI") == files.index && readFile("a.SR") == files.records);
  if (isSound) require(status == exitDone || files.records.empty());
  if (!isFile("b.SR")) return;
  if (leaveSuspect) require(runStore({"check", pathOf("b")}) == exitDone);
  auto const records = recordsOf("b");
  if (isSound) require(records == recordsOf("a"));
  for (auto const & [id, bytes] : records) require(files.records.find(bytes) != std::string::npos);
}

// One record more, one less, and no room lost.
void change()
{
  auto records = recordsOf("a");
  int const id = records.empty() ? 1 : records.begin()->first;
  writeFile("in", "other bytes");
  require(runStore({"put", pathOf("a"), std::to_string(id), pathOf("in")}) == exitDone);
  records[id] = "other bytes";
  require(recordsOf("a") == records && runStore({"compact", pathOf("a")}) == exitDone);
  require(recordsOf("a") == records && runStore({"check", pathOf("a")}) == exitDone);
}

// Whatever they say, they end and leave the files alone, or sound.
void look(StoreFiles const & files)
{
  runStore({"list", pathOf("a")});
  runStore({"show", pathOf("a"), "1"});
  runStore({"map", pathOf("a"), "--svg", pathOf("map.svg")});
  runStore({"export", "--json", "--skip", pathOf("a"), pathOf("json")});
  require(readFile("a.SI") == files.index && readFile("a.SR") == files.records);
  if (runStore({"compact", pathOf("a")}) == exitDone) require(runStore({"check", pathOf("a")}) == exitDone);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  StoreFiles const files = storeFilesOf({reinterpret_cast<char const *>(data), size});
  writeFile("a.SI", files.index);
  writeFile("a.SR", files.records);
  bool const isFaultless = runStore({"check", "--json", pathOf("a")}) == exitDone;
  bool const isSound = isFaultless && readFile("out").find("\"notes\": []") != std::string::npos;  // all of it is known here
  recover(files, true, isSound);
  recover(files, false, isSound);
  if (isSound)
    change();
  else
    look(files);
  return 0;
}
