// The numeric containers beside the plain loops and the peers, one line each for the same work, on one thread.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <zpbase/numeric.h>

#include "bench/numeric_peers.h"

namespace {

using bench::NumericWay;

int const matrixSizes[] = {3, 5, 8, 10, 20, 64, 256, 1024};
constexpr int largeVector = 10000000;
int const vectorSizes[] = {10, 1000, 1000000};
constexpr int transposeSize = 2000;

std::vector<NumericWay const *> peers()
{
  std::vector<NumericWay const *> ways = {&bench::plainLoops};
#if defined(ZP_HAVE_EIGEN)
  ways.push_back(&bench::eigen);
#endif
#if defined(ZP_HAVE_OPENBLAS)
  ways.push_back(&bench::openBlas);
#endif
  return ways;
}

void add(std::string const & work, char const * way, int size, std::function<void()> const & once)
{
  benchmark::RegisterBenchmark((work + '/' + std::to_string(size) + '/' + way).c_str(), [once](benchmark::State & state) {
    for (auto _ : state) {
      once();
      benchmark::ClobberMemory();
    }
  })->Unit(size < 1000 ? benchmark::kNanosecond : benchmark::kMicrosecond);
}

GPVector randomVector(int size)
{
  std::mt19937 random(20261124);
  std::uniform_real_distribution<double> number(0.5, 1.5);
  GPVector vector(size);
  for (int i = 0; i < size; ++i) vector[i] = number(random);
  return vector;
}

GPMatrix randomMatrix(int size)
{
  return GPMatrix(size, size, randomVector(size * size).ArrayPtr());
}

// The operands outlive the registered benchmarks.
struct MatrixWork {
  explicit MatrixWork(int size) : a(randomMatrix(size)), b(randomMatrix(size)), out(size, size), v(randomVector(size)), w(size) {}

  GPMatrix a;
  GPMatrix b;
  GPMatrix out;
  GPVector v;
  GPVector w;
};

void addMatrixWork(int size, std::vector<NumericWay const *> const & ways)
{
  auto & work = *new MatrixWork(size);
  auto const n = static_cast<std::size_t>(size);
  add("product", "ours", size, [&work] { work.out = work.a * work.b; });
  for (auto const * way : ways) {
    add("product", way->name, size,
        [&work, way, n] { way->product(work.out.ArrayPtr(), work.a.ArrayPtr(), work.b.ArrayPtr(), n); });
  }
  add("matrix x vector", "ours", size, [&work] { work.w = work.a * work.v; });
  for (auto const * way : ways) {
    add("matrix x vector", way->name, size,
        [&work, way, n] { way->matrixVector(work.w.ArrayPtr(), work.a.ArrayPtr(), work.v.ArrayPtr(), n); });
  }
  add("vector x matrix", "ours", size, [&work] { work.w = work.v * work.a; });
  for (auto const * way : ways) {
    add("vector x matrix", way->name, size,
        [&work, way, n] { way->vectorMatrix(work.w.ArrayPtr(), work.v.ArrayPtr(), work.a.ArrayPtr(), n); });
  }
}

struct VectorWork {
  explicit VectorWork(int size) : a(randomVector(size)), ones(size, 1.0) {}

  GPVector a;
  GPVector ones;  // neither sums nor products run away
};

void addPairwiseWork(std::string const & name, VectorWork & work, std::function<void()> const & ours,
                     std::vector<NumericWay const *> const & ways,
                     void (*NumericWay::*member)(double *, double const *, std::size_t))
{
  int const size = work.a.GetSize();
  add(name, "ours", size, ours);
  for (auto const * way : ways) {
    if (!(way->*member)) continue;
    add(name, way->name, size, [&work, way, member] {
      (way->*member)(work.a.ArrayPtr(), work.ones.ArrayPtr(), static_cast<std::size_t>(work.a.GetSize()));
    });
  }
}

void addVectorWork(int size, std::vector<NumericWay const *> const & ways)
{
  auto & work = *new VectorWork(size);
  auto const n = static_cast<std::size_t>(size);
  addPairwiseWork(
      "a += b", work, [&work] { work.a += work.ones; }, ways, &NumericWay::add);
  addPairwiseWork(
      "a *= b", work, [&work] { work.a *= work.ones; }, ways, &NumericWay::multiply);
  addPairwiseWork(
      "a /= b", work, [&work] { work.a /= work.ones; }, ways, &NumericWay::divide);
  add("a *= s", "ours", size, [&work] { work.a *= -1.0; });
  for (auto const * way : ways) add("a *= s", way->name, size, [&work, way, n] { way->scale(work.a.ArrayPtr(), -1.0, n); });
  add("sum", "ours", size, [&work] { benchmark::DoNotOptimize(work.a.Sum()); });
  add("sum", "plain", size, [&work, n] { benchmark::DoNotOptimize(bench::plainLoops.sum(work.a.ArrayPtr(), n)); });
  add("dot product", "ours", size, [&work] { benchmark::DoNotOptimize(work.a.DotProduct(work.ones)); });
  add("dot product", "plain", size,
      [&work, n] { benchmark::DoNotOptimize(bench::plainLoops.dotProduct(work.a.ArrayPtr(), work.ones.ArrayPtr(), n)); });
}

// A result in fresh memory, beside the same work in place.
void addLargeSums(std::vector<NumericWay const *> const & ways)
{
  auto & work = *new VectorWork(largeVector);
  add("a + b", "ours", largeVector, [&work] { benchmark::DoNotOptimize((work.a + work.ones).ArrayPtr()); });
  add("a + b", "ours, a += b", largeVector, [&work] { work.a += work.ones; });
  for (auto const * way : ways) {
    add("a + b", (std::string(way->name) + ", a += b").c_str(), largeVector,
        [&work, way] { way->add(work.a.ArrayPtr(), work.ones.ArrayPtr(), static_cast<std::size_t>(largeVector)); });
  }
}

void addPivots(int size)
{
  auto & work = *new VectorWork(size);
  add("pivot", "ours", size, [&work] { benchmark::DoNotOptimize(work.a.GetPivot()); });
  add("pivot", "plain", size, [&work] {
    double largest = 0.0;
    double const * const values = work.a.ArrayPtr();
    for (int i = 0; i < work.a.GetSize(); ++i) {
      double const magnitude = std::fabs(values[i]);
      if (largest < magnitude) largest = magnitude;
    }
    benchmark::DoNotOptimize(largest);
  });
}

void addTranspose(std::vector<NumericWay const *> const & ways)
{
  auto & work = *new MatrixWork(transposeSize);
  auto const n = static_cast<std::size_t>(transposeSize);
  add("transpose", "memcpy", transposeSize,
      [&work, n] { std::memcpy(work.out.ArrayPtr(), work.a.ArrayPtr(), n * n * sizeof(double)); });
  add("transpose", "ours", transposeSize, [&work] { work.a.Transpose(); });
  for (auto const * way : ways) {
    if (!way->transpose) continue;
    add("transpose", way->name, transposeSize, [&work, way, n] { way->transpose(work.out.ArrayPtr(), work.a.ArrayPtr(), n); });
  }
}

int compareDoubles(void const * a, void const * b)
{
  double const difference = *static_cast<double const *>(a) - *static_cast<double const *>(b);
  return difference < 0.0 ? -1 : difference > 0.0;
}

// Sorts copies of many arrays, so that nobody learns the branches of one by heart; the time is that of one array.
void addSort(int size, char const * way, void (*sort)(GPVector &))
{
  benchmark::RegisterBenchmark(("sort/" + std::to_string(size) + '/' + way).c_str(), [size, sort](benchmark::State & state) {
    std::mt19937_64 random(20261124);
    std::normal_distribution<double> number;
    std::vector<GPVector> unsorted(static_cast<std::size_t>(std::max(1, 200000 / size)), GPVector(size));
    for (GPVector & vector : unsorted) std::generate_n(vector.ArrayPtr(), size, [&] { return number(random); });
    for (auto _ : state) {
      state.PauseTiming();
      std::vector<GPVector> vectors = unsorted;
      state.ResumeTiming();
      for (GPVector & vector : vectors) sort(vector);
    }
    state.counters["one array"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(unsorted.size()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  })->Unit(benchmark::kMillisecond);
}

void addSorts(int size)
{
  addSort(size, "ours", [](GPVector & vector) { vector.Sort(); });
  addSort(size, "qsort",
          [](GPVector & v) { std::qsort(v.ArrayPtr(), static_cast<std::size_t>(v.GetSize()), sizeof(double), compareDoubles); });
  addSort(size, "std::sort", [](GPVector & vector) { std::sort(vector.ArrayPtr(), vector.ArrayPtr() + vector.GetSize()); });
}

// With gaps that nothing foretells, as between the numbers of chosen streams.
GPIntVector ascendingInts(std::mt19937 & random, int size)
{
  GPIntVector ints(size);
  for (int i = 0, value = 0; i < size; ++i) ints[i] = value += 1 + static_cast<int>(random() % 5);
  return ints;
}

void addSets(int size)
{
  std::mt19937 random(static_cast<unsigned int>(size));
  auto & a = *new GPIntVector(ascendingInts(random, size));
  auto & b = *new GPIntVector(ascendingInts(random, size));
  auto const standard = [&a, &b](auto operation) {
    std::vector<int> out;
    operation(a.ArrayPtr(), a.ArrayPtr() + a.GetSize(), b.ArrayPtr(), b.ArrayPtr() + b.GetSize(), std::back_inserter(out));
    benchmark::DoNotOptimize(out.data());
  };
  add("a | b", "ours", size, [&a, &b] { benchmark::DoNotOptimize((a | b).ArrayPtr()); });
  add("a | b", "std::set_union", size, [standard] { standard([](auto... range) { std::set_union(range...); }); });
  add("a & b", "ours", size, [&a, &b] { benchmark::DoNotOptimize((a & b).ArrayPtr()); });
  add("a & b", "std::set_intersection", size, [standard] { standard([](auto... range) { std::set_intersection(range...); }); });
}

}  // namespace

int main(int argc, char ** argv)
{
  benchmark::Initialize(&argc, argv);
#if defined(ZP_HAVE_OPENBLAS)
  bench::useOneThread();
#endif
  auto const ways = peers();
  for (int size : matrixSizes) addMatrixWork(size, ways);
  for (int size : vectorSizes) addVectorWork(size, ways);
  addLargeSums(ways);
  for (int size : {16, 1000}) addPivots(size);
  addTranspose(ways);
  for (int size : vectorSizes) addSorts(size);
  for (int size : vectorSizes) addSets(size);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
