// The kernels of one instruction set: all that is written in lanes, and the table of it. The file that includes this sets
// laneBytes and the instructions, as lanes_internal.h tells.
#pragma once

#include "numeric/lanes_internal.h"
#include "numeric/lanes_matrix_vector_internal.h"
#include "numeric/lanes_small_product_internal.h"
#include "numeric/lanes_tiles_internal.h"
#include "numeric/lanes_vector_matrix_internal.h"

namespace {

constexpr std::size_t directTerms = 16384;  // a right operand of at most 128 kB is read where it lies

template <class Narrow>
void product(double * out, double const * a, double const * b, std::size_t rows, std::size_t inner, std::size_t cols)
{
  if (inner == 0) {
    for (std::size_t i = 0; i < rows * cols; ++i) out[i] = 0.0;
  } else if (cols == 1) {
    matrixVector(out, a, b, rows, inner);
  } else if (rows == 1) {
    vectorMatrix(out, a, b, inner, cols);
  } else if (inner * cols <= directTerms) {
    directProduct<Narrow>(out, a, b, {rows, inner, cols});
  } else {
    packedProduct(out, a, b, {rows, inner, cols});
  }
}

template <class Narrow>
constexpr zp::KernelTable laneKernels = {elementKernels<double>,
                                         elementKernels<std::uint32_t>,
                                         combine<Operation::divideGuarded, double>,
                                         combineScalar<Operation::divide, double>,
                                         largestMagnitude,
                                         product<Narrow>,
                                         matrixVector,
                                         vectorMatrix};

}  // namespace
