// Products and element-wise kernels: the same bits as the plain loop for every set of kernels that the machine has, at every
// place where tiles, panels, strips and lanes begin and end.

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "numeric/kernels_internal.h"
#include "tests/numeric/containers.h"

namespace {

class Kernels : public testing::TestWithParam<zp::KernelSet> {
 protected:
  void SetUp() override
  {
    if (!zp::UseKernels(GetParam())) GTEST_SKIP() << "this machine lacks it";
  }
  void TearDown() override { zp::UseKernels(); }
};

// Every step is rounded and stored before the next.
GPMatrix plainProduct(GPMatrix const & a, GPMatrix const & b)
{
  GPMatrix result(a.GetRows(), b.GetCols());
  for (int at = 0; at < a.GetRows() * b.GetCols(); ++at) {
    double volatile product = 0.0, sum = 0.0;
    for (int k = 0; k < a.GetCols(); ++k) {
      product = a(at / b.GetCols(), k) * b(k, at % b.GetCols());
      sum = sum + product;
    }
    result.ArrayPtr()[at] = sum;
  }
  return result;
}

TEST_P(Kernels, ProductsEqualThePlainLoop)
{
  struct {
    int rows, inner, cols;
  } const shapes[] = {{1, 1, 1},    {2, 3, 2},      {4, 8, 8},    {5, 7, 9},      {8, 16, 16},    {3, 1, 17},    {13, 64, 31},
                      {97, 33, 65}, {7, 257, 12},   {9, 600, 40}, {100, 256, 64}, {101, 257, 80}, {97, 300, 90}, {1, 40, 50},
                      {50, 40, 1},  {193, 520, 37}, {0, 3, 2},    {3, 2, 0},      {8, 8, 7},      {7, 8, 8},     {16, 259, 7}};
  for (auto const & shape : shapes) {
    GPMatrix const a = randomMatrix(shape.rows, shape.inner, 1);
    GPMatrix const b = randomMatrix(shape.inner, shape.cols, 2);
    EXPECT_TRUE(a * b == plainProduct(a, b)) << shape.rows << " x " << shape.inner << " x " << shape.cols;
  }
}

// Off the boundary of the lanes, with infinities and NaNs among the numbers.
TEST_P(Kernels, SmallProductsEqualThePlainLoopAndReachNoFurther)
{
  for (int rows : {2, 3, 5, 8, 9, 17, 20}) {
    for (int cols : {2, 3, 4, 5, 7, 8, 9, 12, 16, 17, 23, 25, 30}) {
      int const inner = cols % 7 + 1;
      GPMatrix a = randomMatrix(rows, inner, 6);
      GPMatrix b = randomMatrix(inner, cols, 7);
      a(rows - 1, 0) = rows % 2 ? infinity : quietNan;
      b(inner - 1, cols - 1) = -0.0;
      std::vector<double> left = elementsOf(a), out(static_cast<std::size_t>(rows * cols) + 2, 42.0);
      left.insert(left.begin(), 0.0);
      zp::FindKernels(GetParam())->product(&out[1], &left[1], b.ArrayPtr(), rows, inner, cols);
      EXPECT_TRUE(GPMatrix(rows, cols, &out[1]) == plainProduct(a, b)) << rows << " x " << cols;
      EXPECT_EQ(out.front() + out.back(), 84.0);
    }
  }
}

TEST_P(Kernels, ProductsOfNothingAreZeros)
{
  EXPECT_TRUE(GPMatrix(2, 0) * GPMatrix(0, 3) == GPMatrix(2, 3));
  EXPECT_TRUE(GPMatrix(2, 0) * GPVector() == GPVector(2));
  EXPECT_TRUE(GPVector() * GPMatrix(0, 3) == GPVector(3));
}

TEST_P(Kernels, VectorProductsEqualThePlainLoop)
{
  for (int rows : {1, 2, 7, 8, 12, 13, 16, 40, 131}) {
    for (int cols : {1, 2, 3, 8, 15, 16, 19, 33, 300}) {
      GPMatrix const m = randomMatrix(rows, cols, 3);
      GPVector const right = randomVector(cols, 4);
      GPVector const left = randomVector(rows, 5);
      EXPECT_TRUE(GPMatrix(0, m * right) == plainProduct(m, GPMatrix(0, right))) << rows << " x " << cols;
      EXPECT_TRUE(GPMatrix(left * m, 0) == plainProduct(GPMatrix(left, 0), m)) << rows << " x " << cols;
    }
  }
}

TEST_P(Kernels, SumsBeginAtPositiveZeroAndCarryInfinitiesAndNans)
{
  for (int n : {1, 3, 5, 8, 9, 130}) {
    GPMatrix a(n, n, -0.0);
    GPMatrix b(n, n, 1.0);
    EXPECT_TRUE(a * b == GPMatrix(n, n, 0.0)) << n;  // 0.0 + -0.0
    a.Reset(1.0);
    a(n - 1, n - 1) = infinity;
    b(n - 1, 0) = 0.0;
    GPMatrix const product = a * b;
    EXPECT_TRUE(std::isnan(product(n - 1, 0)));
    for (int j = 1; j < n; ++j) EXPECT_EQ(product(n - 1, j), infinity);
    for (int i = 0; i < n - 1; ++i) EXPECT_EQ(product(i, 0), n - 1.0);
    std::feclearexcept(FE_INVALID);
    EXPECT_TRUE(GPMatrix(n, n, infinity) * GPMatrix(n, n, 1.0) == GPMatrix(n, n, infinity));
    EXPECT_FALSE(std::fetestexcept(FE_INVALID)) << "zeros where the operands have none, " << n;
  }
}

TEST_P(Kernels, PivotsEqualThePlainLoop)
{
  for (int n : {0, 1, 7, 15, 16, 17, 31, 33, 64, 99, 999, 1003, 1030}) {
    GPVector values = randomVector(n, 8);
    for (int at = n; at > 0 && at > n - 20; --at) {
      double plain = 0.0;
      for (int i = 0; i < n; ++i) plain = std::fmax(plain, std::fabs(values[i]));
      EXPECT_EQ(values.GetPivot(), plain) << n;
      values[at - 1] = at % 3 == 0 ? -quietNan : at % 3 == 1 ? -1e9 - at : 1e9 + at;
    }
  }
}

// The kernel of two arrays, or of an array and one number.
template <class T, class Right, class Plain>
void expectElementwise(void (*kernel)(T *, T const *, Right, std::size_t), Plain plain)
{
  constexpr bool scalar = std::is_same_v<Right, T>;
  for (int n : {1, 7, 15, 16, 70, 71, 131}) {
    auto const count = static_cast<std::size_t>(n);
    std::vector<double> const numbers = randomNumbers(3 * count);
    std::vector<T> a(count), b(count), out(count + 1, T{42});
    for (std::size_t i = 0; i < count; ++i) {
      a[i] = static_cast<T>(static_cast<std::int64_t>(numbers[i]));
      b[i] = i % 3 == 1 ? static_cast<T>(0) : static_cast<T>(static_cast<std::int64_t>(numbers[2 * count + i] * 1e5));
    }
    if (n == 71) b[0] = static_cast<T>(-0.0);
    std::vector<T> expected = out;
    for (std::size_t i = 0; i < count; ++i) expected[i] = plain(a[i], b[scalar ? 0 : i]);
    if constexpr (scalar)
      kernel(out.data(), a.data(), b[0], count);
    else
      kernel(out.data(), a.data(), b.data(), count);
    EXPECT_EQ(std::memcmp(out.data(), expected.data(), out.size() * sizeof(T)), 0) << n;
  }
}

TEST_P(Kernels, ElementwiseKernelsReachEveryElementAndNoFurther)
{
  zp::KernelTable const table = *zp::FindKernels(GetParam());
  auto const sum = [](auto a, auto b) { return a + b; };
  auto const difference = [](auto a, auto b) { return a - b; };
  auto const product = [](auto a, auto b) { return a * b; };
  expectElementwise(table.doubles.add, sum);
  expectElementwise(table.doubles.subtract, difference);
  expectElementwise(table.doubles.multiply, product);
  expectElementwise(table.doubles.addScalar, sum);
  expectElementwise(table.doubles.subtractScalar, difference);
  expectElementwise(table.doubles.multiplyScalar, product);
  expectElementwise(table.divideScalar, [](double a, double b) { return a / b; });
  expectElementwise(table.divideGuarded, [](double a, double b) { return b == 0.0 ? a : a / b; });
  expectElementwise(table.words.add, sum);
  expectElementwise(table.words.subtract, difference);
  expectElementwise(table.words.multiply, product);
  expectElementwise(table.words.addScalar, sum);
  expectElementwise(table.words.subtractScalar, difference);
  expectElementwise(table.words.multiplyScalar, product);
}

INSTANTIATE_TEST_SUITE_P(EverySet, Kernels,
                         testing::Values(zp::KernelSet::baseline, zp::KernelSet::avx2, zp::KernelSet::avx512,
                                         zp::KernelSet::wholeLanes, zp::KernelSet::halvedLanes));

}  // namespace
