// The choice of instruction set: made once, at the first use, and kept for the process.
#include "numeric/kernels_internal.h"

#include <initializer_list>

namespace zp {

constinit std::atomic<KernelTable const *> g_pKernels = nullptr;

namespace {

KernelTable const * findWidest()
{
  for (InstructionSet set : {InstructionSet::avx512, InstructionSet::avx2}) {
    if (KernelTable const * kernels = FindKernels(set)) return kernels;
  }
  return &baselineKernels;
}

}  // namespace

KernelTable const * FindKernels(InstructionSet set)
{
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (set == InstructionSet::avx512) return __builtin_cpu_supports("avx512f") ? &avx512Kernels : nullptr;
  if (set == InstructionSet::avx2) return __builtin_cpu_supports("avx2") ? &avx2Kernels : nullptr;
#endif
  return set == InstructionSet::baseline ? &baselineKernels : nullptr;
}

KernelTable const & ChooseKernels()
{
  KernelTable const * const kernels = findWidest();
  g_pKernels.store(kernels, std::memory_order_relaxed);
  return *kernels;
}

int UseInstructionSet(InstructionSet set)
{
  KernelTable const * kernels = FindKernels(set);
  if (kernels) g_pKernels.store(kernels, std::memory_order_relaxed);
  return kernels != nullptr;
}

}  // namespace zp
