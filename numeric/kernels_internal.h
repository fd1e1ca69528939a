// The arithmetic kernels of the numeric containers over raw arrays. Each exists once for every instruction set and gives the same
// bits on all of them: lanes run across elements that don't depend on each other, and within one sum every step is a separate
// multiplication and addition in ascending order, from 0.0.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include <zpbase/platform/types.h>

namespace zp {

// Element by element over n elements; out may be a or b. Integers wrap.
template <class T>
struct ElementKernels {
  using Pairwise = void (*)(T * out, T const * a, T const * b, std::size_t n);
  using WithScalar = void (*)(T * out, T const * a, T b, std::size_t n);

  Pairwise add;
  Pairwise subtract;
  Pairwise multiply;
  WithScalar addScalar;
  WithScalar subtractScalar;
  WithScalar multiplyScalar;
};

struct KernelTable {
  ElementKernels<double> doubles;
  ElementKernels<std::uint32_t> words;

  // a / b, and a where b is 0.0.
  ElementKernels<double>::Pairwise divideGuarded;
  ElementKernels<double>::WithScalar divideScalar;

  // The largest absolute value, 0.0 for none; NaNs are passed over.
  double (*largestMagnitude)(double const * values, std::size_t n);

  // out (rows x cols) = a (rows x inner) times b (inner x cols), all row-major; out overlaps neither.
  void (*product)(double * out, double const * a, double const * b, std::size_t rows, std::size_t inner, std::size_t cols);
  // out (rows) = m (rows x cols) times v (cols).
  void (*matrixVector)(double * out, double const * m, double const * v, std::size_t rows, std::size_t cols);
  // out (cols) = v (rows) times m (rows x cols).
  void (*vectorMatrix)(double * out, double const * v, double const * m, std::size_t rows, std::size_t cols);
};

// The first three are all in lanes of one width. The other two are what processors with AVX-512 use: each kernel in lanes of 64
// or of 32 bytes, as its size makes the one or the other quicker on those that work on 64 bytes at once, and on those that take
// them in two halves.
enum class KernelSet { baseline, avx2, avx512, wholeLanes, halvedLanes };

// The table of a set, or null when the machine lacks its instructions. All give the same bits, but for payload and sign of NaNs.
ZP_API KernelTable const * FindKernels(KernelSet set);

// Null before the first use. Threads that race for that find the same.
extern constinit std::atomic<KernelTable const *> g_pKernels;
KernelTable const & ChooseKernels();

// The table for this machine, told by what the processor says of itself.
inline KernelTable const & GetKernels()
{
  KernelTable const * const kernels = g_pKernels.load(std::memory_order_relaxed);
  return kernels ? *kernels : ChooseKernels();
}

// Makes GetKernels answer with the given set, for tests and benchmarks; 0, and no change, when the machine lacks it. Without a
// set the machine's own choice is back at the next use.
ZP_API int UseKernels(KernelSet set);
ZP_API void UseKernels();

extern KernelTable const baselineKernels;
#if defined(__x86_64__)
extern KernelTable const avx2Kernels;
extern KernelTable const avx512Kernels;
#endif

}  // namespace zp
