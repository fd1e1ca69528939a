// Polynomials up to the fifth degree, the power of ten, and the test of a block for any bit.

#include <zpbase/numeric.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int mostCoefficients = 6;

double powerOf(double x, int exponent)
{
  if (exponent == 0) return 1.0;
  if (exponent == 1) return x;
  return exponent == 2 ? x * x : std::pow(x, static_cast<double>(exponent));
}

}  // namespace

double CalcPolynomial(double x, double a0, double a1, double a2, double a3, double a4, double a5)
{
  return ((((x * a5 + a4) * x + a3) * x + a2) * x + a1) * x + a0;
}

void CalcPolynomial(double const & x, GPVector & coefficients, GPBOOLVector &, double & value, GPVector & powers)
{
  int const n = coefficients.GetSize();
  if (n < 1 || n > mostCoefficients) return;
  double const base = x;
  double a[mostCoefficients] = {};
  for (int i = 0; i < n; ++i) {
    a[i] = coefficients[i];
    powers[i] = powerOf(base, i);
  }
  value = CalcPolynomial(base, a[0], a[1], a[2], a[3], a[4], a[5]);
}

double Pow10(double x)
{
  return std::pow(10.0, x);
}

int AnyBitIsSet(void const * block, unsigned int size)
{
  auto const * const bytes = static_cast<unsigned char const *>(block);
  return std::any_of(bytes, bytes + size, [](unsigned char byte) { return byte != 0; });
}
