// Sums whose order is promised: one chain of additions each, whatever optimisation the callers are built with.
#include "numeric/sums_internal.h"

namespace zp {

double Sum(double const * values, std::size_t n)
{
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i) sum += values[i];
  return sum;
}

double DotProduct(double const * a, double const * b, std::size_t n)
{
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

double DotProduct(double const * a, int const * b, std::size_t n)
{
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

}  // namespace zp
