// The one transformation of coordinates: Y is written as the drawing's height less Y. Sums are taken in 64 bits, so that none
// overflows.
#pragma once

#include <cstdint>

#include <zpbase/drawing.h>

namespace zp {

inline int64_t Flipped(int64_t y)
{
  return int64_t{DXFDC::DrawingHeight} - y;
}

inline double Flipped(double y)
{
  return DXFDC::DrawingHeight - y;
}

inline int64_t Flipped(LONG y)
{
  return Flipped(int64_t{y});
}

}  // namespace zp
