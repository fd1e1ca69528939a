// The transpose of a matrix in squares of 8 x 8, whose rows and columns are whole cache lines on both sides.

#include "numeric/transpose_internal.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace {

constexpr std::size_t side = 8;

using Pair = double __attribute__((vector_size(16)));

void storeCached(double * to, Pair const & pair)
{
  std::memcpy(to, &pair, sizeof pair);
}

#if defined(__x86_64__)
// Past the caches: a line that is written whole needn't be read first. to lies on a 16-byte boundary.
void storeStreaming(double * to, Pair const & pair)
{
  _mm_stream_pd(to, __m128d{pair[0], pair[1]});
}

// A result this large wouldn't be found in the cache afterwards.
constexpr std::size_t streamingElements = std::size_t{1} << 20;

bool canStream(double const * out, std::size_t rows, std::size_t cols)
{
  return rows * cols >= streamingElements && rows % side == 0 && reinterpret_cast<std::uintptr_t>(out) % 64 == 0;
}
#endif

template <void store(double *, Pair const &)>
void transposeSquare(double * out, double const * m, std::size_t rows, std::size_t cols)
{
  for (std::size_t c = 0; c < side; c += 2) {
    for (std::size_t r = 0; r < side; r += 2) store(out + c * rows + r, Pair{m[r * cols + c], m[(r + 1) * cols + c]});
    for (std::size_t r = 0; r < side; r += 2) {
      store(out + (c + 1) * rows + r, Pair{m[r * cols + c + 1], m[(r + 1) * cols + c + 1]});
    }
  }
}

template <void store(double *, Pair const &)>
void transposeSquares(double * out, double const * m, std::size_t rows, std::size_t cols)
{
  for (std::size_t row = 0; row + side <= rows; row += side) {
    for (std::size_t col = 0; col + side <= cols; col += side) {
      transposeSquare<store>(out + col * rows + row, m + row * cols + col, rows, cols);
    }
  }
}

// What the squares leave: the last rows and columns.
void transposeEdges(double * out, double const * m, std::size_t rows, std::size_t cols)
{
  std::size_t const squareRows = rows - rows % side;
  std::size_t const squareCols = cols - cols % side;
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = r < squareRows ? squareCols : 0; c < cols; ++c) out[c * rows + r] = m[r * cols + c];
  }
}

}  // namespace

namespace zp {

void Transpose(double * out, double const * m, std::size_t rows, std::size_t cols)
{
#if defined(__x86_64__)
  if (canStream(out, rows, cols)) {
    transposeSquares<storeStreaming>(out, m, rows, cols);
    _mm_sfence();
    return transposeEdges(out, m, rows, cols);
  }
#endif
  transposeSquares<storeCached>(out, m, rows, cols);
  transposeEdges(out, m, rows, cols);
}

}  // namespace zp
