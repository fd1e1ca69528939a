// The record store's operations, each on a store with live records and free blocks.

#include <gtest/gtest.h>

#include <filesystem>

#include <zpbase/store.h>

#include "tests/faults/Operations.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr int highestID = 9;

struct StoreFiles {
  std::string index;
  std::string records;
};

std::string textOf(int id)
{
  constexpr size_t lengths[] = {0, 4, 2, 16, 8, 5, 30, 3};
  return std::string(lengths[id], static_cast<char>('a' + id));
}

int put(GPDataFile & store, int id, std::string_view bytes)
{
  return store.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
}

std::string get(GPDataFile & store, int id)
{
  std::string bytes(store.GetRecLength(id), '\0');
  bytes.resize(store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id));
  return bytes;
}

GPDataFile openIn(TempFolder const & folder)
{
  return GPDataFile(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
}

// Records 1 to 7, of which 4 and 6 are free blocks of 8 and 30 bytes.
StoreFiles const & sampleFiles()
{
  static StoreFiles const files = [] {
    TempFolder const folder;
    {
      GPDataFile store = openIn(folder);
      for (int id = 1; id <= 7; ++id) put(store, id, textOf(id));
      for (int const id : {4, 6}) store.DeleteRec(id);
    }
    return StoreFiles{folder.Read("a.si"), folder.Read("a.sr")};
  }();
  return files;
}

// The records as one store tells them; those without bytes aren't there.
State recordsIn(GPDataFile & store)
{
  State state;
  for (int id = 0; id <= highestID; ++id) state[std::to_string(id)] = get(store, id);
  return state;
}

State throughIndex(TempFolder const & folder)
{
  try {
    GPDataFile store = openIn(folder);
    return recordsIn(store);
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    return {};
  }
}

// Made anew from the blocks' headers, as after an interrupted close.
bool throughHeaders(TempFolder const & folder, State & records)
{
  std::filesystem::remove(folder.Path() / "a.si");
  if (!folder.Has("a.sr")) return false;
  GPDataFile store = openIn(folder);
  if (!store.DegasRecFile()) return false;
  records = recordsIn(store);
  return true;
}

State stateOf(TempFolder const & folder)
{
  State const told = throughIndex(folder);
  State state;
  bool const isSound = throughHeaders(folder, state);
  if (!isSound) state = told;
  bool const agrees = told == state;
  state[chainPart] = isSound || !folder.Has("a.sr") ? "sound" : "unsound";
  state[indexPart] = agrees ? "agrees" : "another";
  return state;
}

Operation onStore(char const * name, std::function<void(GPDataFile &)> step, std::vector<std::string> mayBeTorn = {})
{
  auto prepare = [step] {
    auto const folder = std::make_shared<TempFolder>();
    folder->Write("a.si", sampleFiles().index);
    folder->Write("a.sr", sampleFiles().records);
    return Trial{[folder, step] {
                   GPDataFile store = openIn(*folder);
                   step(store);
                 },
                 [folder] { return stateOf(*folder); }};
  };
  return {.name = name, .prepare = prepare, .mayBeTorn = std::move(mayBeTorn)};
}

// Stored and loaded: a load that raises finds the object stored.
Operation onObject()
{
  Operation operation = onStore("an object", [](GPDataFile & store) {
    GPObArray array;
    array.SetSize(2);
    store.StoreObj(&array, 9);
    delete store.LoadObj(9);
  });
  operation.mayStandBetween = true;
  operation.mayBeTornForGood = {"9"};
  return operation;
}

// So often that they come from memory, before and after one of them is stored. What is loaded is right, or nothing.
Operation onManyLoads()
{
  return onStore("load records again and again", [](GPDataFile & store) {
    for (int i = 0; i < 60; ++i) {
      if (i == 40) put(store, 3, textOf(3));
      int const id = 1 + i % 3;
      std::string const bytes = get(store, id);
      EXPECT_TRUE(bytes == textOf(id) || bytes.empty()) << id << " is '" << bytes << "'";
    }
  });
}

// A write that came short and a mark that fails leave the block with the record's header.
Operation onFreeBlock()
{
  Operation operation = onStore("a new record in a free block", [](GPDataFile & store) { put(store, 9, "12345678"); });
  operation.mayBeTornForGood = {"9"};
  return operation;
}

Operation onNewStore()
{
  auto prepare = [] {
    auto const folder = std::make_shared<TempFolder>();
    return Trial{[folder] {
                   GPDataFile store = openIn(*folder);
                   put(store, 1, "first");
                 },
                 [folder] { return stateOf(*folder); }};
  };
  return {.name = "the first record", .prepare = prepare};
}

}  // namespace

std::vector<Operation> StoreOperations()
{
  std::vector<std::string> const all = {"1", "2", "3", "5", "7", chainPart, indexPart};
  return {
      onNewStore(),
      onStore("open and close", [](GPDataFile &) {}),
      onStore("load a record", [](GPDataFile & store) { get(store, 3); }),
      onManyLoads(),
      onFreeBlock(),
      onStore("a new record at the end", [](GPDataFile & store) { put(store, 9, std::string(60, 'n')); }),
      onStore("a record of the same length", [](GPDataFile & store) { put(store, 3, std::string(16, 'n')); }, {"3"}),
      onStore("a shorter record in its block", [](GPDataFile & store) { put(store, 3, std::string(9, 'n')); }, {"3"}),
      onStore("a shorter record in a free block", [](GPDataFile & store) { put(store, 3, "nnnnnnn"); }),
      onStore("a longer record in a free block", [](GPDataFile & store) { put(store, 3, std::string(20, 'n')); }),
      onStore("a longer record at the end", [](GPDataFile & store) { put(store, 3, std::string(50, 'n')); }),
      onStore("delete a record", [](GPDataFile & store) { store.DeleteRec(3); }),
      onObject(),
      onStore(
          "compact", [](GPDataFile & store) { store.DegasRecFile(); }, all),
      onStore("times", [](GPDataFile & store) { store.SetStatus(CFileStatus()); }),
  };
}
