// A workbook in memory: its sheets in order, each with its cells, and the charts among them by name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "servers/embedded/cell_store.h"
#include "servers/embedded/unkept.h"

namespace embedded {

enum class SheetKind : unsigned char { Worksheet, Chart };

struct Sheet {
  SheetKind kind = SheetKind::Worksheet;
  std::string name;  // UTF-8, of 1 to mostNameUnits 16-bit characters, unlike that of every other sheet without case
  bool hidden = false;
  CellStore cells;  // empty in a chart
};

struct Workbook {
  std::vector<std::unique_ptr<Sheet>> sheets;  // at least one worksheet or chart
  bool from1904 = false;                       // days are counted from 1904
  UnkeptList unkept;                           // what the file holds that the workbook doesn't
};

}  // namespace embedded
