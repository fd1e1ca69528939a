// Union and intersection of ascending lists of integers, each in one pass over both.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "numeric/sets_internal.h"

namespace {

constexpr std::int64_t nothing = std::numeric_limits<std::int64_t>::min();  // differs from every element

int const * skipEqual(int const * at, int const * end, std::int64_t value)
{
  return std::find_if(at, end, [value](int element) { return element != value; });
}

}  // namespace

namespace zp {

std::size_t Unite(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB)
{
  int const * const endA = a + sizeA;
  int const * const endB = b + sizeB;
  int * to = out;
  std::int64_t last = nothing;
  while (a != endA && b != endB) {
    int const fromA = *a;
    int const fromB = *b;
    int const value = std::min(fromA, fromB);
    *to = value;
    to += value != last;
    last = value;
    a += fromA <= fromB;
    b += fromB <= fromA;
  }
  to = std::copy(skipEqual(a, endA, last), endA, to);
  to = std::copy(skipEqual(b, endB, last), endB, to);
  return static_cast<std::size_t>(to - out);
}

std::size_t Intersect(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB)
{
  int const * const endA = a + sizeA;
  int const * const endB = b + sizeB;
  int * to = out;
  std::int64_t last = nothing;
  while (a != endA && b != endB) {
    int const fromA = *a;
    int const fromB = *b;
    if (fromA == fromB && fromA != last) last = *to++ = fromA;
    a += fromA <= fromB;
    b += fromB <= fromA;
  }
  return static_cast<std::size_t>(to - out);
}

}  // namespace zp
