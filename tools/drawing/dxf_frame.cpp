// Header, tables and end of a DXF drawing.

#include "tools/drawing/dxf_frame.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

#include <fmt/format.h>

namespace {

// Patterns are the usual ones: lengths drawn, left out (below 0) and points (0), multiplied by the drawing's scale.
struct LineType {
  char const * name;
  char const * looks;
  std::span<double const> pattern;
};
constexpr double dashed[] = {0.5, -0.25};
constexpr double center[] = {1.25, -0.25, 0.25, -0.25};
constexpr double divide[] = {0.5, -0.25, 0, -0.25, 0, -0.25};
constexpr double dot[] = {0, -0.25};
constexpr LineType lineTypes[] = {{"CONTINUOUS", "Solid line", {}},
                                  {"DASHED", "__ __ __ __ __ __", dashed},
                                  {"CENTER", "____ _ ____ _ ____", center},
                                  {"DIVIDE", "__ . . __ . . __", divide},
                                  {"DOT", ". . . . . . . . .", dot}};

// The shortest pattern of dashes stands about fifty times in the larger side of the drawing.
constexpr double patternsOnSide = 40;

class TagWriter {
 public:
  TagWriter & Add(int code, std::string_view value)
  {
    fmt::format_to(std::back_inserter(m_Text), "{:3}\r\n{}\r\n", code, value);
    return *this;
  }
  TagWriter & Add(int code, int value)
  {
    fmt::format_to(std::back_inserter(m_Text), "{:3}\r\n{:6}\r\n", code, value);
    return *this;
  }
  TagWriter & Add(int code, double value) { return Add(code, fmt::format("{:.4f}", value)); }
  TagWriter & AddPlace(int x, double left, double bottom) { return Add(x, left).Add(x + 10, bottom); }
  TagWriter & AddPlace(std::string_view variable, double left, double bottom)
  {
    return Add(9, variable).AddPlace(10, left, bottom);
  }
  TagWriter & StartSection(std::string_view name) { return Add(0, "SECTION").Add(2, name); }
  TagWriter & EndSection() { return Add(0, "ENDSEC"); }
  TagWriter & StartTable(std::string_view name, int entries) { return Add(0, "TABLE").Add(2, name).Add(70, entries); }
  TagWriter & EndTable() { return Add(0, "ENDTAB"); }

  std::string Take() { return std::move(m_Text); }

 private:
  std::string m_Text;
};

double sideOf(DxfExtent const & extent)
{
  double const width = static_cast<double>(extent.right) - extent.left;
  double const height = static_cast<double>(extent.top) - extent.bottom;
  return std::max({width, height, 1.0});
}

void addHeader(TagWriter & tags, DxfExtent const & extent)
{
  tags.StartSection("HEADER");
  tags.Add(9, "$ACADVER").Add(1, "AC1009");
  tags.Add(9, "$DWGCODEPAGE").Add(3, "ANSI_1252");
  tags.AddPlace("$INSBASE", 0, 0).Add(30, 0.0);
  tags.AddPlace("$EXTMIN", extent.left, extent.bottom).Add(30, 0.0);
  tags.AddPlace("$EXTMAX", extent.right, extent.top).Add(30, 0.0);
  tags.AddPlace("$LIMMIN", extent.left, extent.bottom);
  tags.AddPlace("$LIMMAX", extent.right, extent.top);
  tags.Add(9, "$LTSCALE").Add(40, sideOf(extent) / patternsOnSide);
  tags.EndSection();
}

// The view that a reader opens with: the whole drawing, and a margin.
void addViewport(TagWriter & tags, DxfExtent const & extent)
{
  double const width = static_cast<double>(extent.right) - extent.left;
  double const height = std::max(static_cast<double>(extent.top) - extent.bottom, 1.0);
  tags.StartTable("VPORT", 1);
  tags.Add(0, "VPORT").Add(2, "*ACTIVE").Add(70, 0);
  tags.AddPlace(10, 0, 0).AddPlace(11, 1, 1);
  tags.AddPlace(12, extent.left + width / 2, extent.bottom + height / 2);
  tags.AddPlace(13, 0, 0).AddPlace(14, 1, 1).AddPlace(15, 0, 0);
  tags.AddPlace(16, 0, 0).Add(36, 1.0);
  tags.AddPlace(17, 0, 0).Add(37, 0.0);
  tags.Add(40, height * 1.1).Add(41, 1.5).Add(42, 50.0).Add(43, 0.0).Add(44, 0.0).Add(50, 0.0).Add(51, 0.0);
  for (int const flag : {71, 72, 73, 74, 75, 76, 77, 78}) tags.Add(flag, flag == 72 ? 100 : flag == 73 || flag == 74 ? 1 : 0);
  tags.EndTable();
}

void addLineTypes(TagWriter & tags)
{
  tags.StartTable("LTYPE", static_cast<int>(std::size(lineTypes)));
  for (LineType const & type : lineTypes) {
    double length = 0;
    for (double const piece : type.pattern) length += std::abs(piece);
    tags.Add(0, "LTYPE").Add(2, type.name).Add(70, 0).Add(3, type.looks);
    tags.Add(72, 65).Add(73, static_cast<int>(type.pattern.size())).Add(40, length);
    for (double const piece : type.pattern) tags.Add(49, piece);
  }
  tags.EndTable();
}

void addLayers(TagWriter & tags)
{
  tags.StartTable("LAYER", 2);
  for (char const * const layer : {"0", "FS_OBJECT"})
    tags.Add(0, "LAYER").Add(2, layer).Add(70, 0).Add(62, 7).Add(6, "CONTINUOUS");
  tags.EndTable();
}

void addTextStyle(TagWriter & tags)
{
  tags.StartTable("STYLE", 1);
  tags.Add(0, "STYLE").Add(2, "STANDARD").Add(70, 0).Add(40, 0.0).Add(41, 1.0).Add(50, 0.0).Add(71, 0);
  tags.Add(42, 1.0).Add(3, "txt").Add(4, "");
  tags.EndTable();
}

}  // namespace

std::string DxfHead(DxfExtent const & extent)
{
  TagWriter tags;
  addHeader(tags, extent);
  tags.StartSection("TABLES");
  addViewport(tags, extent);
  addLineTypes(tags);
  addLayers(tags);
  addTextStyle(tags);
  tags.EndSection();
  tags.StartSection("BLOCKS").EndSection();
  tags.StartSection("ENTITIES");
  return tags.Take();
}

std::string DxfTail()
{
  return TagWriter().EndSection().Add(0, "EOF").Take();
}
