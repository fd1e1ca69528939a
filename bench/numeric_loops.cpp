// The plain loops, as a caller would write them.
#include "bench/numeric_peers.h"

namespace bench {

namespace {

void product(double * out, double const * a, double const * b, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      double sum = 0.0;
      for (std::size_t k = 0; k < n; ++k) sum += a[i * n + k] * b[k * n + j];
      out[i * n + j] = sum;
    }
  }
}

void matrixVector(double * out, double const * m, double const * v, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) {
    double sum = 0.0;
    for (std::size_t j = 0; j < n; ++j) sum += m[i * n + j] * v[j];
    out[i] = sum;
  }
}

void vectorMatrix(double * out, double const * v, double const * m, std::size_t n)
{
  for (std::size_t j = 0; j < n; ++j) {
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) sum += v[i] * m[i * n + j];
    out[j] = sum;
  }
}

void add(double * a, double const * b, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) a[i] += b[i];
}

void multiply(double * a, double const * b, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) a[i] *= b[i];
}

void divide(double * a, double const * b, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) a[i] /= b[i];
}

void scale(double * a, double by, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) a[i] *= by;
}

double sum(double const * a, std::size_t n)
{
  double total = 0.0;
  for (std::size_t i = 0; i < n; ++i) total += a[i];
  return total;
}

double dotProduct(double const * a, double const * b, std::size_t n)
{
  double total = 0.0;
  for (std::size_t i = 0; i < n; ++i) total += a[i] * b[i];
  return total;
}

void transpose(double * out, double const * m, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) out[j * n + i] = m[i * n + j];
  }
}

}  // namespace

NumericWay const plainLoops = {"plain", product, matrixVector, vectorMatrix, add,      multiply,
                               divide,  scale,   sum,          dotProduct,   transpose};

}  // namespace bench
