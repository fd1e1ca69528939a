// Products of a matrix and a column, on the terms of lanes_internal.h, which comes first: lanes run across the rows, each with a
// row's sum.
#pragma once

namespace {

constexpr std::size_t lineTerms = 8;  // a cache line of 64 bytes

// One step of a transpose: exchanges the lanes of `first` that have the bit `distance` in their number with those of `second`
// that don't.
template <std::size_t distance, std::size_t... lane>
inline void exchangeLanes(Lanes<double> & first, Lanes<double> & second, std::index_sequence<lane...>)
{
  Lanes<double> const low = __builtin_shufflevector(first, second, (lane & distance ? laneWidth + lane - distance : lane)...);
  second = __builtin_shufflevector(first, second, (lane & distance ? laneWidth + lane : lane + distance)...);
  first = low;
}

template <std::size_t distance>
inline void transposeSquare(Lanes<double> (&square)[laneWidth])
{
  if constexpr (distance < laneWidth) {
#pragma GCC unroll 8
    for (std::size_t r = 0; r < laneWidth; ++r) {
      if (!(r & distance)) exchangeLanes<distance>(square[r], square[r + distance], std::make_index_sequence<laneWidth>());
    }
    transposeSquare<2 * distance>(square);
  }
}

// Adds lineTerms terms to the sums of laneWidth rows. Squares of terms are turned in registers, so that a lane holds a row's sum.
inline void addLine(Lanes<double> & sums, double const * m, double const * v, std::size_t cols)
{
#pragma GCC unroll 4
  for (std::size_t c = 0; c < lineTerms; c += laneWidth) {
    Lanes<double> const factors = load(v + c);
    Lanes<double> square[laneWidth];
#pragma GCC unroll 8
    for (std::size_t r = 0; r < laneWidth; ++r) square[r] = load(m + r * cols + c) * factors;
    transposeSquare<1>(square);
#pragma GCC unroll 8
    for (std::size_t column = 0; column < laneWidth; ++column) sums += square[column];
  }
}

// The products of groups * laneWidth rows with v. Each sum is a chain of its own, and the groups hide each other's wait for an
// addition. A cache line is used up at once: rows whose length is a power of two compete for the same places in the first cache.
template <std::size_t groups>
void multiplyRows(double * out, double const * m, double const * v, std::size_t cols)
{
  Lanes<double> sums[groups] = {};
  std::size_t c = 0;
  for (; c + lineTerms <= cols; c += lineTerms) {
#pragma GCC unroll 8
    for (std::size_t group = 0; group < groups; ++group) addLine(sums[group], m + group * laneWidth * cols + c, v + c, cols);
  }
  for (std::size_t group = 0; group < groups; ++group) store(out + group * laneWidth, sums[group]);
  for (std::size_t r = 0; r < groups * laneWidth; ++r) {
    for (std::size_t column = c; column < cols; ++column) out[r] += m[r * cols + column] * v[column];
  }
}

// Takes rows in bundles of groups * laneWidth, as long as a whole bundle is left: the number of rows done.
template <std::size_t groups>
std::size_t multiplyBundles(double * out, double const * m, double const * v, std::size_t rows, std::size_t cols)
{
  std::size_t row = 0;
  for (; row + groups * laneWidth <= rows; row += groups * laneWidth) multiplyRows<groups>(out + row, m + row * cols, v, cols);
  return row;
}

// Twelve rows at once hide the waits best. Rows of a multiple of 4,096 bytes all begin in the same places of the first cache,
// which has eight of each.
void matrixVector(double * out, double const * m, double const * v, std::size_t rows, std::size_t cols)
{
  constexpr std::size_t many = laneWidth == 8 ? 2 : 12 / laneWidth;
  constexpr std::size_t few = 8 / laneWidth;
  bool const crowded = cols * sizeof(double) % 4096 == 0;
  std::size_t row = crowded ? multiplyBundles<few>(out, m, v, rows, cols) : multiplyBundles<many>(out, m, v, rows, cols);
  row += multiplyBundles<1>(out + row, m + row * cols, v, rows - row, cols);
  for (; row < rows; ++row) {
    double sum = 0.0;
    for (std::size_t c = 0; c < cols; ++c) sum += m[row * cols + c] * v[c];
    out[row] = sum;
  }
}

}  // namespace
