// Sorting of doubles and integers by their bits: a key that orders as an unsigned number, and a radix sort on its digits for all
// but short arrays. The order is total, NaNs included, so nothing here can run astray.

#include "numeric/sorting_internal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr std::size_t shortArray = 256;  // elements up to which comparing is faster
constexpr unsigned digitBits = 8;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

// A negative double orders against its magnitude, a positive one above all of them.
std::uint64_t keyOf(double value)
{
  auto const bits = std::bit_cast<std::uint64_t>(value);
  auto const negative = static_cast<std::uint64_t>(-static_cast<std::int64_t>(bits >> 63));
  return bits ^ (negative | (std::uint64_t{1} << 63));
}

std::uint32_t keyOf(int value)
{
  return static_cast<std::uint32_t>(value) ^ 0x80000000u;
}

template <class Value>
constexpr std::size_t digitCount = 8 * sizeof(Value) / digitBits;

template <class Value>
std::size_t digitOf(Value value, std::size_t digit)
{
  return static_cast<std::size_t>(keyOf(value) >> (digit * digitBits)) & (digitValues - 1);
}

template <class Value>
using Histograms = std::array<std::array<std::size_t, digitValues>, digitCount<Value>>;

template <class Value>
void countDigits(Histograms<Value> & counts, Value const * values, std::size_t n)
{
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t digit = 0; digit < digitCount<Value>; ++digit) ++counts[digit][digitOf(values[i], digit)];
  }
}

// Moves the values to where their digit belongs, keeping the order of those with the same digit.
template <class Value>
void distribute(Value * out, Value const * in, std::size_t n, std::size_t digit, std::array<std::size_t, digitValues> & counts)
{
  std::size_t place = 0;
  for (std::size_t & count : counts) place += std::exchange(count, place);
  for (std::size_t i = 0; i < n; ++i) out[counts[digitOf(in[i], digit)]++] = in[i];
}

template <class Value>
void radixSort(Value * values, Value * scratch, std::size_t n)
{
  Histograms<Value> counts = {};
  countDigits(counts, values, n);
  Value * from = values;
  Value * to = scratch;
  for (std::size_t digit = 0; digit < digitCount<Value>; ++digit) {
    if (counts[digit][digitOf(values[0], digit)] == n) continue;  // all share it
    distribute(to, from, n, digit, counts[digit]);
    std::swap(from, to);
  }
  if (from != values) std::memcpy(values, from, n * sizeof(Value));
}

// Without a NaN the plain comparison is an order too, and a quicker one than that of the keys.
template <class Value>
void sortByComparing(Value * values, std::size_t n)
{
  if (std::any_of(values, values + n, [](Value value) { return value != value; })) {
    std::sort(values, values + n, [](Value a, Value b) { return keyOf(a) < keyOf(b); });
  } else {
    std::sort(values, values + n);
  }
}

template <class Value>
void sortByKey(Value * values, std::size_t n)
{
  std::unique_ptr<Value[]> scratch;
  if (n > shortArray) scratch.reset(new (std::nothrow) Value[n]);
  if (scratch) {
    radixSort(values, scratch.get(), n);
  } else {
    sortByComparing(values, n);
  }
}

// The difference as 32 bits hold it.
int wrappedDifference(int a, int b)
{
  return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

void siftDown(int * heap, std::size_t at, std::size_t n)
{
  for (std::size_t child = 2 * at + 1; child < n; child = 2 * at + 1) {
    if (child + 1 < n && wrappedDifference(heap[child], heap[child + 1]) < 0) ++child;
    if (wrappedDifference(heap[at], heap[child]) >= 0) return;
    std::swap(heap[at], heap[child]);
    at = child;
  }
}

// Stays inside the array whatever the comparison answers.
void heapSort(int * values, std::size_t n)
{
  for (std::size_t at = n / 2; at-- > 0;) siftDown(values, at, n);
  for (std::size_t last = n; last-- > 1;) {
    std::swap(values[0], values[last]);
    siftDown(values, 0, last);
  }
}

}  // namespace

namespace zp {

void SortDoubles(double * values, std::size_t n)
{
  if (n > 1) sortByKey(values, n);
}

void SortInts(int * values, std::size_t n)
{
  if (n < 2) return;
  auto const [least, greatest] = std::minmax_element(values, values + n);
  if (std::int64_t{*greatest} - *least <= std::numeric_limits<int>::max()) {
    sortByKey(values, n);
  } else {
    heapSort(values, n);
  }
}

}  // namespace zp
