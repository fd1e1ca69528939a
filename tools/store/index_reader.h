// An index file as its bytes tell it, for the tools that mustn't depend on its being sound.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <zpbase/platform/runtime.h>

struct LiveEntry {
  static constexpr unsigned long long noPlace = 0xFFFFFFFF;

  unsigned long long position;
  int id;
  unsigned int length;

  bool HasPlace() const { return position != noPlace; }  // false for a record whose bytes never reached the record file
};

struct FreeEntry {
  unsigned long long position;
  unsigned int capacity;
};

struct StoreIndex {
  enum State { Missing, Sound, UnknownClass, Damaged };

  State state = Missing;
  unsigned long long problemOffset = 0;      // its offset
  std::string problem;                       // one sentence with the offset in the index file
  std::vector<unsigned long long> partEnds;  // of the header object, the table of records and the list of free blocks, as read
  bool isHeaderRead = false;                 // whether header is what the file holds
  std::unique_ptr<CObject> header;
  std::vector<LiveEntry> live;  // in the file's order, as far as it could be read
  std::vector<FreeEntry> free;
};

// Reads the whole file. A missing or empty one is Missing. Raises Failure for one that can't be read at all.
StoreIndex ReadIndex(std::string const & name);
