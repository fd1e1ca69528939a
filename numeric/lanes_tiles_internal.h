// Products of matrices through tiles of the result that stay in registers, on the terms of lanes_internal.h, which comes first:
// lanes run across the columns, and every element adds its terms one by one, in ascending order. Strips of the right operand and
// panels of the left one are packed so that a tile reads straight on; the packed pieces lie on the stack and fit the first and
// second cache.
#pragma once

namespace {

constexpr std::size_t tileRows = laneWidth == 8 ? 8 : 4;
constexpr std::size_t tileCols = 2 * laneWidth;
constexpr std::size_t blockInner = 256;  // terms in one go: a strip takes 16 kB with lanes of 32 bytes
constexpr std::size_t blockRows = 96;    // rows of packed panels: 192 kB

// A part of the left operand: element (row, term) lies at data[row * rowStep + term * termStep].
struct LeftPart {
  double const * data;
  std::size_t rowStep;
  std::size_t termStep;
};

// A part of the right operand, tileCols columns wide: element (term, column) lies at data[term * termStep + column].
struct RightPart {
  double const * data;
  std::size_t termStep;
};

// Adds the products of `terms` terms to a tile of tileRows x tileCols sums, or begins them at 0.0.
inline void addTile(double * out, std::size_t outStep, LeftPart left, RightPart right, std::size_t terms, bool begin)
{
  Lanes<double> sums[tileRows][2] = {};
  if (!begin) {
#pragma GCC unroll 8
    for (std::size_t r = 0; r < tileRows; ++r) {
      sums[r][0] = load(out + r * outStep);
      sums[r][1] = load(out + r * outStep + laneWidth);
    }
  }
  for (std::size_t term = 0; term < terms; ++term) {
    Lanes<double> const first = load(right.data);
    Lanes<double> const second = load(right.data + laneWidth);
#pragma GCC unroll 8
    for (std::size_t r = 0; r < tileRows; ++r) {
      double const factor = left.data[r * left.rowStep];
      sums[r][0] += factor * first;
      sums[r][1] += factor * second;
    }
    left.data += left.termStep;
    right.data += right.termStep;
  }
#pragma GCC unroll 8
  for (std::size_t r = 0; r < tileRows; ++r) {
    store(out + r * outStep, sums[r][0]);
    store(out + r * outStep + laneWidth, sums[r][1]);
  }
}

// addTile for a tile of which only rows x cols elements exist.
void addEdgeTile(double * out, std::size_t outStep, LeftPart left, RightPart right, std::size_t terms, bool begin,
                 std::size_t rows, std::size_t cols)
{
  double whole[tileRows * tileCols] = {};
  for (std::size_t r = 0; r < rows && !begin; ++r) {
    for (std::size_t c = 0; c < cols; ++c) whole[r * tileCols + c] = out[r * outStep + c];
  }
  addTile(whole, tileCols, left, right, terms, begin);
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < cols; ++c) out[r * outStep + c] = whole[r * tileCols + c];
  }
}

// Packs up to tileCols columns. Missing ones repeat the last, so that a tile meets no value that the operands don't have.
RightPart packStrip(double * packed, double const * b, std::size_t bStep, std::size_t terms, std::size_t cols)
{
  double * to = packed;
  for (std::size_t term = 0; term < terms; ++term, b += bStep, to += tileCols) {
    if (cols == tileCols) {
      store(to, load(b));
      store(to + laneWidth, load(b + laneWidth));
    } else {
      for (std::size_t c = 0; c < tileCols; ++c) to[c] = b[c < cols ? c : cols - 1];
    }
  }
  return {packed, tileCols};
}

// Packs rows into panels of tileRows rows, one after the other. Missing rows repeat the last one.
void packPanels(double * packed, double const * a, std::size_t aStep, std::size_t rows, std::size_t terms)
{
  for (std::size_t row = 0; row < rows; row += tileRows, packed += tileRows * terms) {
    for (std::size_t r = 0; r < tileRows; ++r) {
      double const * from = a + (row + r < rows ? row + r : rows - 1) * aStep;
      for (std::size_t term = 0; term < terms; ++term) packed[term * tileRows + r] = from[term];
    }
  }
}

// The tiles of `rows` rows below one strip; panels are those of packPanels.
void addPackedColumn(double * out, std::size_t outStep, double const * panels, RightPart strip, std::size_t terms, bool begin,
                     std::size_t rows, std::size_t cols)
{
  for (std::size_t row = 0; row < rows; row += tileRows, panels += tileRows * terms) {
    LeftPart const left = {panels, 1, tileRows};
    std::size_t const present = rows - row < tileRows ? rows - row : tileRows;
    if (present == tileRows && cols == tileCols) {
      addTile(out + row * outStep, outStep, left, strip, terms, begin);
    } else {
      addEdgeTile(out + row * outStep, outStep, left, strip, terms, begin, present, cols);
    }
  }
}

__attribute__((noinline)) void packedProduct(double * out, double const * a, double const * b, ProductShape const & shape)
{
  alignas(64) double panels[blockRows * blockInner];
  alignas(64) double strip[blockInner * tileCols];
  for (std::size_t term = 0; term < shape.inner; term += blockInner) {
    std::size_t const terms = shape.inner - term < blockInner ? shape.inner - term : blockInner;
    for (std::size_t row = 0; row < shape.rows; row += blockRows) {
      std::size_t const rows = shape.rows - row < blockRows ? shape.rows - row : blockRows;
      packPanels(panels, a + row * shape.inner + term, shape.inner, rows, terms);
      for (std::size_t col = 0; col < shape.cols; col += tileCols) {
        std::size_t const cols = shape.cols - col < tileCols ? shape.cols - col : tileCols;
        RightPart const right = packStrip(strip, b + term * shape.cols + col, shape.cols, terms, cols);
        addPackedColumn(out + row * shape.cols + col, shape.cols, panels, right, terms, term == 0, rows, cols);
      }
    }
  }
}

}  // namespace
