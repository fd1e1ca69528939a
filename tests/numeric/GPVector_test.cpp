// GPVector: construction, size, searching, reductions and arithmetic.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "tests/numeric/containers.h"

namespace {

using Doubles = std::vector<double>;

TEST(GPVector, IsMadeFromAValueOrFromNumbers)
{
  double const doubles[] = {1.5, -2.0};
  float const floats[] = {0.1F, 3.0F};
  EXPECT_EQ(elementsOf({GPVector(2), GPVector(1, 0), GPVector(1, nullptr), GPVector(1, 7)}), (Doubles{0, 0, 0, 0, 7}));
  EXPECT_EQ(elementsOf(GPVector(2, static_cast<double const *>(nullptr))), (Doubles{0, 0}));
  EXPECT_EQ(elementsOf(GPVector(2, doubles)), (Doubles{1.5, -2.0}));
  EXPECT_EQ(elementsOf(GPVector(2, floats)), (Doubles{static_cast<double>(0.1F), 3.0}));
  EXPECT_EQ(elementsOf(GPVector(GPMatrix(2, 2, Doubles{1, 2, 3, 4}.data()), 1)), (Doubles{2, 4}));
  for (GPVector const & empty : {GPVector(), GPVector(0, 5.0), GPVector(0, doubles), GPVector(-3)}) {
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(empty.ArrayPtr(), nullptr);
  }
}

TEST(GPVector, ElementsCanBeSetSwappedAndNarrowed)
{
  GPVector vector = vectorOf({0.1, 2, 3});
  vector.Swap(0, 2);
  vector(1) = 1e300;
  std::unique_ptr<float[]> const floats(vector.GetFloatArray());
  EXPECT_EQ(floats[0], 3.0F);
  EXPECT_TRUE(std::isinf(floats[1]));
  EXPECT_EQ(floats[2], 0.1F);
  EXPECT_EQ(GPVector().GetFloatArray(), nullptr);
}

TEST(GPVector, HasTwoEqualities)
{
  GPVector const zero = vectorOf({0.0});
  GPVector const minusZero = vectorOf({-0.0});
  GPVector const nan = vectorOf({quietNan});
  EXPECT_TRUE(zero != minusZero);
  EXPECT_EQ(zero.LocateValue(-0.0), 0);
  EXPECT_TRUE(nan == GPVector(nan));
  EXPECT_EQ(nan.LocateValue(quietNan), -1);
  EXPECT_EQ(vectorOf({1, 2, 2}).LocateValue(2), 1);
  EXPECT_TRUE(GPVector() == GPVector(0, 1.0));
  EXPECT_TRUE(zero != GPVector(2));
}

TEST(GPVector, SortsAscendingAtEverySize)
{
  for (int size : {0, 1, 2, 3, 100, 256, 257, 5000}) {
    GPVector vector = randomVector(size);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(vector.ArrayPtr()) % (size < 16 ? 8 : 64), 0U);
    if (size > 2) vector[1] = -infinity;
    Doubles expected = elementsOf(vector);
    std::sort(expected.begin(), expected.end());
    vector.Sort();
    EXPECT_EQ(elementsOf(vector), expected) << size;
  }
}

TEST(GPVector, SortingWithNansLosesNothing)
{
  for (int size : {5, 3000}) {
    GPVector vector = randomVector(size);
    vector[1] = quietNan;
    vector[2] = -quietNan;
    vector[4] = infinity;
    vector.Sort();
    EXPECT_TRUE(std::isnan(vector[0]));
    EXPECT_TRUE(std::signbit(vector[0]));
    EXPECT_TRUE(std::isnan(vector[size - 1]));
    EXPECT_FALSE(std::signbit(vector[size - 1]));
    EXPECT_TRUE(std::is_sorted(vector.ArrayPtr() + 1, vector.ArrayPtr() + size - 1));
    EXPECT_EQ(vector[size - 2], infinity);
  }
}

TEST(GPVector, BinarySearchTakesEqualDifferences)
{
  GPVector const vector = vectorOf({-infinity, -2, 0, 3, 5, infinity});
  double const present[] = {-infinity, -2, -0.0, 3, 5, infinity};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(vector.BSearch(present[i]), i);
  for (double absent : {-3.0, 1.0, 6.0}) EXPECT_EQ(vector.BSearch(absent), -1) << absent;
  EXPECT_GE(vector.BSearch(quietNan), 0);
  EXPECT_EQ(GPVector().BSearch(1.0), -1);
}

TEST(GPVector, ReducesInIndexOrder)
{
  // Any other order, and any fused step, gives other bits.
  GPVector const a = randomVector(1003, 5);
  GPVector const b = randomVector(1003, 6);
  GPIntVector ints(1003);
  ints.InitSequentialValues(-500, 3);
  double volatile sum = 0.0, squares = 0.0, products = 0.0, mixed = 0.0;  // every step rounded and stored
  for (int i = 0; i < 1003; ++i) {
    double const volatile square = a[i] * a[i], product = a[i] * b[i], scaled = a[i] * ints[i];
    sum = sum + a[i];
    squares = squares + square;
    products = products + product;
    mixed = mixed + scaled;
  }
  EXPECT_EQ(a.Sum(), sum);
  EXPECT_EQ(a.SqrNorm(), squares);
  EXPECT_EQ(a.Norm(), std::sqrt(squares));
  EXPECT_EQ(a.DotProduct(b), products);
  EXPECT_EQ(a.DotProduct(ints), mixed);
  EXPECT_EQ(ints.DotProduct(a), mixed);
  EXPECT_FALSE(std::signbit(vectorOf({-0.0}).Sum()));  // the sum starts at 0.0
}

TEST(GPVector, PivotIsTheLargestMagnitudeAndPassesOverNans)
{
  EXPECT_EQ(vectorOf({-3, 2}).GetPivot(), 3.0);
  EXPECT_EQ(vectorOf({quietNan, -1, -quietNan}).GetPivot(), 1.0);
  EXPECT_FALSE(std::signbit(vectorOf({-0.0, quietNan}).GetPivot()));
  EXPECT_EQ(GPVector().GetPivot(), 0.0);
  GPVector large(1001, -1.0);
  for (int at : {0, 500, 1000}) {  // in the lanes and behind them
    large[at] = -2.0 - at;
    EXPECT_EQ(large.GetPivot(), 2.0 + at);
  }
}

TEST(GPVector, StandardDeviationIsThatOfThePopulation)
{
  EXPECT_EQ(vectorOf({0, 5}).StdDevP(0), 0.0);
  EXPECT_EQ(vectorOf({0, 5}).StdDevP(1), 2.5);
  EXPECT_EQ(vectorOf({0, 2, -0.0, 4, 6}).StdDevP(0), std::sqrt((3.0 * 56 - 144) / 9));
  EXPECT_EQ(GPVector().StdDevP(1), 0.0);
  double const volatile square = 1.3 * 1.3, q = square + square + square, s = 1.3 + 1.3 + 1.3, most = 3.0 * q, least = s * s;
  ASSERT_LT(most - least, 0.0);  // the roundings leave the radicand below zero
  EXPECT_TRUE(std::isnan(GPVector(3, 1.3).StdDevP(1)));
}

TEST(GPVector, InterpolatesBackFromTheUpperPoint)
{
  GPVector const x = vectorOf({1, 2, 4});
  GPVector const y = vectorOf({10, 20, 40});
  struct {
    double x, y;
  } const rows[] = {{0, 10}, {1, 10}, {1.5, 15}, {2, 20}, {3, 30}, {4, 40}, {9, 40}, {-infinity, 10}, {infinity, 40}};
  for (auto const & row : rows) EXPECT_EQ(x.Interpolate(y, row.x), row.y) << row.x;
  for (double any : {-1.0, 1.0, 2.0}) EXPECT_EQ(vectorOf({1}).Interpolate(vectorOf({7}), any), 7.0);
  // 0.3 - (0.3 - 0.1) * (0.7 - 0.3) / (0.7 - 0.1), step by step
  double const volatile rise = 0.3 - 0.1, back = 0.7 - 0.3, run = 0.7 - 0.1, part = rise * back, drop = part / run;
  EXPECT_EQ(vectorOf({0.1, 0.7}).Interpolate(vectorOf({0.1, 0.3}), 0.3), 0.3 - drop);
}

TEST(GPVector, ArithmeticGoesElementByElement)
{
  GPVector const a = vectorOf({8, 8, -6});
  GPVector const b = vectorOf({2, 0, 4});
  EXPECT_EQ(elementsOf({a + b, a - b}), (Doubles{10, 8, -2, 6, 8, -10}));
  EXPECT_EQ(elementsOf({a * b, a / b}), (Doubles{16, 0, -24, 4, 8, -1.5}));
  EXPECT_EQ(elementsOf({a + 1, 1 + a, a - 1}), (Doubles{9, 9, -5, 9, 9, -5, 7, 7, -7}));
  EXPECT_EQ(elementsOf({a * 2, 2 * a, a / 2}), (Doubles{16, 16, -12, 16, 16, -12, 4, 4, -3}));
  EXPECT_EQ(elementsOf(a / 0.0), (Doubles{infinity, infinity, -infinity}));
  EXPECT_EQ(elementsOf(a), (Doubles{8, 8, -6}));
  GPVector longer = vectorOf({1, 2, 3, 4});
  EXPECT_EQ(elementsOf(b + longer), (Doubles{3, 2, 7}));  // the left size counts
  longer += longer[0];                                    // its first element, as it was
  EXPECT_EQ(elementsOf(longer), (Doubles{2, 3, 4, 5}));
}

TEST(GPVector, AVanishingOperandLendsItsBlock)
{
  GPVector a = vectorOf({1, 2});
  double const * const block = a.ArrayPtr();
  GPVector const result = 2 * (1 + (std::move(a) + vectorOf({1, 1}) - 3 + 3) * vectorOf({2, 2}) / vectorOf({4, 4})) / 2;
  EXPECT_EQ(result.ArrayPtr(), block);
  EXPECT_EQ(elementsOf(result), (Doubles{2, 2.5}));
}

}  // namespace
