// A session of a store with every write that reached its two files, so that a test can make the states that a crash leaves.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include <zpbase/platform/types.h>

struct WriteEvent {
  enum Kind { Create, Bytes, Length };

  int file;  // 0 the record file, 1 the index file
  Kind kind;
  LONGLONG position;  // or the new length
  std::string bytes;
};

// The two files, as far as they exist.
struct StoreImage {
  std::array<bool, 2> exists = {};
  std::array<std::string, 2> bytes;

  void Apply(WriteEvent const & event);
  void WriteTo(std::string const & folder) const;
  static StoreImage ReadFrom(std::string const & folder);
  bool operator==(StoreImage const &) const = default;
};

using Records = std::map<int, std::string>;

struct SessionStep {
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
// closing it now and then: by the library, or each step as a run of the program.
RecordedSession RecordSession(std::string const & folder, unsigned int seed, bool byProgram);

// Nothing reaches standard output and standard error while it lives.
class Silence {
 public:
  Silence();
  ~Silence();
  Silence(Silence const &) = delete;
  Silence & operator=(Silence const &) = delete;

 private:
  std::array<int, 2> m_Kept;
};

// A command of zp in this process, silent: its exit status.
int RunSilently(std::vector<std::string> const & arguments);
