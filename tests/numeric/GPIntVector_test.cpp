// The vectors' common shape; GPIntVector and GPBOOLVector: wrapping arithmetic, searching, sets, truth values.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <utility>

#include "tests/numeric/containers.h"

namespace {

using Ints = std::vector<int>;

// GPVector too: the three share their shape.
template <class Vector>
class VectorsOfAnyKind : public testing::Test {
};
using VectorTypes = testing::Types<GPVector, GPIntVector, GPBOOLVector>;
TYPED_TEST_SUITE(VectorsOfAnyKind, VectorTypes);

TYPED_TEST(VectorsOfAnyKind, AreMadeCopiedMovedAndResized)
{
  using Elements = decltype(elementsOf(TypeParam()));
  Elements const values = {1, -2, 3};
  EXPECT_EQ(elementsOf({TypeParam(2), TypeParam(2, 7), TypeParam(1, nullptr)}), (Elements{0, 0, 7, 7, 0}));
  TypeParam vector(3, values.data());
  TypeParam copy = vector;
  copy.Swap(0, 2);
  EXPECT_EQ(elementsOf({vector, copy}), (Elements{1, -2, 3, 3, -2, 1}));
  EXPECT_TRUE(static_cast<TypeParam const &>(*std::unique_ptr<GPObject>(copy.Clone())) == copy);
  TypeParam const & itself = copy;
  copy = itself;
  auto const * const block = copy.ArrayPtr();
  TypeParam moved = std::move(copy);
  vector = std::move(moved);
  EXPECT_EQ(vector.ArrayPtr(), block);
  for (TypeParam const * left : {&copy, &moved}) {
    EXPECT_TRUE(left->IsEmpty());
    EXPECT_EQ(left->ArrayPtr(), nullptr);
  }
  vector.ChangeSize(3);
  EXPECT_NE(vector.ArrayPtr(), block);
  vector.ChangeSize(4, nullptr);
  EXPECT_EQ(elementsOf(vector), (Elements{3, -2, 1, 0}));
  vector.ChangeSize(2, vector.ArrayPtr() + 1);  // out of its own old block
  EXPECT_EQ(elementsOf(vector), (Elements{-2, 1}));
  vector.ChangeSize(1);
  EXPECT_EQ(elementsOf(vector), (Elements{-2}));
  vector.Reset(5);
  EXPECT_EQ(vector(0), 5);
  vector.ChangeSize(0);
  EXPECT_TRUE(vector.IsEmpty());
  EXPECT_EQ(vector.ArrayPtr(), nullptr);
}

TEST(GPIntVector, ArithmeticWrapsAndDivisionIsGuarded)
{
  GPIntVector const a = intsOf({7, -7, INT_MAX, INT_MIN});
  GPIntVector const b = intsOf({2, 0, 1, -1});
  EXPECT_EQ(elementsOf({a + b, a - b}), (Ints{9, -7, INT_MIN, INT_MAX, 5, -7, INT_MAX - 1, INT_MIN + 1}));
  EXPECT_EQ(elementsOf({a * b, a / b}), (Ints{14, 0, INT_MAX, INT_MIN, 3, -7, INT_MAX, INT_MIN}));
  EXPECT_EQ(elementsOf({a + 1, a - 1}), (Ints{8, -6, INT_MIN, INT_MIN + 1, 6, -8, INT_MAX - 1, INT_MAX}));
  EXPECT_EQ(elementsOf({a * 2, a / 2}), (Ints{14, -14, -2, 0, 3, -3, INT_MAX / 2, INT_MIN / 2}));
  EXPECT_EQ(elementsOf({1 + a, 2 * a}), elementsOf({a + 1, a * 2}));
  EXPECT_EQ(a.Sum(), -1);
  EXPECT_EQ(intsOf({65536, 3}).DotProduct(intsOf({65536, 5, 9})), 15);
  EXPECT_EQ(intsOf({0, -1, 2}).NonZeros(), 2);
}

TEST(GPIntVector, ComparesAndFinds)
{
  GPIntVector vector(4);
  vector.InitSequentialValues(10, -2);
  EXPECT_EQ(elementsOf(vector), (Ints{10, 8, 6, 4}));
  EXPECT_EQ(std::pair(vector.LocateValue(6), vector.LocateValue(5)), std::pair(2, -1));
  vector.Sort();
  EXPECT_EQ(vector.BSearch(10), 3);
  EXPECT_EQ(vector.BSearch(4), 0);
  for (int absent : {3, 5, 11}) EXPECT_EQ(vector.BSearch(absent), -1);
  EXPECT_EQ(GPIntVector().BSearch(1), -1);
  EXPECT_TRUE(vector == intsOf({4, 6, 8, 10}));
  EXPECT_NE(vector, intsOf({4, 6, 8, 11}));
  EXPECT_NE(vector, intsOf({4, 6, 8}));
}

TEST(GPIntVector, SortsAscendingAtEverySize)
{
  std::mt19937 random(1);
  for (int size : {0, 1, 2, 100, 5000}) {
    GPIntVector vector(size);
    for (int i = 0; i < size; ++i) vector[i] = static_cast<int>(random() % 2000000) - 1000000;
    Ints expected = elementsOf(vector);
    std::sort(expected.begin(), expected.end());
    vector.Sort();
    EXPECT_EQ(elementsOf(vector), expected) << size;
  }
}

TEST(GPIntVector, SortsByADifferenceThatWraps)
{
  GPIntVector pair = intsOf({INT_MIN, 1});  // INT_MIN - 1 is above zero
  pair.Sort();
  EXPECT_EQ(elementsOf(pair), (Ints{1, INT_MIN}));
  EXPECT_EQ(pair.BSearch(INT_MIN), 1);
  std::mt19937 random(2);
  GPIntVector wide(3000);  // no order at all: every value must still be there
  for (int i = 0; i < 3000; ++i) wide[i] = static_cast<int>(random());
  Ints before = elementsOf(wide);
  wide.Sort();
  Ints after = elementsOf(wide);
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  EXPECT_EQ(after, before);
}

TEST(GPIntVector, IsASetUnderUnionAndIntersection)
{
  struct {
    Ints a, b, both, common;
    char const * why;
  } const rows[] = {
      {{1, 3, 5}, {2, 3, 6}, {1, 2, 3, 5, 6}, {3}, "plain"},
      {{1, 1, 2}, {1, 4, 4}, {1, 2, 4, 4}, {1}, "a run in the merge collapses, one in the tail stays"},
      {{4, 4}, {1, 1}, {1, 4, 4}, {}, "the tail of the left operand"},
      {{}, {}, {}, {}, "both empty"},
      {{1, 2}, {}, {1, 2}, {}, "right empty"},
      {{}, {2, 2}, {2, 2}, {}, "left empty, unfiltered"},
      {{5}, {6}, {5, 6}, {}, "apart"},
      {{1, 2, 2, 3}, {2, 2, 3, 3}, {1, 2, 3}, {2, 3}, "runs on both sides"},
      {{-5, 0}, {-7, -5, 9}, {-7, -5, 0, 9}, {-5}, "negative values"},
  };
  for (auto const & row : rows) {
    GPIntVector const a(static_cast<int>(row.a.size()), row.a.data());
    GPIntVector const b(static_cast<int>(row.b.size()), row.b.data());
    EXPECT_EQ(elementsOf(a | b), row.both) << row.why;
    EXPECT_EQ(elementsOf(a & b), row.common) << row.why;
  }
  GPIntVector repeated = intsOf({1, 1, 2});
  EXPECT_EQ(elementsOf(repeated |= repeated), (Ints{1, 2}));
  repeated = intsOf({1, 1, 2});
  EXPECT_EQ(elementsOf(repeated &= repeated), (Ints{1, 2}));
  EXPECT_EQ((repeated &= intsOf({7})).ArrayPtr(), nullptr);
}

TEST(GPBOOLVector, CountsAnyNonZeroValueAsTrue)
{
  GPBOOLVector vector = truthsOf({2, -1, 0, 1});
  EXPECT_EQ(std::pair(vector.GetTRUECount(), vector.GetFALSECount()), std::pair(3, 1));
  EXPECT_FALSE(vector.IsAllTRUE());
  EXPECT_FALSE(vector.IsAllFALSE());
  EXPECT_TRUE(truthsOf({2, 1}).IsAllTRUE());
  EXPECT_TRUE(truthsOf({0, 0}).IsAllFALSE());
  EXPECT_TRUE(GPBOOLVector().IsAllTRUE());
  EXPECT_TRUE(GPBOOLVector().IsAllFALSE());
  vector.FlipState();
  EXPECT_EQ(elementsOf(vector), (Ints{3, -2, 1, 0}));
  vector.FlipState();
  EXPECT_EQ(elementsOf(vector), (Ints{2, -1, 0, 1}));
}

TEST(GPBOOLVector, OperatesBitwiseAndComparesOverTheLeftSize)
{
  GPBOOLVector const a = truthsOf({1, 6, 0});
  GPBOOLVector const b = truthsOf({2, 3, 0, 9});
  EXPECT_EQ(elementsOf({a | b, a & b, a ^ b}), (Ints{3, 7, 0, 0, 2, 0, 3, 5, 0}));
  EXPECT_TRUE(truthsOf({1, 0}) == truthsOf({1, 0, 1}));
  EXPECT_TRUE(truthsOf({1, 0}) != truthsOf({2, 0}));
  EXPECT_TRUE(GPBOOLVector() == a);
}

}  // namespace
