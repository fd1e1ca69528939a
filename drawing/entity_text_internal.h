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

// Coordinates are those of the file: Y is flipped. Records go out when the room is used up and at Send; whoever adds sends last.
class EntityText {
 public:
  EntityText(GPFile & file, COLORREF color, UINT penStyle);
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

  void MakeRoom(size_t textLength = 0);
  void Put(std::string_view text);
  void PutInteger(int64_t value);
  void PutReal(double value);
  template <size_t length>
  void PutHead(char const (&head)[length]);
  void PutWhole(std::string_view code, int64_t value);
  void PutArcHead();
  void AddOvalArc(Oval const & oval, int index);

  GPFile & m_File;
  char m_Color[6];  // as a record holds it
  std::string_view m_LineType;
  std::unique_ptr<char[]> m_pLongRoom;  // for a text that the room below is too small for
  char * m_pBegin = m_Room;
  char * m_pEnd = m_Room;
  char * m_pLimit = m_Room + roomSize;
  char m_Room[roomSize];
};

}  // namespace zp
