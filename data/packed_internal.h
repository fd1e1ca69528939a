// The little-endian elements of a packed area, at any alignment.

#pragma once

#include <bit>
#include <cstring>

#include <zpbase/platform/types.h>

namespace zp {

template <class Element>
void SwapToLittle(Element & value)
{
  if constexpr (std::endian::native == std::endian::little) return;
  BYTE bytes[sizeof value];
  BYTE swapped[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  for (size_t i = 0; i < sizeof value; ++i) swapped[i] = bytes[sizeof value - 1 - i];
  std::memcpy(&value, swapped, sizeof value);
}

template <class Element>
Element GetPacked(BYTE const * place)
{
  Element value;
  std::memcpy(&value, place, sizeof value);
  SwapToLittle(value);
  return value;
}

template <class Element>
void PutPacked(BYTE * place, Element value)
{
  SwapToLittle(value);
  std::memcpy(place, &value, sizeof value);
}

}  // namespace zp
