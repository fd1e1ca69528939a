// The part that lists the sheets of a workbook.
#pragma once

#include <string>
#include <vector>

#include "servers/embedded/package.h"
#include "servers/embedded/unkept.h"
#include "servers/embedded/workbook.h"

namespace embedded {

struct SheetEntry {
  std::string name;
  std::string relation;  // its id
  Visibility visibility;
};

struct BookPart {
  std::vector<SheetEntry> sheets;  // in order, at most mostSheets
  bool from1904 = false;
};

// Throws BookFailure for a part that is damaged, beyond a bound, or no list of sheets.
BookPart ReadBookPart(PartStream part, UnkeptList & unkept);

}  // namespace embedded
