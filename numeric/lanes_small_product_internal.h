// Products of matrices whose right operand is small, on the terms of lanes_internal.h, which comes first: tiles of the result
// stay in registers over all terms, and both operands are read where they lie. Columns that don't fill the last lanes cost no
// packing: those lanes reach back over columns that are done already and find the same sums again. Only a matrix narrower than
// the lanes needs a mask.
#pragma once

namespace {

constexpr std::size_t directRows = laneWidth == 8 ? 8 : 4;
constexpr std::size_t directGroups = laneWidth == 8 ? 3 : 2;

struct ProductShape {
  std::size_t rows;
  std::size_t inner;
  std::size_t cols;
};

// A fair share of what is left for so many parts. Most products are one tile, and a division takes as long as a small one's sums.
inline std::size_t share(std::size_t left, std::size_t parts)
{
  return parts == 1 ? left : (left + parts - 1) / parts;
}

// A tile of whole lanes; the last group of them begins `last` columns behind the first.
template <std::size_t groups>
struct WholeColumns {
  static constexpr std::size_t count = groups;

  void Load(Lanes<double> (&parts)[groups], double const * from) const
  {
#pragma GCC unroll 4
    for (std::size_t group = 0; group + 1 < groups; ++group) parts[group] = load(from + group * laneWidth);
    parts[groups - 1] = load(from + last);
  }
  void Store(double * to, Lanes<double> const (&parts)[groups]) const
  {
#pragma GCC unroll 4
    for (std::size_t group = 0; group + 1 < groups; ++group) store(to + group * laneWidth, parts[group]);
    store(to + last, parts[groups - 1]);
  }

  std::size_t last;
};

template <std::size_t rows, class Columns>
void multiplyTile(double * out, double const * a, double const * b, ProductShape const & shape, Columns const & columns)
{
  Lanes<double> sums[rows][Columns::count] = {};
  for (std::size_t term = 0; term < shape.inner; ++term, b += shape.cols) {
    Lanes<double> parts[Columns::count];
    columns.Load(parts, b);
#pragma GCC unroll 8
    for (std::size_t r = 0; r < rows; ++r) {
      double const factor = a[r * shape.inner + term];
#pragma GCC unroll 4
      for (std::size_t group = 0; group < Columns::count; ++group) sums[r][group] += factor * parts[group];
    }
  }
#pragma GCC unroll 8
  for (std::size_t r = 0; r < rows; ++r) columns.Store(out + r * shape.cols, sums[r]);
}

template <class Columns, std::size_t... row>
void multiplyTileOf(std::size_t rows, double * out, double const * a, double const * b, ProductShape const & shape,
                    Columns const & columns, std::index_sequence<row...>)
{
  ((rows == row + 1 ? multiplyTile<row + 1>(out, a, b, shape, columns) : void()), ...);
}

// The tiles of some columns, all of about the same height: a low one would wait for its additions.
template <class Columns>
void multiplyColumns(double * out, double const * a, double const * b, ProductShape const & shape, Columns const & columns)
{
  std::size_t row = 0;
  for (std::size_t tiles = (shape.rows + directRows - 1) / directRows; tiles > 0; --tiles) {
    std::size_t const rows = share(shape.rows - row, tiles);
    multiplyTileOf(rows, out + row * shape.cols, a + row * shape.inner, b, shape, columns,
                   std::make_index_sequence<directRows>());
    row += rows;
  }
}

template <std::size_t groups>
void multiplyGroups(double * out, double const * a, double const * b, ProductShape const & shape, std::size_t last)
{
  multiplyColumns(out, a, b, shape, WholeColumns<groups>{last});
}

// Narrow stands for a tile that is one part of the lanes wide; void where lanes aren't wider than the narrowest matrix.
template <class Narrow>
void directProduct(double * out, double const * a, double const * b, ProductShape const & shape)
{
  if constexpr (!std::is_void_v<Narrow>) {
    if (shape.cols < laneWidth) return multiplyColumns(out, a, b, shape, Narrow(shape.cols));
  }
  std::size_t groups = (shape.cols + laneWidth - 1) / laneWidth;
  for (std::size_t col = 0; groups > 0;) {
    std::size_t const strips = (groups + directGroups - 1) / directGroups;
    std::size_t const count = share(groups, strips);
    std::size_t const width = strips == 1 ? shape.cols - col : count * laneWidth;
    std::size_t const first = width < laneWidth ? shape.cols - laneWidth : col;
    std::size_t const last = width < laneWidth ? 0 : width - laneWidth;
    if (count == 1) multiplyGroups<1>(out + first, a, b + first, shape, last);
    if (count == 2) multiplyGroups<2>(out + first, a, b + first, shape, last);
    if constexpr (directGroups > 2) {
      if (count == 3) multiplyGroups<3>(out + first, a, b + first, shape, last);
    }
    groups -= count;
    col += width;
  }
}

}  // namespace
