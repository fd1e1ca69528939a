// GPMatrix's arithmetic and its products with vectors and matrices.

#include <zpbase/numeric.h>

#include <utility>

#include "numeric/kernels_internal.h"
#include "numeric/storage_internal.h"

namespace {

zp::ElementKernels<double> const & kernels()
{
  return zp::GetKernels().doubles;
}

GPMatrix combine(zp::ElementKernels<double>::Pairwise kernel, GPMatrix const & left, GPMatrix const & right)
{
  GPMatrix result = zp::ElementAccess::MakeMatrix(left.GetRows(), left.GetCols());
  kernel(result.ArrayPtr(), left.ArrayPtr(), right.ArrayPtr(), zp::ElementAccess::Count(left));
  return result;
}

std::size_t rowsOf(GPMatrix const & matrix)
{
  return static_cast<std::size_t>(matrix.GetRows());
}
std::size_t colsOf(GPMatrix const & matrix)
{
  return static_cast<std::size_t>(matrix.GetCols());
}

}  // namespace

GPMatrix & GPMatrix::operator+=(GPMatrix const & right)
{
  kernels().add(ArrayPtr(), ArrayPtr(), right.ArrayPtr(), Count());
  return *this;
}

GPMatrix & GPMatrix::operator-=(GPMatrix const & right)
{
  kernels().subtract(ArrayPtr(), ArrayPtr(), right.ArrayPtr(), Count());
  return *this;
}

GPMatrix & GPMatrix::operator*=(double const & right)
{
  kernels().multiplyScalar(ArrayPtr(), ArrayPtr(), right, Count());
  return *this;
}

GPMatrix operator+(GPMatrix const & left, GPMatrix const & right)
{
  return combine(kernels().add, left, right);
}
GPMatrix operator+(GPMatrix && left, GPMatrix const & right)
{
  return std::move(left += right);
}
GPMatrix operator-(GPMatrix const & left, GPMatrix const & right)
{
  return combine(kernels().subtract, left, right);
}
GPMatrix operator-(GPMatrix && left, GPMatrix const & right)
{
  return std::move(left -= right);
}

GPMatrix operator*(GPMatrix const & left, double const & right)
{
  GPMatrix result = zp::ElementAccess::MakeMatrix(left.GetRows(), left.GetCols());
  kernels().multiplyScalar(result.ArrayPtr(), left.ArrayPtr(), right, zp::ElementAccess::Count(left));
  return result;
}

GPMatrix operator*(GPMatrix && left, double const & right)
{
  return std::move(left *= right);
}
GPMatrix operator*(double const & left, GPMatrix const & right)
{
  return right * left;
}
GPMatrix operator*(double const & left, GPMatrix && right)
{
  return std::move(right *= left);
}

GPVector operator*(GPVector const & v, GPMatrix const & m)
{
  GPVector result = zp::ElementAccess::MakeVector(m.GetCols());
  zp::GetKernels().vectorMatrix(result.ArrayPtr(), v.ArrayPtr(), m.ArrayPtr(), rowsOf(m), colsOf(m));
  return result;
}

GPVector operator*(GPMatrix const & m, GPVector const & v)
{
  GPVector result = zp::ElementAccess::MakeVector(m.GetRows());
  zp::GetKernels().matrixVector(result.ArrayPtr(), m.ArrayPtr(), v.ArrayPtr(), rowsOf(m), colsOf(m));
  return result;
}

GPMatrix operator*(GPMatrix const & a, GPMatrix const & b)
{
  GPMatrix result = zp::ElementAccess::MakeMatrix(a.GetRows(), b.GetCols());
  zp::GetKernels().product(result.ArrayPtr(), a.ArrayPtr(), b.ArrayPtr(), rowsOf(a), colsOf(a), colsOf(b));
  return result;
}
