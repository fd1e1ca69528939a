// Work over whole arrays that runs in a given order or depends on it: sums term by term, sorting, sets in ascending lists, and
// the transpose of a matrix.
#pragma once

#include <cstddef>

namespace zp {

// Sums from 0.0 in ascending order, one rounding for each multiplication and addition.
double Sum(double const * values, std::size_t n);
double DotProduct(double const * a, double const * b, std::size_t n);
double DotProduct(double const * a, int const * b, std::size_t n);

// Ascending; NaNs with the sign set go to the front, the others to the end.
void SortDoubles(double * values, std::size_t n);

// Ascending by the 32-bit difference of two values, which is no order when values lie further apart than 2^31 - 1: then the
// result is some arrangement of them.
void SortInts(int * values, std::size_t n);

// The union or the intersection of two ascending lists; returns the count written. out holds as many as both, or as the shorter.
// Equal values become one, except in the tail of a union, where only one list has values left: it is copied as it stands.
std::size_t Unite(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB);
std::size_t Intersect(int * out, int const * a, std::size_t sizeA, int const * b, std::size_t sizeB);

// out (cols x rows) from m (rows x cols), which don't overlap.
void Transpose(double * out, double const * m, std::size_t rows, std::size_t cols);

}  // namespace zp
