// The DXF records, line by line. A line holds a group code in three columns or its value; CR LF ends each, as the file's own
// lines.

#include "drawing/entity_text_internal.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include <zpbase/drawing.h>
#include <zpbase/store.h>

namespace zp {

namespace {

using namespace std::string_view_literals;

// More than any record needs without the characters of a text: nine lines of constants and six numbers of up to 30 characters.
constexpr size_t recordRoom = 512;
constexpr size_t numberRoom = 48;
constexpr size_t colorColumns = 6;

// An oval's arc: it lies about a centre on the longer axis, with a quarter of the radius, or on the shorter one, with one and a
// half. sign tells the side; the angles are those of a triangle of sides 3, 4 and 5.
struct OvalArc {
  bool onLongAxis;
  int sign;
  std::string_view angles;  // groups 50 and 51
};

// Two arcs a quarter.
constexpr OvalArc wideArcs[] = {
    {true, 1, "0.0\r\n 51\r\n53.13\r\n"},     {false, -1, "53.13\r\n 51\r\n90.0\r\n"},  {false, -1, "90.0\r\n 51\r\n126.87\r\n"},
    {true, -1, "126.87\r\n 51\r\n180.0\r\n"}, {true, -1, "180.0\r\n 51\r\n233.13\r\n"}, {false, 1, "233.13\r\n 51\r\n270.0\r\n"},
    {false, 1, "270.0\r\n 51\r\n306.87\r\n"}, {true, 1, "306.87\r\n 51\r\n0.0\r\n"},
};
constexpr OvalArc tallArcs[] = {
    {false, -1, "0.0\r\n 51\r\n36.87\r\n"},   {true, 1, "36.87\r\n 51\r\n90.0\r\n"},    {true, 1, "90.0\r\n 51\r\n143.13\r\n"},
    {false, 1, "143.13\r\n 51\r\n180.0\r\n"}, {false, 1, "180.0\r\n 51\r\n216.87\r\n"}, {true, -1, "216.87\r\n 51\r\n270.0\r\n"},
    {true, -1, "270.0\r\n 51\r\n323.13\r\n"}, {false, -1, "323.13\r\n 51\r\n0.0\r\n"},
};
constexpr int quartersOfAnOval = 4;

}  // namespace

EntityText::EntityText(GPFile & file, COLORREF color, UINT penStyle) : m_File(file), m_LineType(DXFLineTypeFromPenStyle(penStyle))
{
  char digits[colorColumns];
  size_t const count =
      static_cast<size_t>(std::to_chars(digits, digits + colorColumns, DXFColorFromCOLORREF(color)).ptr - digits);
  std::memset(m_Color, ' ', colorColumns);
  std::memcpy(m_Color + colorColumns - count, digits, count);
}

void EntityText::Send()
{
  if (m_pEnd == m_pBegin) return;
  UINT const size = static_cast<UINT>(m_pEnd - m_pBegin);
  m_pEnd = m_pBegin;
  m_File.Write(m_pBegin, size);
}

void EntityText::MakeRoom(size_t textLength)
{
  size_t const needed = recordRoom + textLength;
  if (static_cast<size_t>(m_pLimit - m_pEnd) >= needed) return;
  Send();
  if (static_cast<size_t>(m_pLimit - m_pBegin) >= needed) return;
  m_pLongRoom = std::make_unique_for_overwrite<char[]>(needed);
  m_pBegin = m_pEnd = m_pLongRoom.get();
  m_pLimit = m_pBegin + needed;
}

inline void EntityText::Put(std::string_view text)
{
  std::memcpy(m_pEnd, text.data(), text.size());
  m_pEnd += text.size();
}

inline void EntityText::PutInteger(int64_t value)
{
  m_pEnd = std::to_chars(m_pEnd, m_pEnd + numberRoom, value).ptr;
}

// Two decimals. Quarters, which ovals are made of, need no search for the nearest decimal number.
void EntityText::PutReal(double value)
{
  constexpr double exactLimit = 1e15;
  constexpr int parts = 4;
  constexpr std::string_view decimals[parts] = {".00", ".25", ".50", ".75"};
  if (!std::signbit(value) && value < exactLimit) {
    int64_t const count = static_cast<int64_t>(value * parts);
    if (static_cast<double>(count) == value * parts) {
      PutInteger(count / parts);
      Put(decimals[count % parts]);
      return;
    }
  }
  m_pEnd = std::to_chars(m_pEnd, m_pEnd + numberRoom, value, std::chars_format::fixed, 2).ptr;
}

// What stands in front of the colour, and the colour.
template <size_t length>
inline void EntityText::PutHead(char const (&head)[length])
{
  MakeRoom();
  Put({head, length - 1});
  Put({m_Color, colorColumns});
}

// A group of a whole number, behind the end of the line before.
inline void EntityText::PutWhole(std::string_view code, int64_t value)
{
  Put(code);
  PutInteger(value);
  Put(".0"sv);
}

void EntityText::AddLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2)
{
  MakeRoom();
  Put("  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\n"sv);
  Put(m_LineType);
  Put("\r\n 62\r\n"sv);
  Put({m_Color, colorColumns});
  PutWhole("\r\n 10\r\n"sv, x1);
  PutWhole("\r\n 20\r\n"sv, y1);
  PutWhole("\r\n 11\r\n"sv, x2);
  PutWhole("\r\n 21\r\n"sv, y2);
  Put("\r\n"sv);
}

void EntityText::AddPoint(int64_t x, int64_t y)
{
  PutHead("  0\r\nPOINT\r\n  8\r\nFS_OBJECT\r\n 62\r\n");
  PutWhole("\r\n 10\r\n"sv, x);
  PutWhole("\r\n 20\r\n"sv, y);
  Put("\r\n"sv);
}

void EntityText::AddCircle(int64_t x, int64_t y, int64_t radius)
{
  PutHead("  0\r\nCIRCLE\r\n  8\r\nFS_OBJECT\r\n 62\r\n");
  PutWhole("\r\n 10\r\n"sv, x);
  PutWhole("\r\n 20\r\n"sv, y);
  PutWhole("\r\n 40\r\n"sv, radius);
  Put("\r\n"sv);
}

void EntityText::PutArcHead()
{
  PutHead("  0\r\nARC\r\n  8\r\nFS_OBJECT\r\n 62\r\n");
}

void EntityText::AddArc(int64_t x, int64_t y, int64_t radius, int start, int end)
{
  PutArcHead();
  PutWhole("\r\n 10\r\n"sv, x);
  PutWhole("\r\n 20\r\n"sv, y);
  PutWhole("\r\n 40\r\n"sv, radius);
  PutWhole("\r\n 50\r\n"sv, start);
  PutWhole("\r\n 51\r\n"sv, end);
  Put("\r\n"sv);
}

// The coordinate along the longer axis has two decimals where the centre has left the middle, all others are whole.
void EntityText::AddOvalArc(Oval const & oval, int index)
{
  OvalArc const & arc = oval.tall ? tallArcs[index] : wideArcs[index];
  double const radius = static_cast<double>(oval.radius);
  double const along = arc.sign * 0.75 * radius;
  int64_t const across = arc.sign * oval.radius;
  bool const movesX = arc.onLongAxis != oval.tall;
  PutArcHead();
  Put("\r\n 10\r\n"sv);
  if (arc.onLongAxis && movesX)
    PutReal(static_cast<double>(oval.x) + along);
  else
    PutWhole({}, movesX ? oval.x + across : oval.x);
  Put("\r\n 20\r\n"sv);
  if (arc.onLongAxis && !movesX)
    PutReal(static_cast<double>(oval.y) + along);
  else
    PutWhole({}, movesX ? oval.y : oval.y + across);
  Put("\r\n 40\r\n"sv);
  PutReal((arc.onLongAxis ? 0.25 : 1.5) * radius);
  Put("\r\n 50\r\n"sv);
  Put(arc.angles);
}

void EntityText::AddOval(Oval const & oval, Quarters wanted)
{
  for (int quarter = 0; quarter < quartersOfAnOval; ++quarter) {
    if ((wanted >> quarter & 1) == 0) continue;
    AddOvalArc(oval, 2 * quarter);
    AddOvalArc(oval, 2 * quarter + 1);
  }
}

void EntityText::AddText(double x, double y, double height, std::string_view text, double factor)
{
  MakeRoom(text.size());
  PutHead("  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n");
  Put("\r\n 10\r\n"sv);
  PutReal(x);
  Put("\r\n 20\r\n"sv);
  PutReal(y);
  Put("\r\n 40\r\n"sv);
  PutReal(height);
  Put("\r\n  1\r\n"sv);
  Put(text);
  Put("\r\n 41\r\n"sv);
  PutReal(factor);
  Put("\r\n"sv);
}

}  // namespace zp
