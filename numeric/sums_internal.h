// Sums term by term, in a prescribed order.
#pragma once

#include <cstddef>

namespace zp {

// From 0.0 in ascending order, one rounding for each multiplication and addition.
double Sum(double const * values, std::size_t n);
double DotProduct(double const * a, double const * b, std::size_t n);
double DotProduct(double const * a, int const * b, std::size_t n);

}  // namespace zp
