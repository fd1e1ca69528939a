// One entity of a DXF drawing, put together from its groups.
#pragma once

#include <cstdint>
#include <string>

#include "tools/drawing/dxf_tags.h"

enum class DxfKind { Line, Point, Circle, Arc, Text };
inline constexpr size_t dxfKinds = 5;

char const * NameOf(DxfKind kind);  // as the file spells it

// Places and lengths are in drawing units, y upwards, angles in degrees against the clock. What a kind doesn't have is 0.
struct DxfEntity {
  DxfKind kind;
  int color;  // 1 to 255
  double x;
  double y;
  double endX;  // of a line
  double endY;
  double radius;
  double startAngle;
  double endAngle;
  double height;  // of a text's capitals
  double widthFactor;
  std::string text;      // Windows-1252
  std::string lineType;  // of a line
  std::string layer;
};

class DxfEntityBuilder {
 public:
  // False, with nothing begun, for a name that is no kind of ours.
  bool Begin(std::string_view name);

  // What is wrong with this group, or an empty text.
  std::string Take(DxfTag const & tag);

  // What is missing or impossible in the whole, or an empty text.
  std::string Judge() const;

  DxfEntity const & Get() const { return m_Entity; }

 private:
  bool Has(int code) const { return (m_nSeen >> code & 1) != 0; }
  bool Note(int code);
  std::string TakeNumber(DxfTag const & tag);

  DxfEntity m_Entity = {};
  uint64_t m_nSeen = 0;  // a bit for each group code
};
