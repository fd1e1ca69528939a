// Sorting numbers in orders that hold for all of them.
#pragma once

#include <cstddef>

namespace zp {

// Ascending; NaNs with the sign set go to the front, the others to the end.
void SortDoubles(double * values, std::size_t n);

// Ascending by the 32-bit difference of two values, which is no order when values lie further apart than 2^31 - 1: then the
// result is some arrangement of them.
void SortInts(int * values, std::size_t n);

}  // namespace zp
