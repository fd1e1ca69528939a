// Products of a row and a matrix, on the terms of lanes_internal.h, which comes first: lanes run across the columns, and the rows
// of the matrix are added one after the other, each times its factor.
#pragma once

namespace {

// Adds rows, each times its factor, to some lanes of the sums in out. The chains of the lanes hide each other's wait.
template <std::size_t rows, std::size_t lanes>
inline void addRowParts(double * out, double const * v, double const * m, std::size_t cols)
{
  Lanes<double> sums[lanes];
#pragma GCC unroll 4
  for (std::size_t lane = 0; lane < lanes; ++lane) sums[lane] = load(out + lane * laneWidth);
#pragma GCC unroll 8
  for (std::size_t r = 0; r < rows; ++r) {
#pragma GCC unroll 4
    for (std::size_t lane = 0; lane < lanes; ++lane) sums[lane] += v[r] * load(m + r * cols + lane * laneWidth);
  }
#pragma GCC unroll 4
  for (std::size_t lane = 0; lane < lanes; ++lane) store(out + lane * laneWidth, sums[lane]);
}

// Adds up to eight rows, each times its factor, to the sums in out.
template <std::size_t together>
void addRows(double * out, double const * v, double const * m, std::size_t cols)
{
  std::size_t c = 0;
  for (; c + 4 * laneWidth <= cols; c += 4 * laneWidth) addRowParts<together, 4>(out + c, v, m + c, cols);
  for (; c + laneWidth <= cols; c += laneWidth) addRowParts<together, 1>(out + c, v, m + c, cols);
  for (; c < cols; ++c) {
    double sum = out[c];
#pragma GCC unroll 8
    for (std::size_t r = 0; r < together; ++r) sum += v[r] * m[r * cols + c];
    out[c] = sum;
  }
}

void vectorMatrix(double * out, double const * v, double const * m, std::size_t rows, std::size_t cols)
{
  for (std::size_t c = 0; c < cols; ++c) out[c] = 0.0;
  std::size_t row = 0;
  for (; row + 8 <= rows; row += 8) addRows<8>(out, v + row, m + row * cols, cols);
  for (; row < rows; ++row) addRows<1>(out, v + row, m + row * cols, cols);
}

}  // namespace
