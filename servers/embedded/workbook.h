// A workbook in memory: its sheets in order, each with its cells, and the charts among them by name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "servers/embedded/cell_store.h"
#include "servers/embedded/properties.h"
#include "servers/embedded/unkept.h"

namespace embedded {

enum class SheetKind : unsigned char { Worksheet, Chart };

enum class Visibility : unsigned char { Visible, Hidden, VeryHidden };

struct Sheet {
  SheetKind kind = SheetKind::Worksheet;
  std::string name;  // UTF-8, of 1 to mostNameUnits 16-bit characters, unlike that of every other sheet without case
  Visibility visibility = Visibility::Visible;
  std::string tabColor;       // attributes of the format's, each with a blank in front; empty for none
  bool rightToLeft = false;   // of a worksheet, as what follows
  double defaultWidth = 0.0;  // of its columns, in characters; 0 for the usual one
  CellStore cells;
};

struct DefaultFont {
  std::string name = "Calibri";
  double size = 11.0;  // points
};

struct Workbook {
  std::vector<std::unique_ptr<Sheet>> sheets;  // at least one worksheet or chart
  bool from1904 = false;                       // days are counted from 1904
  DefaultFont font;
  Properties properties;
  UnkeptList unkept;  // what the file holds that the workbook doesn't
};

}  // namespace embedded
