// Union and intersection of ascending lists of integers, each in one pass over both.

#include "numeric/sets_internal.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr std::int64_t nothing = std::numeric_limits<std::int64_t>::min();  // differs from every element

int const * skipEqual(int const * at, int const * end, std::int64_t value)
{
  return std::find_if(at, end, [value](int element) { return element != value; });
}

// Calls take with the elements in front of both lists and passes over the smaller one, or over both, until one list ends.
template <class Take>
void walkTogether(int const *& a, int const * endA, int const *& b, int const * endB, Take take)
{
  while (a != endA && b != endB) {
    int const fromA = *a;
    int const fromB = *b;
    take(fromA, fromB);
    a += fromA <= fromB;
    b += fromB <= fromA;
  }
}

}  // namespace

namespace zp {

std::size_t Unite(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB)
{
  int const * const endA = a + sizeA;
  int const * const endB = b + sizeB;
  int * to = out;
  std::int64_t last = nothing;
  walkTogether(a, endA, b, endB, [&](int fromA, int fromB) {
    int const value = std::min(fromA, fromB);
    *to = value;
    to += value != last;
    last = value;
  });
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
  walkTogether(a, endA, b, endB, [&](int fromA, int fromB) {
    if (fromA == fromB && fromA != last) last = *to++ = fromA;
  });
  return static_cast<std::size_t>(to - out);
}

}  // namespace zp
