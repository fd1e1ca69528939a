// The kernels in lanes of 32 bytes, for processors with AVX2. The instructions are allowed from the pragma on, so it stands
// behind every other header. Fused multiplication and addition stays off here too: the sums have to equal those of the other
// instruction sets.

#include "numeric/kernels_internal.h"

#include <type_traits>
#include <utility>

#if defined(__x86_64__)

#include <immintrin.h>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC target("avx2")
#pragma GCC optimize("fp-contract=off")
#endif

namespace {

constexpr std::size_t laneBytes = 32;

}  // namespace

#include "numeric/lanes_internal.h"

namespace {

// A tile as wide as a matrix of two or three columns. Lanes without a column repeat the last one, so that no value appears that
// the operands don't have.
struct NarrowColumns {
  static constexpr std::size_t count = 1;

  explicit NarrowColumns(std::size_t columns)
      : m_Mask(_mm256_cmpgt_epi64(_mm256_set1_epi64x(static_cast<long long>(columns)), _mm256_set_epi64x(3, 2, 1, 0))),
        m_Halves(columns == 2 ? _mm256_set_epi32(3, 2, 3, 2, 3, 2, 1, 0) : _mm256_set_epi32(5, 4, 5, 4, 3, 2, 1, 0))
  {
  }

  void Load(Lanes<double> (&parts)[1], double const * from) const
  {
    __m256 const halves = _mm256_castpd_ps(_mm256_maskload_pd(from, m_Mask));
    parts[0] = _mm256_castps_pd(_mm256_permutevar8x32_ps(halves, m_Halves));
  }
  void Store(double * to, Lanes<double> const (&parts)[1]) const { _mm256_maskstore_pd(to, m_Mask, parts[0]); }

 private:
  __m256i m_Mask;
  __m256i m_Halves;  // where each half of a lane comes from
};

}  // namespace

#include "numeric/lanes_kernels_internal.h"

namespace zp {

constinit KernelTable const avx2Kernels = laneKernels<NarrowColumns>;

}  // namespace zp

#if defined(__clang__)
#pragma clang attribute pop
#endif

#endif
