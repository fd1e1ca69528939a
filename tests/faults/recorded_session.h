// A session of a store with everything that happened to its files, those of an exchange with them, so that a test can make the
// states that a crash leaves.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <zpbase/platform/types.h>

inline constexpr char const * recordFile = "a.SR";
inline constexpr char const * indexFile = "a.SI";
inline constexpr char const * exchangeMark = "a.SR.compact-swap";

struct WriteEvent {
  enum Kind { Create, Bytes, Length, Rename, Remove, Sync };

  std::string file;  // its name in the folder; empty for the folder itself
  Kind kind;
  LONGLONG position;  // or the new length
  std::string bytes;  // or the new name

  bool IsOfName() const { return kind == Create || kind == Rename || kind == Remove; }
};

// The store's files, and those beside it whose names begin like theirs.
struct StoreImage {
  std::map<std::string, std::string> files;

  bool Has(std::string const & name) const { return files.contains(name); }
  void Apply(WriteEvent const & event);
  void WriteTo(std::string const & folder) const;
  static StoreImage ReadFrom(std::string const & folder);
  bool operator==(StoreImage const &) const = default;
};

using Records = std::map<int, std::string>;

struct SessionStep {
  static constexpr int exchange = -1;  // instead of an id: a step that changes all or nothing, behind those of its records

  int id;
  std::string bytes;  // what was stored; empty for a deletion
  size_t firstEvent;
};

struct SessionCommit {
  size_t events;  // that had happened when the store was closed
  Records records;
};

struct RecordedSession {
  std::vector<WriteEvent> events;
  std::vector<SessionStep> steps;
  std::vector<SessionCommit> commits;
};

// Stores, overwrites, grows, shrinks and deletes records of the store a.SI and a.SR in the folder, by chance from a number,
// closing it now and then: by the library, or each step as a run of the program, which also imports and compacts.
RecordedSession RecordSession(std::string const & folder, unsigned int seed, bool byProgram);

// What the store of that stem in the folder holds by its index, of ids up to 99.
Records LoadRecords(std::string const & folder, std::string const & stem);
