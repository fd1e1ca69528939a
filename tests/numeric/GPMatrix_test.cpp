// GPMatrix: shapes, access, transposing, arithmetic.

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <new>
#include <utility>

#include "tests/numeric/containers.h"

namespace {

using Doubles = std::vector<double>;

GPMatrix matrixOf(int rows, int cols, std::initializer_list<double> values)
{
  return GPMatrix(rows, cols, values.begin());
}

void expectMatrix(GPMatrix const & matrix, int rows, int cols, Doubles const & elements, char const * why)
{
  EXPECT_EQ(matrix.GetRows(), rows) << why;
  EXPECT_EQ(matrix.GetCols(), cols) << why;
  EXPECT_EQ(elementsOf(matrix), elements) << why;
}

TEST(GPMatrix, IsMadeFromAValueFromNumbersOrFromAVector)
{
  float const floats[] = {1, 2};
  GPVector const v = vectorOf({1, 2, 3});
  expectMatrix(GPMatrix(1, 2, 0) + GPMatrix(1, 2, nullptr) + GPMatrix(1, 2), 1, 2, {0, 0}, "zeros");
  expectMatrix(GPMatrix(2, 1, floats), 2, 1, {1, 2}, "floats");
  expectMatrix(GPMatrix(v, 0), 1, 3, {1, 2, 3}, "row");
  expectMatrix(GPMatrix(7, v), 3, 1, {1, 2, 3}, "column");
  GPMatrix const empty(0, 5, 1.0);
  expectMatrix(empty, 0, 5, {}, "no rows");
  EXPECT_EQ(empty.ArrayPtr(), nullptr);
  EXPECT_FALSE(empty.IsEmpty());
  EXPECT_TRUE(GPMatrix().IsEmpty());
}

TEST(GPMatrix, CopiesMovesAndCompares)
{
  GPMatrix original = matrixOf(2, 2, {1, 2, 3, 4});
  GPMatrix copy = original;
  EXPECT_TRUE(copy == original);
  copy(1, 0) = -0.0;
  original(1, 0) = 0.0;
  EXPECT_TRUE(copy != original);
  EXPECT_NE(GPMatrix(2, 3), GPMatrix(3, 2));
  EXPECT_EQ(GPMatrix(0, 3), GPMatrix(0, 3));
  EXPECT_NE(GPMatrix(0, 3), GPMatrix(0, 4));
  EXPECT_TRUE(static_cast<GPMatrix const &>(*std::unique_ptr<GPObject>(copy.Clone())) == copy);
  original = std::move(copy);
  EXPECT_EQ(original(1, 1), 4.0);
  EXPECT_TRUE(copy.IsEmpty());
  EXPECT_EQ(copy.ArrayPtr(), nullptr);
}

TEST(GPMatrix, ChangeSizeKeepsTheTopLeftPart)
{
  GPMatrix const square = matrixOf(2, 2, {1, 2, 3, 4});
  struct {
    int rows, cols;
    Doubles expected;
  } const rows[] = {{3, 1, {1, 3, 0}}, {2, 3, {1, 2, 0, 3, 4, 0}}, {1, 1, {1}}, {2, 2, {1, 2, 3, 4}}, {0, 0, {}}, {0, 5, {}}};
  for (auto const & row : rows) {
    GPMatrix matrix = square;
    double const * const old = matrix.ArrayPtr();
    matrix.ChangeSize(row.rows, row.cols);
    expectMatrix(matrix, row.rows, row.cols, row.expected, "kept");
    EXPECT_NE(matrix.ArrayPtr(), old);
    EXPECT_EQ(matrix.IsEmpty(), row.cols == 0);
  }
  GPMatrix matrix = square;
  matrix.ChangeSize(1, 2, &matrix(1, 0));  // out of its own old block
  expectMatrix(matrix, 1, 2, {3, 4}, "own values");
  EXPECT_THROW(matrix.ChangeSize(INT_MAX, INT_MAX), std::bad_alloc);
  expectMatrix(matrix, 1, 2, {3, 4}, "too large to be had");
}

TEST(GPMatrix, RowsColumnsAndElementsChangePlaces)
{
  GPMatrix matrix = matrixOf(2, 3, {1, 2, 3, 4, 5, 6});
  matrix.SwapTwoRows(0, 1);
  expectMatrix(matrix, 2, 3, {4, 5, 6, 1, 2, 3}, "rows");
  matrix.SwapTwoCols(2, 0);
  expectMatrix(matrix, 2, 3, {6, 5, 4, 3, 2, 1}, "columns");
  matrix.Swap(0, 0, 1, 2);
  matrix.SwapTwoRows(1, 1);
  matrix.SwapTwoCols(1, 1);
  expectMatrix(matrix, 2, 3, {1, 5, 4, 3, 2, 6}, "elements");
  GPVector out;
  matrix.GetRowVector(out, 1);
  EXPECT_EQ(elementsOf(out), (Doubles{3, 2, 6}));
  matrix.GetColumnVector(out, 2);
  EXPECT_EQ(elementsOf(out), (Doubles{4, 6}));
  GPMatrix(3, 0).SwapTwoRows(0, 2);
}

TEST(GPMatrix, TransposesAnyShapeAndBack)
{
  GPMatrix example = matrixOf(2, 3, {1, 2, 3, 4, 5, 6});
  example.Transpose();
  expectMatrix(example, 3, 2, {1, 4, 2, 5, 3, 6}, "example");
  // Below, at and above the squares; the last ones are past the size from which results go around the caches.
  int const shapes[][2] = {{2, 2}, {8, 8}, {9, 7}, {16, 24}, {31, 33}, {1, 5}, {5, 1}, {0, 4}, {1032, 1024}, {1025, 1030}};
  for (auto const & [rows, cols] : shapes) {
    GPMatrix matrix = randomMatrix(rows, cols);
    GPMatrix const original = matrix;
    double const * const block = matrix.ArrayPtr();
    matrix.Transpose();
    ASSERT_EQ(matrix.GetRows(), cols);
    int wrong = 0;
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < cols; ++c) wrong += matrix(c, r) != original(r, c);
    }
    EXPECT_EQ(wrong, 0) << rows << " x " << cols;
    EXPECT_EQ(matrix.ArrayPtr() == block, rows < 2 || cols < 2) << "only a single row or column stays in place";
    matrix.Transpose();
    EXPECT_TRUE(matrix == original);
  }
}

TEST(GPMatrix, ArithmeticPairsElementsByPlace)
{
  GPMatrix const a = matrixOf(2, 2, {1, 2, 3, 4});
  GPMatrix const b = matrixOf(1, 4, {10, 20, 30, 40});
  expectMatrix(a + b, 2, 2, {11, 22, 33, 44}, "sum");
  expectMatrix(a - b, 2, 2, {-9, -18, -27, -36}, "difference");
  expectMatrix(2 * a, 2, 2, {2, 4, 6, 8}, "scaled from the left");
  GPMatrix temporary = a;
  double const * const block = temporary.ArrayPtr();
  GPMatrix const result = 2 * ((std::move(temporary) + b - b) * 3);
  EXPECT_EQ(result.ArrayPtr(), block);
  expectMatrix(result, 2, 2, {6, 12, 18, 24}, "moved along");
}

}  // namespace
