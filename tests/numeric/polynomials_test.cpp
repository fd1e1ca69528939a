// Polynomials, the power of ten, the test of a block, the special values.

#include <gtest/gtest.h>

#include "tests/numeric/containers.h"

namespace {

TEST(CalcPolynomial, RunsAllFiveStepsInOrder)
{
  EXPECT_EQ(CalcPolynomial(2, 1, 2, 3, 0, 0, 0), 17.0);
  EXPECT_TRUE(std::isnan(CalcPolynomial(infinity, 1, 2, 3, 4, 5, 0)));
  EXPECT_EQ(CalcPolynomial(infinity, 1, 2, 3, 4, 5, 6), infinity);
  double volatile value = 0.3;  // nested, with a rounding after every step
  for (double a : {0.7, 0.11, 0.13, 0.17, 0.19}) {
    value = 1.1 * value;
    value = value + a;
  }
  EXPECT_EQ(CalcPolynomial(1.1, 0.19, 0.17, 0.13, 0.11, 0.7, 0.3), value);
}

TEST(CalcPolynomial, HandsBackThePowersOfEachCoefficient)
{
  GPVector coefficients = vectorOf({1, 2, 3});
  GPVector powers(4, -1.0);
  GPBOOLVector switches;
  double value = 0.0;
  CalcPolynomial(2.0, coefficients, switches, value, powers);
  EXPECT_EQ(value, 17.0);
  EXPECT_TRUE(powers == vectorOf({1, 2, 4, -1}));
  coefficients.ChangeSize(6);
  powers.ChangeSize(6);
  CalcPolynomial(1.1, coefficients, switches, value, powers);
  EXPECT_EQ(value, CalcPolynomial(1.1, 1, 2, 3, 0, 0, 0));
  EXPECT_TRUE(powers == vectorOf({1, 1.1, 1.1 * 1.1, std::pow(1.1, 3.0), std::pow(1.1, 4.0), std::pow(1.1, 5.0)}));
  for (int size : {0, 7}) {
    coefficients.ChangeSize(size);
    value = 5.0;
    CalcPolynomial(2.0, coefficients, switches, value, powers);
    EXPECT_EQ(value, 5.0);
    EXPECT_EQ(powers[1], 1.1);
  }
}

TEST(NumericHelpers, GivePowersOfTenAndLookAtEveryByte)
{
  EXPECT_EQ(Pow10(-2.0), 0.01);
  EXPECT_EQ(Pow10(0.0), 1.0);
  unsigned char const block[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0x80};
  EXPECT_FALSE(AnyBitIsSet(block, 8));
  EXPECT_TRUE(AnyBitIsSet(block + 1, 8));
  EXPECT_FALSE(AnyBitIsSet(nullptr, 0));
}

TEST(SpecialValues, AreInfinitiesAndNansOfBothSigns)
{
  EXPECT_EQ(FLT_POSINF(), std::numeric_limits<float>::infinity());
  EXPECT_EQ(FLT_NEGINF(), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(DBL_POSINF(), infinity);
  EXPECT_EQ(DBL_NEGINF(), -infinity);
  double const nans[] = {static_cast<double>(FLT_POSNAN()), DBL_POSNAN(), static_cast<double>(FLT_NEGNAN()), DBL_NEGNAN()};
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(std::isnan(nans[i])) << i;
    EXPECT_EQ(std::signbit(nans[i]), i >= 2) << i;
  }
  EXPECT_EQ(std::bit_cast<std::uint64_t>(DBL_NEGNAN()) & 0x7FFFFFFFFFFFF, 1U);  // the payload
  EXPECT_EQ(std::bit_cast<std::uint32_t>(FLT_POSNAN()) & 0x3FFFFF, 1U);
}

}  // namespace
