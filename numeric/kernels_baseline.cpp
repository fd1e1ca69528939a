// The kernels in lanes of 16 bytes, which every processor of the platform has.

#include "numeric/kernels_internal.h"

#include <type_traits>
#include <utility>

namespace {

constexpr std::size_t laneBytes = 16;

}  // namespace

#include "numeric/lanes_kernels_internal.h"

namespace zp {

constinit KernelTable const baselineKernels = laneKernels<void>;

}  // namespace zp
