// The DXF records, line by line. A line holds a group code in three columns or its value; CR LF ends each, as the file's own
// lines.

#include "drawing/entity_text_internal.h"

#include <bit>
#include <charconv>
#include <cstring>

#include <zpbase/drawing.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/store.h>

namespace zp {

namespace {

using namespace std::string_view_literals;

// More than any record needs without the characters of a text: nine lines of constants and six numbers of up to 30 characters.
constexpr size_t recordRoom = 512;
constexpr size_t numberRoom = 48;

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

// The text goes where at points; each of these gives the place behind it.
inline char * put(char * at, std::string_view text)
{
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

// The eight digits of a number below 10^8 as little-endian bytes, the first one lowest: halves, then quarters, then single digits
// are divided off side by side.
inline uint64_t eightDigits(uint32_t value)
{
  uint64_t const fours = value / 10000 | static_cast<uint64_t>(value % 10000) << 32;
  uint64_t const hundreds = fours * 10486 >> 20 & 0x0000007F0000007F;
  uint64_t const twos = hundreds | (fours - hundreds * 100) << 16;
  uint64_t const tens = twos * 103 >> 10 & 0x000F000F000F000F;
  return tens | (twos - tens * 10) << 8;
}

// Without a branch for the count of digits, which nobody foresees.
inline char * putCount(char * at, uint64_t value)
{
  if (value >= 100'000'000) return std::to_chars(at, at + numberRoom, value).ptr;
  uint64_t const digits = eightDigits(static_cast<uint32_t>(value));
  int const zeros = std::countr_zero(digits | uint64_t{1} << 56) / 8;  // a lone 0 stays
  WriteLittle(at, (digits | 0x3030303030303030) >> (8 * zeros));
  return at + (8 - zeros);
}

inline char * putInteger(char * at, int64_t value)
{
  *at = '-';
  bool const negative = value < 0;
  uint64_t const count = static_cast<uint64_t>(value);
  return putCount(at + negative, negative ? -count : count);
}

// A group of a whole number, behind the end of the line before.
inline char * putWhole(char * at, std::string_view code, int64_t value)
{
  return put(putInteger(put(at, code), value), ".0"sv);
}

// Two decimals, the nearest to the value and of two that are as near the even one: exact, as the hundredfold of a number's 53
// bits fits in 64.
inline char * putReal(char * at, double value)
{
  constexpr int mantissaBits = 52;
  constexpr uint64_t hiddenBit = uint64_t{1} << mantissaBits;
  auto const bits = std::bit_cast<uint64_t>(value);
  int const exponent = static_cast<int>(bits >> mantissaBits & 0x7FF);
  int const shift = 1075 - exponent;  // how far the point stands in the mantissa
  if (shift <= 0) return std::to_chars(at, at + numberRoom, value, std::chars_format::fixed, 2).ptr;

  uint64_t hundredths = 0;
  if (exponent != 0 && shift < 64) {
    uint64_t const scaled = ((bits & (hiddenBit - 1)) | hiddenBit) * 100;
    uint64_t const rest = scaled & ((uint64_t{1} << shift) - 1);
    uint64_t const half = uint64_t{1} << (shift - 1);
    hundredths = scaled >> shift;
    hundredths += rest + (hundredths & 1) > half ? 1 : 0;
  }
  *at = '-';
  at = putCount(at + (bits >> 63), hundredths / 100);
  int const decimals = static_cast<int>(hundredths % 100);
  *at++ = '.';
  *at++ = static_cast<char>('0' + decimals / 10);
  *at++ = static_cast<char>('0' + decimals % 10);
  return at;
}

}  // namespace

void EntityText::Send()
{
  if (m_pEnd == m_pBegin) return;
  UINT const size = static_cast<UINT>(m_pEnd - m_pBegin);
  m_pEnd = m_pBegin;
  m_File.Write(m_pBegin, size);
}

// Where the next record goes: room for it and a text of that length is there.
char * EntityText::MakeRoom(size_t textLength)
{
  size_t const needed = recordRoom + textLength;
  if (static_cast<size_t>(m_pLimit - m_pEnd) >= needed) return m_pEnd;
  Send();
  if (static_cast<size_t>(m_pLimit - m_pBegin) >= needed) return m_pEnd;
  m_pLongRoom = std::make_unique_for_overwrite<char[]>(needed);
  m_pBegin = m_pEnd = m_pLongRoom.get();
  m_pLimit = m_pBegin + needed;
  return m_pEnd;
}

inline char * EntityText::PutColor(char * at) const
{
  return put(at, {m_pColor, colorColumns});
}

void EntityText::AddLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2)
{
  char * at = put(MakeRoom(), "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\n"sv);
  at = put(put(at, m_LineType), "\r\n 62\r\n"sv);
  at = PutColor(at);
  at = putWhole(at, "\r\n 10\r\n"sv, x1);
  at = putWhole(at, "\r\n 20\r\n"sv, y1);
  at = putWhole(at, "\r\n 11\r\n"sv, x2);
  at = putWhole(at, "\r\n 21\r\n"sv, y2);
  m_pEnd = put(at, "\r\n"sv);
}

void EntityText::AddPoint(int64_t x, int64_t y)
{
  char * at = PutColor(put(MakeRoom(), "  0\r\nPOINT\r\n  8\r\nFS_OBJECT\r\n 62\r\n"sv));
  at = putWhole(at, "\r\n 10\r\n"sv, x);
  at = putWhole(at, "\r\n 20\r\n"sv, y);
  m_pEnd = put(at, "\r\n"sv);
}

void EntityText::AddCircle(int64_t x, int64_t y, int64_t radius)
{
  char * at = PutColor(put(MakeRoom(), "  0\r\nCIRCLE\r\n  8\r\nFS_OBJECT\r\n 62\r\n"sv));
  at = putWhole(at, "\r\n 10\r\n"sv, x);
  at = putWhole(at, "\r\n 20\r\n"sv, y);
  at = putWhole(at, "\r\n 40\r\n"sv, radius);
  m_pEnd = put(at, "\r\n"sv);
}

char * EntityText::PutArcHead()
{
  return PutColor(put(MakeRoom(), "  0\r\nARC\r\n  8\r\nFS_OBJECT\r\n 62\r\n"sv));
}

void EntityText::AddArc(int64_t x, int64_t y, int64_t radius, int start, int end)
{
  char * at = PutArcHead();
  at = putWhole(at, "\r\n 10\r\n"sv, x);
  at = putWhole(at, "\r\n 20\r\n"sv, y);
  at = putWhole(at, "\r\n 40\r\n"sv, radius);
  at = putWhole(at, "\r\n 50\r\n"sv, start);
  at = putWhole(at, "\r\n 51\r\n"sv, end);
  m_pEnd = put(at, "\r\n"sv);
}

// The coordinate along the longer axis has two decimals where the centre has left the middle, all others are whole.
void EntityText::AddOvalArc(Oval const & oval, int index)
{
  OvalArc const & arc = oval.tall ? tallArcs[index] : wideArcs[index];
  double const radius = static_cast<double>(oval.radius);
  double const along = arc.sign * 0.75 * radius;
  int64_t const across = arc.onLongAxis ? 0 : arc.sign * oval.radius;
  int64_t const acrossX = oval.tall ? across : 0;
  int64_t const acrossY = oval.tall ? 0 : across;
  char * at = PutArcHead();
  if (arc.onLongAxis && !oval.tall)
    at = putReal(put(at, "\r\n 10\r\n"sv), static_cast<double>(oval.x) + along);
  else
    at = putWhole(at, "\r\n 10\r\n"sv, oval.x + acrossX);
  if (arc.onLongAxis && oval.tall)
    at = putReal(put(at, "\r\n 20\r\n"sv), static_cast<double>(oval.y) + along);
  else
    at = putWhole(at, "\r\n 20\r\n"sv, oval.y + acrossY);
  at = putReal(put(at, "\r\n 40\r\n"sv), (arc.onLongAxis ? 0.25 : 1.5) * radius);
  m_pEnd = put(put(at, "\r\n 50\r\n"sv), arc.angles);
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
  char * at = PutColor(put(MakeRoom(text.size()), "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n"sv));
  at = putReal(put(at, "\r\n 10\r\n"sv), x);
  at = putReal(put(at, "\r\n 20\r\n"sv), y);
  at = putReal(put(at, "\r\n 40\r\n"sv), height);
  at = put(put(at, "\r\n  1\r\n"sv), text);
  at = putReal(put(at, "\r\n 41\r\n"sv), factor);
  m_pEnd = put(at, "\r\n"sv);
}

}  // namespace zp
