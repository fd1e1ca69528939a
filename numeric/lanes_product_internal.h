// Products of matrices and vectors in terms of lanes, on the same terms as lanes_internal.h, which comes first.
// A matrix product goes through tiles of the result that stay in registers: lanes run across the columns, and every element adds
// its terms one by one, in ascending order. Strips of the right operand and panels of the left one are packed so that a tile
// reads straight on; the packed pieces lie on the stack and fit the first and second cache.
#pragma once

namespace {

constexpr std::size_t laneWidth = laneCount<double>;
constexpr std::size_t tileRows = laneWidth == 8 ? 8 : 4;
constexpr std::size_t tileCols = 2 * laneWidth;
constexpr std::size_t blockInner = 256;     // terms in one go: a strip takes 16 kB with lanes of 32 bytes
constexpr std::size_t blockRows = 96;       // rows of packed panels: 192 kB
constexpr std::size_t directTerms = 16384;  // a right operand of at most 128 kB is read where it lies
constexpr std::size_t lineTerms = 8;        // a cache line of 64 bytes

struct ProductShape {
  std::size_t rows;
  std::size_t inner;
  std::size_t cols;
};

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
    for (std::size_t c = 0; c < tileCols; ++c) to[c] = b[c < cols ? c : cols - 1];
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

// The tiles below one strip with the left operand where it lies; the rows that don't fill a tile are packed.
void addDirectColumn(double * out, double const * a, RightPart strip, ProductShape const & shape, std::size_t term,
                     std::size_t terms, std::size_t cols)
{
  bool const begin = term == 0;
  std::size_t const fullRows = cols == tileCols ? shape.rows - shape.rows % tileRows : 0;
  for (std::size_t row = 0; row < fullRows; row += tileRows) {
    addTile(out + row * shape.cols, shape.cols, {a + row * shape.inner + term, shape.inner, 1}, strip, terms, begin);
  }
  double panel[tileRows * blockInner];
  for (std::size_t row = fullRows; row < shape.rows; row += tileRows) {
    std::size_t const rows = shape.rows - row < tileRows ? shape.rows - row : tileRows;
    packPanels(panel, a + row * shape.inner + term, shape.inner, rows, terms);
    addEdgeTile(out + row * shape.cols, shape.cols, {panel, 1, tileRows}, strip, terms, begin, rows, cols);
  }
}

void directProduct(double * out, double const * a, double const * b, ProductShape const & shape)
{
  double strip[blockInner * tileCols];
  for (std::size_t term = 0; term < shape.inner; term += blockInner) {
    std::size_t const terms = shape.inner - term < blockInner ? shape.inner - term : blockInner;
    for (std::size_t col = 0; col < shape.cols; col += tileCols) {
      std::size_t const cols = shape.cols - col < tileCols ? shape.cols - col : tileCols;
      double const * from = b + term * shape.cols + col;
      RightPart const right = cols == tileCols ? RightPart{from, shape.cols} : packStrip(strip, from, shape.cols, terms, cols);
      addDirectColumn(out + col, a, right, shape, term, terms, cols);
    }
  }
}

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

void product(double * out, double const * a, double const * b, std::size_t rows, std::size_t inner, std::size_t cols)
{
  if (inner == 0) {
    for (std::size_t i = 0; i < rows * cols; ++i) out[i] = 0.0;
  } else if (cols == 1) {
    matrixVector(out, a, b, rows, inner);
  } else if (rows == 1) {
    vectorMatrix(out, a, b, inner, cols);
  } else if (inner * cols <= directTerms) {
    directProduct(out, a, b, {rows, inner, cols});
  } else {
    packedProduct(out, a, b, {rows, inner, cols});
  }
}

constexpr zp::KernelTable laneKernels = {elementKernels<double>,
                                         elementKernels<std::uint32_t>,
                                         combine<Operation::divideGuarded, double>,
                                         combineScalar<Operation::divide, double>,
                                         largestMagnitude,
                                         product,
                                         matrixVector,
                                         vectorMatrix};

}  // namespace
