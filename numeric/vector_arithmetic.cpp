// GPVector's arithmetic and reductions: the compound operators in place, the free ones into a new vector or into one that is
// about to vanish.

#include <zpbase/numeric.h>

#include <cmath>
#include <utility>

#include "numeric/kernels_internal.h"
#include "numeric/storage_internal.h"
#include "numeric/sums_internal.h"

namespace {

using Pairwise = zp::ElementKernels<double>::Pairwise;
using WithScalar = zp::ElementKernels<double>::WithScalar;

zp::ElementKernels<double> const & kernels()
{
  return zp::GetKernels().doubles;
}

void apply(Pairwise kernel, GPVector & left, GPVector const & right)
{
  kernel(left.ArrayPtr(), left.ArrayPtr(), right.ArrayPtr(), zp::ElementAccess::Count(left));
}

void apply(WithScalar kernel, GPVector & left, double right)
{
  kernel(left.ArrayPtr(), left.ArrayPtr(), right, zp::ElementAccess::Count(left));
}

GPVector combine(Pairwise kernel, GPVector const & left, GPVector const & right)
{
  GPVector result = zp::ElementAccess::MakeVector(left.GetSize());
  kernel(result.ArrayPtr(), left.ArrayPtr(), right.ArrayPtr(), zp::ElementAccess::Count(left));
  return result;
}

GPVector combine(WithScalar kernel, GPVector const & left, double right)
{
  GPVector result = zp::ElementAccess::MakeVector(left.GetSize());
  kernel(result.ArrayPtr(), left.ArrayPtr(), right, zp::ElementAccess::Count(left));
  return result;
}

}  // namespace

double GPVector::Norm() const
{
  return std::sqrt(SqrNorm());
}

double GPVector::GetPivot() const
{
  return zp::GetKernels().largestMagnitude(ArrayPtr(), Count());
}

double GPVector::Sum() const
{
  return zp::Sum(ArrayPtr(), Count());
}

double GPVector::DotProduct(GPVector const & other) const
{
  return zp::DotProduct(ArrayPtr(), other.ArrayPtr(), Count());
}

double GPVector::DotProduct(GPIntVector const & other) const
{
  return zp::DotProduct(ArrayPtr(), other.ArrayPtr(), Count());
}

double GPVector::StdDevP(int includeZeros) const
{
  double const * const elements = ArrayPtr();
  double n = 0.0;
  double sum = 0.0;
  double squares = 0.0;
  for (std::size_t i = 0; i < Count(); ++i) {
    if (!includeZeros && elements[i] == 0.0) continue;
    n += 1.0;
    sum += elements[i];
    squares += elements[i] * elements[i];
  }
  return n < 2.0 ? 0.0 : std::sqrt((n * squares - sum * sum) / (n * n));
}

// The line is measured back from the upper point, so that an abscissa of the table gives exactly its ordinate.
double GPVector::Interpolate(GPVector const & ordinates, double const & abscissa) const
{
  if (IsEmpty() || ordinates.IsEmpty()) return 0.0;
  int upper = 0;
  while (upper < GetSize() && (*this)[upper] < abscissa) ++upper;
  if (upper == GetSize()) return ordinates[upper - 1];
  if (upper == 0) return ordinates[0];
  double const y = ordinates[upper];
  double const step = (*this)[upper] - (*this)[upper - 1];
  return y - (y - ordinates[upper - 1]) * ((*this)[upper] - abscissa) / step;
}

GPVector & GPVector::operator+=(double const & right)
{
  apply(kernels().addScalar, *this, right);
  return *this;
}

GPVector & GPVector::operator+=(GPVector const & right)
{
  apply(kernels().add, *this, right);
  return *this;
}

GPVector & GPVector::operator-=(double const & right)
{
  apply(kernels().subtractScalar, *this, right);
  return *this;
}

GPVector & GPVector::operator-=(GPVector const & right)
{
  apply(kernels().subtract, *this, right);
  return *this;
}

GPVector & GPVector::operator*=(double const & right)
{
  apply(kernels().multiplyScalar, *this, right);
  return *this;
}

GPVector & GPVector::operator*=(GPVector const & right)
{
  apply(kernels().multiply, *this, right);
  return *this;
}

GPVector & GPVector::operator/=(double const & right)
{
  apply(zp::GetKernels().divideScalar, *this, right);
  return *this;
}

GPVector & GPVector::operator/=(GPVector const & right)
{
  apply(zp::GetKernels().divideGuarded, *this, right);
  return *this;
}

GPVector operator+(GPVector const & left, double const & right)
{
  return combine(kernels().addScalar, left, right);
}
GPVector operator+(GPVector && left, double const & right)
{
  return std::move(left += right);
}
GPVector operator+(double const & left, GPVector const & right)
{
  return right + left;
}
GPVector operator+(double const & left, GPVector && right)
{
  return std::move(right += left);
}
GPVector operator+(GPVector const & left, GPVector const & right)
{
  return combine(kernels().add, left, right);
}
GPVector operator+(GPVector && left, GPVector const & right)
{
  return std::move(left += right);
}

GPVector operator-(GPVector const & left, double const & right)
{
  return combine(kernels().subtractScalar, left, right);
}
GPVector operator-(GPVector && left, double const & right)
{
  return std::move(left -= right);
}
GPVector operator-(GPVector const & left, GPVector const & right)
{
  return combine(kernels().subtract, left, right);
}
GPVector operator-(GPVector && left, GPVector const & right)
{
  return std::move(left -= right);
}

GPVector operator*(GPVector const & left, double const & right)
{
  return combine(kernels().multiplyScalar, left, right);
}
GPVector operator*(GPVector && left, double const & right)
{
  return std::move(left *= right);
}
GPVector operator*(double const & left, GPVector const & right)
{
  return right * left;
}
GPVector operator*(double const & left, GPVector && right)
{
  return std::move(right *= left);
}
GPVector operator*(GPVector const & left, GPVector const & right)
{
  return combine(kernels().multiply, left, right);
}
GPVector operator*(GPVector && left, GPVector const & right)
{
  return std::move(left *= right);
}

GPVector operator/(GPVector const & left, double const & right)
{
  return combine(zp::GetKernels().divideScalar, left, right);
}
GPVector operator/(GPVector && left, double const & right)
{
  return std::move(left /= right);
}
GPVector operator/(GPVector const & left, GPVector const & right)
{
  return combine(zp::GetKernels().divideGuarded, left, right);
}
GPVector operator/(GPVector && left, GPVector const & right)
{
  return std::move(left /= right);
}
