// The transpose of a matrix.
#pragma once

#include <cstddef>

namespace zp {

// out (cols x rows) from m (rows x cols), which don't overlap.
void Transpose(double * out, double const * m, std::size_t rows, std::size_t cols);

}  // namespace zp
