// The choice of kernels: made once, at the first use, and kept for the process.
#include "numeric/kernels_internal.h"

#include <initializer_list>

namespace zp {

constinit std::atomic<KernelTable const *> g_pKernels = nullptr;

#if defined(__x86_64__)
namespace {

// From this size on and below that one.
struct Sizes {
  std::size_t from;
  std::size_t to;

  constexpr bool Hold(std::size_t size) const { return from <= size && size < to; }
};

constexpr std::size_t noEnd = SIZE_MAX;

// Where lanes of 64 bytes are quicker than those of 32: on processors that have them whole, as measured on a Xeon, and on those
// that halve them, as was found on a Zen 4 before the kernels for small products.
struct WideSizes {
  Sizes product;           // columns of the result
  Sizes matrixVector;      // columns of the matrix
  Sizes vectorMatrix;      // columns of the matrix
  Sizes largestMagnitude;  // elements
};

constexpr WideSizes wholeLanes = {{5, noEnd}, {0, noEnd}, {0, noEnd}, {1000, noEnd}};
constexpr WideSizes halvedLanes = {{noEnd, noEnd}, {noEnd, noEnd}, {64, 201}, {1000, noEnd}};

KernelTable const & widthFor(Sizes const & wide, std::size_t size)
{
  return wide.Hold(size) ? avx512Kernels : avx2Kernels;
}

template <WideSizes const & sizes>
KernelTable mixKernels()
{
  KernelTable mixed = avx512Kernels;
  mixed.product = [](double * out, double const * a, double const * b, std::size_t rows, std::size_t inner, std::size_t cols) {
    widthFor(sizes.product, cols).product(out, a, b, rows, inner, cols);
  };
  mixed.matrixVector = [](double * out, double const * m, double const * v, std::size_t rows, std::size_t cols) {
    widthFor(sizes.matrixVector, cols).matrixVector(out, m, v, rows, cols);
  };
  mixed.vectorMatrix = [](double * out, double const * v, double const * m, std::size_t rows, std::size_t cols) {
    widthFor(sizes.vectorMatrix, cols).vectorMatrix(out, v, m, rows, cols);
  };
  mixed.largestMagnitude = [](double const * values, std::size_t n) {
    return widthFor(sizes.largestMagnitude, n).largestMagnitude(values, n);
  };
  return mixed;
}

KernelTable const * findWide(KernelSet set)
{
  if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx2")) return nullptr;
  static KernelTable const whole = mixKernels<wholeLanes>();
  static KernelTable const halved = mixKernels<halvedLanes>();
  if (set == KernelSet::wholeLanes) return &whole;
  return set == KernelSet::halvedLanes ? &halved : &avx512Kernels;
}

}  // namespace
#endif

KernelTable const * FindKernels(KernelSet set)
{
  if (set == KernelSet::baseline) return &baselineKernels;
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (set != KernelSet::avx2) return findWide(set);
  if (__builtin_cpu_supports("avx2")) return &avx2Kernels;
#endif
  return nullptr;
}

// AMD's family 19h has AVX-512 in halves alone.
KernelTable const & ChooseKernels()
{
  KernelSet wide = KernelSet::wholeLanes;
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (__builtin_cpu_is("amdfam19h")) wide = KernelSet::halvedLanes;
#endif
  KernelTable const * kernels = nullptr;
  for (KernelSet set : {wide, KernelSet::avx2, KernelSet::baseline}) {
    if (!kernels) kernels = FindKernels(set);
  }
  g_pKernels.store(kernels, std::memory_order_relaxed);
  return *kernels;
}

int UseKernels(KernelSet set)
{
  KernelTable const * const kernels = FindKernels(set);
  if (kernels) g_pKernels.store(kernels, std::memory_order_relaxed);
  return kernels != nullptr;
}

void UseKernels()
{
  g_pKernels.store(nullptr, std::memory_order_relaxed);
}

}  // namespace zp
