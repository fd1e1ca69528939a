// How the numeric rooms reach the blocks of vectors and matrices.
#pragma once

#include <zpbase/numeric.h>

namespace zp {

struct ElementAccess {
  // Of that shape, the elements not set.
  static GPVector MakeVector(int size);
  static GPIntVector MakeIntVector(int size);
  static GPMatrix MakeMatrix(int rows, int cols);

  static std::size_t Count(GPVector const & vector) { return vector.Count(); }
  static std::size_t Count(GPMatrix const & matrix) { return matrix.Count(); }
};

}  // namespace zp
