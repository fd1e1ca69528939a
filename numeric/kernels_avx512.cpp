// The kernels in lanes of 64 bytes, for processors with AVX-512. The instructions are allowed from the pragma on, so it stands
// behind every other header. Fused multiplication and addition stays off here too: the sums have to equal those of the other
// instruction sets.

#include "numeric/kernels_internal.h"

#include <utility>

#if defined(__x86_64__)

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx512f"))), apply_to = function)
#else
#pragma GCC target("avx512f")
#pragma GCC optimize("fp-contract=off")
#endif

namespace {

constexpr std::size_t laneBytes = 64;

}  // namespace

#include "numeric/lanes_kernels_internal.h"

namespace zp {

constinit KernelTable const avx512Kernels = laneKernels;

}  // namespace zp

#if defined(__clang__)
#pragma clang attribute pop
#endif

#endif
