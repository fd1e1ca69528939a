// The DXF records of one primitive, put together as text and sent to the file in one write.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include <zpbase/platform/types.h>

class GPFile;

namespace zp {

// The four-centre oval around (x, y), whose longer half-axis is radius and the other one half of that.
struct Oval {
  int64_t x;
  int64_t y;
  int64_t radius;
  bool tall;
};

// Quarters of an oval, counted by their angle from 0; one bit each.
using Quarters = unsigned int;

// The number of a colour, right-aligned in so many columns.
constexpr size_t colorColumns = 6;
char const * ColorColumnsOf(COLORREF color);

// The line type of a pen style, by its low four bits.
std::string_view LineTypeOf(UINT penStyle);

// Coordinates are those of the file: Y is flipped. Records go out when the room is used up and at Send; whoever adds sends last.
class EntityText {
 public:
  // Lines are drawn in the pen's style; nothing else needs one.
  EntityText(GPFile & file, COLORREF color, UINT penStyle) : EntityText(file, color) { m_LineType = LineTypeOf(penStyle); }
  EntityText(GPFile & file, COLORREF color) : m_File(file), m_pColor(ColorColumnsOf(color)) {}
  EntityText(EntityText const &) = delete;
  EntityText & operator=(EntityText const &) = delete;

  void AddLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2);
  void AddPoint(int64_t x, int64_t y);
  void AddCircle(int64_t x, int64_t y, int64_t radius);
  void AddArc(int64_t x, int64_t y, int64_t radius, int start, int end);  // degrees
  void AddOval(Oval const & oval, Quarters quarters);
  void AddText(double x, double y, double height, std::string_view text, double factor);

  void Send();

 private:
  static constexpr size_t roomSize = 16384;

  char * MakeRoom(size_t textLength = 0);
  char * PutColor(char * at) const;
  char * PutArcHead();
  void AddOvalArc(Oval const & oval, int index);

  GPFile & m_File;
  char const * m_pColor;
  std::string_view m_LineType;
  std::unique_ptr<char[]> m_pLongRoom;  // for a text that the room below is too small for
  char * m_pBegin = m_Room;
  char * m_pEnd = m_Room;
  char * m_pLimit = m_Room + roomSize;
  char m_Room[roomSize];
};

}  // namespace zp
