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

inline double magnitude(double value)
{
  return __builtin_fabs(value);
}

inline Lanes<double> magnitude(Lanes<double> const & values)
{
  return reinterpret_cast<Lanes<double>>(reinterpret_cast<Lanes<std::uint64_t>>(values) & ~(std::uint64_t{1} << 63));
}

// A comparison with a NaN is false, so a NaN never replaces what was found.
template <class V>
inline V larger(V const & value, V const & found)
{
  return value > found ? value : found;
}

template <std::size_t distance, std::size_t... lane>
inline double largestLane(Lanes<double> const & lanes, std::index_sequence<lane...> all)
{
  Lanes<double> const found = larger<Lanes<double>>(__builtin_shufflevector(lanes, lanes, (lane ^ distance)...), lanes);
  if constexpr (distance == 1) return found[0];
  if constexpr (distance > 1) return largestLane<distance / 2>(found, all);
}

// Few elements are done one by one before lanes are filled. The last lanes reach back over elements that were seen already.
double largestMagnitude(double const * values, std::size_t n)
{
  constexpr std::size_t width = laneWidth;
  std::size_t i = 0;
  if (n < 16) {
    double largest = 0.0;
    for (; i < n; ++i) largest = larger(magnitude(values[i]), largest);
    return largest;
  }
  Lanes<double> found[4] = {};
  for (; i + 4 * width <= n; i += 4 * width) {
#pragma GCC unroll 4
    for (std::size_t part = 0; part < 4; ++part) found[part] = larger(magnitude(load(values + i + part * width)), found[part]);
  }
  for (; i + width <= n; i += width) found[0] = larger(magnitude(load(values + i)), found[0]);
  found[1] = larger(magnitude(load(values + n - width)), found[1]);
  found[0] = larger(larger(found[0], found[1]), larger(found[2], found[3]));
  return largestLane<width / 2>(found[0], std::make_index_sequence<width>());
}

template <class T>
constexpr zp::ElementKernels<T> elementKernels = {
    combine<Operation::add, T>,       combine<Operation::subtract, T>,       combine<Operation::multiply, T>,
    combineScalar<Operation::add, T>, combineScalar<Operation::subtract, T>, combineScalar<Operation::multiply, T>};

}  // namespace
