// Whether the two files of a store keep every promise of their format.
#pragma once

#include <string>
#include <vector>

#include "tools/store/block_survey.h"
#include "tools/store/open_store.h"

struct StoreFault {
  std::string file;
  long long offset;  // -1 for an entry of the index, which its text tells
  std::string text;
};

struct CheckReport {
  Survey survey;
  std::vector<StoreFault> faults;  // those of the index file first, then by offset; at most so many
  static constexpr size_t mostFaults = 10000;
  size_t faultCount = 0;
  std::vector<std::string> notes;  // what is no fault, but can't be looked into
  size_t records = 0;              // live blocks
  size_t freeBlocks = 0;
};

enum class CheckDepth {
  Blocks,  // both files and each against the other
  Objects  // what the records hold as well
};

// Changes neither file.
CheckReport CheckStore(OpenStore & store, CheckDepth depth = CheckDepth::Objects);

// Raises Failure with the first fault, if there is one.
void RequireSound(CheckReport const & report);
