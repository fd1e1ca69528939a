// The operations that faults are put into, and what each may leave behind.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

// What there is to see after an operation, by name.
using State = std::map<std::string, std::string>;

// Parts of a store's state: whether its index tells what the blocks' headers tell, and whether these form a sound chain.
inline constexpr char const * indexPart = "index";
inline constexpr char const * chainPart = "chain";

// One operation on a subject of its own.
struct Trial {
  std::function<void()> act;     // may raise what the library raises
  std::function<State()> state;  // looked at without faults
};

struct Operation {
  friend void PrintTo(Operation const & operation, std::ostream * out) { *out << operation.name; }

  std::string name;
  std::function<Trial()> prepare;

  // By default each part of the state is as before or as after the operation, and as before if it raised. Parts of which the
  // header says that a failed write or read may leave them otherwise:
  std::vector<std::string> mayBeTorn = {};
  std::vector<std::string> mayMove = {};           // parts that may be otherwise where memory runs out
  bool mayStandBetween = false;                    // what it raises may leave some parts as after the operation
  std::vector<std::string> mayBeTornForGood = {};  // as mayBeTorn, where the host can't clean up either
  bool leavesCache = false;                        // the library keeps what it has read
};

std::vector<Operation> StoreOperations();
std::vector<Operation> FileOperations();
std::vector<Operation> ContainerOperations();
std::vector<Operation> SettingsOperations();
