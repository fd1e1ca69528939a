// Ascending lists as sets.
#pragma once

#include <cstddef>

namespace zp {

// The union or the intersection of two ascending lists; returns the count written. out holds as many as both, or as the shorter.
// Equal values become one, except in the tail of a union, where only one list has values left: it is copied as it stands.
std::size_t Unite(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB);
std::size_t Intersect(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB);

}  // namespace zp
