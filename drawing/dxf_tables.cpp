// What colours and pen styles are in DXF.

#include <zpbase/drawing.h>

#include "drawing/entity_text_internal.h"

namespace {

struct ColorRow {
  constexpr ColorRow(COLORREF rowColor, int rowNumber) : color(rowColor), number(rowNumber)
  {
    size_t at = sizeof columns;
    for (int rest = number; rest != 0; rest /= 10) columns[--at] = static_cast<char>('0' + rest % 10);
  }

  COLORREF color;
  int number;
  char columns[zp::colorColumns] = {' ', ' ', ' ', ' ', ' ', ' '};  // as a record holds it
};

// The first row counts.
constexpr ColorRow colorRows[] = {
    {0x000000, 7},   {0x000080, 14}, {0x008000, 74}, {0x008080, 44}, {0x800000, 164}, {0x800080, 202}, {0x808000, 124},
    {0xC0C0C0, 254}, {0xC0DCC0, 74}, {0xF0CAA6, 5},  {0xF0FBFF, 41}, {0xA4A0A0, 254}, {0x808080, 252}, {0x0000FF, 1},
    {0x00FF00, 3},   {0x00FFFF, 2},  {0xFF0000, 5},  {0xFF00FF, 6},  {0xFFFF00, 4},   {0xFFFFFF, 41},
};
constexpr ColorRow const & otherColor = colorRows[0];

ColorRow const & rowOf(COLORREF color)
{
  for (ColorRow const & row : colorRows)
    if (row.color == color) return row;
  return otherColor;
}

}  // namespace

char const * zp::ColorColumnsOf(COLORREF color)
{
  return rowOf(color).columns;
}

int DXFColorFromCOLORREF(COLORREF color)
{
  return rowOf(color).number;
}

std::string_view zp::LineTypeOf(UINT penStyle)
{
  switch (penStyle & PS_STYLE_MASK) {
    case PS_DASH:
      return "DASHED";
    case PS_DASHDOT:
      return "CENTER";
    case PS_DASHDOTDOT:
      return "DIVIDE";
    case PS_DOT:
      return "DOT";
    default:
      return "CONTINUOUS";
  }
}

char const * DXFLineTypeFromPenStyle(UINT style)
{
  return zp::LineTypeOf(style).data();
}
