// The peers: Eigen and OpenBLAS, each where it is installed. They may fuse and reorder.
#include "bench/numeric_peers.h"

#if defined(ZP_HAVE_EIGEN)
#include <Eigen/Dense>
#endif
#if defined(ZP_HAVE_OPENBLAS)
#include <cblas.h>
#endif

namespace bench {

#if defined(ZP_HAVE_EIGEN)
namespace {

using Matrix = Eigen::Map<Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
using ConstMatrix = Eigen::Map<Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> const>;
using Vector = Eigen::Map<Eigen::VectorXd>;
using ConstVector = Eigen::Map<Eigen::VectorXd const>;

Eigen::Index size(std::size_t n)
{
  return static_cast<Eigen::Index>(n);
}

Matrix matrix(double * m, std::size_t n)
{
  return {m, size(n), size(n)};
}

ConstMatrix matrix(double const * m, std::size_t n)
{
  return {m, size(n), size(n)};
}

}  // namespace

NumericWay const eigen = {
    "Eigen",
    [](double * out, double const * a, double const * b, std::size_t n) {
      matrix(out, n).noalias() = matrix(a, n) * matrix(b, n);
    },
    [](double * out, double const * m, double const * v, std::size_t n) {
      Vector(out, size(n)).noalias() = matrix(m, n) * ConstVector(v, size(n));
    },
    [](double * out, double const * v, double const * m, std::size_t n) {
      Vector(out, size(n)).noalias() = matrix(m, n).transpose() * ConstVector(v, size(n));
    },
    [](double * a, double const * b, std::size_t n) { Vector(a, size(n)) += ConstVector(b, size(n)); },
    [](double * a, double const * b, std::size_t n) { Vector(a, size(n)).array() *= ConstVector(b, size(n)).array(); },
    [](double * a, double const * b, std::size_t n) { Vector(a, size(n)).array() /= ConstVector(b, size(n)).array(); },
    [](double * a, double by, std::size_t n) { Vector(a, size(n)) *= by; },
    [](double const * a, std::size_t n) { return ConstVector(a, size(n)).sum(); },
    [](double const * a, double const * b, std::size_t n) { return ConstVector(a, size(n)).dot(ConstVector(b, size(n))); },
    [](double * out, double const * m, std::size_t n) { matrix(out, n) = matrix(m, n).transpose(); }};
#endif

#if defined(ZP_HAVE_OPENBLAS)
void useOneThread()
{
  openblas_set_num_threads(1);
}

namespace {

void multiplyVector(CBLAS_TRANSPOSE turned, double * out, double const * m, double const * v, std::size_t n)
{
  auto const size = static_cast<int>(n);
  cblas_dgemv(CblasRowMajor, turned, size, size, 1.0, m, size, v, 1, 0.0, out, 1);
}

}  // namespace

NumericWay const openBlas = {
    "OpenBLAS",
    [](double * out, double const * a, double const * b, std::size_t n) {
      auto const size = static_cast<int>(n);
      cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, size, size, size, 1.0, a, size, b, size, 0.0, out, size);
    },
    [](double * out, double const * m, double const * v, std::size_t n) { multiplyVector(CblasNoTrans, out, m, v, n); },
    [](double * out, double const * v, double const * m, std::size_t n) { multiplyVector(CblasTrans, out, m, v, n); },
    [](double * a, double const * b, std::size_t n) { cblas_daxpy(static_cast<int>(n), 1.0, b, 1, a, 1); },
    nullptr,
    nullptr,
    [](double * a, double by, std::size_t n) { cblas_dscal(static_cast<int>(n), by, a, 1); },
    nullptr,
    [](double const * a, double const * b, std::size_t n) { return cblas_ddot(static_cast<int>(n), a, 1, b, 1); },
    nullptr};
#endif

}  // namespace bench
