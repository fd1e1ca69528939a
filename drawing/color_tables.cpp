// The colours that a user picks from or that come one after the other, and the fill patterns.

#include <zpbase/drawing.h>

#include <algorithm>
#include <iterator>

namespace {

struct ColorRow {
  COLORREF color;
  bool skipped;  // by the cycle
};

constexpr ColorRow colorRows[] = {
    {0x000000, false}, {0x800000, false}, {0x008000, false},  {0x808000, false}, {0x000080, false}, {0x800080, false},
    {0x008080, false}, {0xF0CAA6, false}, {0xC0DCC0, false},  {0xC0C0C0, false}, {0xA4A0A0, false}, {0x808080, false},
    {0xFF0000, false}, {0x00FF00, false}, {0xFFFF00, false},  {0x0000FF, false}, {0xFF00FF, false}, {0x00FFFF, true},
    {0xF0FBFF, true},  {0xFFFFFF, true},  {0xFFFFFFFF, true},
};
constexpr int colorCount = std::size(colorRows);

constexpr unsigned int fillPatterns[] = {0xFFFF, HS_CROSS, HS_DIAGCROSS, HS_HORIZONTAL, HS_VERTICAL, HS_BDIAGONAL, HS_FDIAGONAL};
constexpr unsigned int fillPatternCount = std::size(fillPatterns);

}  // namespace

unsigned long GetCOLORREF(int index)
{
  return colorRows[index >= 0 && index < colorCount ? index : 0].color;
}

int GetColorTableIndex(unsigned long color)
{
  for (int i = 0; i < colorCount; ++i)
    if (colorRows[i].color == static_cast<COLORREF>(color)) return i;
  return -1;
}

unsigned long GetNextCOLORREF(unsigned long color)
{
  int next = GetColorTableIndex(color);
  do {
    next = (next + 1) % colorCount;
  } while (colorRows[next].skipped);
  return colorRows[next].color;
}

unsigned int const * GetFillPatternTableAddress()
{
  return fillPatterns;
}

unsigned int GetFillPatternTableSize()
{
  return fillPatternCount;
}

unsigned int GetFillPattern(unsigned int index)
{
  return fillPatterns[index < fillPatternCount ? index : 0];
}

int GetFillPatternTableIndex(unsigned int pattern)
{
  auto const * const found = std::find(std::begin(fillPatterns), std::end(fillPatterns), pattern);
  return found != std::end(fillPatterns) ? static_cast<int>(found - fillPatterns) : -1;
}
