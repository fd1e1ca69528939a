// The kernels in lanes of 64 bytes, for processors with AVX-512. The instructions are allowed from the pragma on, so it stands
// behind every other header. Fused multiplication and addition stays off here too: the sums have to equal those of the other
// instruction sets.

#include "numeric/kernels_internal.h"

#include <type_traits>
#include <utility>

#if defined(__x86_64__)

#include <immintrin.h>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx512f"))), apply_to = function)
#else
#pragma GCC target("avx512f")
#pragma GCC optimize("fp-contract=off")
#endif

namespace {

constexpr std::size_t laneBytes = 64;

}  // namespace

#include "numeric/lanes_internal.h"

namespace {

// A tile as wide as a matrix of two to seven columns. Lanes without a column repeat the last one, so that no value appears that
// the operands don't have.
struct NarrowColumns {
  static constexpr std::size_t count = 1;

  explicit NarrowColumns(std::size_t columns)
      : m_Source(_mm512_maskz_min_epi64(0xFF, _mm512_set_epi64(7, 6, 5, 4, 3, 2, 1, 0),
                                        _mm512_set1_epi64(static_cast<long long>(columns) - 1))),
        m_Mask(static_cast<__mmask8>((1u << columns) - 1))
  {
  }

  void Load(Lanes<double> (&parts)[1], double const * from) const
  {
    parts[0] = _mm512_maskz_permutexvar_pd(0xFF, m_Source, _mm512_maskz_loadu_pd(m_Mask, from));
  }
  void Store(double * to, Lanes<double> const (&parts)[1]) const { _mm512_mask_storeu_pd(to, m_Mask, parts[0]); }

 private:
  __m512i m_Source;  // where each lane comes from
  __mmask8 m_Mask;
};

}  // namespace

#include "numeric/lanes_kernels_internal.h"

namespace zp {

constinit KernelTable const avx512Kernels = laneKernels<NarrowColumns>;

}  // namespace zp

#if defined(__clang__)
#pragma clang attribute pop
#endif

#endif
