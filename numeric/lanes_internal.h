// Lanes, and the element-wise kernels in terms of them. The file that includes this sets laneBytes and, by a pragma, the
// instructions that may be used; so no inline function of another header may be called in here, or its shared copy would be
// compiled for them too. Everything is local to the including file.
#pragma once

namespace {

template <class T>
struct LaneType {
  typedef T Type __attribute__((vector_size(laneBytes)));
  typedef T Unaligned __attribute__((vector_size(laneBytes), aligned(sizeof(T)), may_alias));
  static constexpr std::size_t count = laneBytes / sizeof(T);
};

template <class T>
using Lanes = typename LaneType<T>::Type;

template <class T>
constexpr std::size_t laneCount = LaneType<T>::count;

constexpr std::size_t laneWidth = laneCount<double>;

template <class T>
inline Lanes<T> load(T const * from)
{
  return *reinterpret_cast<typename LaneType<T>::Unaligned const *>(from);
}

template <class T>
inline void store(T * to, Lanes<T> const & lanes)
{
  *reinterpret_cast<typename LaneType<T>::Unaligned *>(to) = lanes;
}

template <class T>
inline Lanes<T> broadcast(T value)
{
  return value - Lanes<T>{};  // adding would turn -0.0 into 0.0
}

enum class Operation { add, subtract, multiply, divide, divideGuarded };

// V is one element or lanes of them.
template <Operation operation, class V>
inline V apply(V const & a, V const & b)
{
  if constexpr (operation == Operation::add) return a + b;
  if constexpr (operation == Operation::subtract) return a - b;
  if constexpr (operation == Operation::multiply) return a * b;
  if constexpr (operation == Operation::divide) return a / b;
  // Dividing by 1 in the passed-over places keeps the processor from reporting a division by zero that nobody asked for.
  if constexpr (operation == Operation::divideGuarded) return b == 0.0 ? a : a / (b == 0.0 ? V{} + 1.0 : b);
}

template <Operation operation, class T>
void combine(T * out, T const * a, T const * b, std::size_t n)
{
  constexpr std::size_t width = laneCount<T>;
  std::size_t i = 0;
  for (; i + 4 * width <= n; i += 4 * width) {
#pragma GCC unroll 4
    for (std::size_t at = i; at < i + 4 * width; at += width) {
      store(out + at, apply<operation, Lanes<T>>(load(a + at), load(b + at)));
    }
  }
  for (; i + width <= n; i += width) store(out + i, apply<operation, Lanes<T>>(load(a + i), load(b + i)));
  for (; i < n; ++i) out[i] = apply<operation, T>(a[i], b[i]);
}

template <Operation operation, class T>
void combineScalar(T * out, T const * a, T b, std::size_t n)
{
  constexpr std::size_t width = laneCount<T>;
  Lanes<T> const right = broadcast(b);
  std::size_t i = 0;
  for (; i + 4 * width <= n; i += 4 * width) {
#pragma GCC unroll 4
    for (std::size_t at = i; at < i + 4 * width; at += width) store(out + at, apply<operation, Lanes<T>>(load(a + at), right));
  }
  for (; i + width <= n; i += width) store(out + i, apply<operation, Lanes<T>>(load(a + i), right));
  for (; i < n; ++i) out[i] = apply<operation, T>(a[i], b);
}

// A comparison with a NaN is false, so a NaN never replaces what was found.
template <class V>
inline V larger(V const & value, V const & found)
{
  V const magnitude = value < 0.0 ? -value : value;
  return found < magnitude ? magnitude : found;
}

double largestMagnitude(double const * values, std::size_t n)
{
  constexpr std::size_t width = laneCount<double>;
  Lanes<double> found[4] = {};
  std::size_t i = 0;
  for (; i + 4 * width <= n; i += 4 * width) {
#pragma GCC unroll 4
    for (std::size_t part = 0; part < 4; ++part) found[part] = larger(load(values + i + part * width), found[part]);
  }
  double largest = 0.0;
  for (Lanes<double> const & part : found) {
    for (std::size_t lane = 0; lane < width; ++lane) largest = larger(double(part[lane]), largest);
  }
  for (; i < n; ++i) largest = larger(values[i], largest);
  return largest;
}

template <class T>
constexpr zp::ElementKernels<T> elementKernels = {
    combine<Operation::add, T>,       combine<Operation::subtract, T>,       combine<Operation::multiply, T>,
    combineScalar<Operation::add, T>, combineScalar<Operation::subtract, T>, combineScalar<Operation::multiply, T>};

}  // namespace
