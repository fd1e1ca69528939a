// Reading a numeric text file of 50 MB, six columns and CR LF lines: the whole road from the file on disk through ParseFile,
// ReadLine and GetNext_Double, beside bare loops of number readers over the same bytes in memory. An iteration is the whole
// file; bytes are those of the file, items its values. Also the finding of columns, and of the lines alone.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <charconv>
#include <fstream>
#include <random>
#include <sstream>

#include <zpbase/platform/number_text.h>
#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

#include "bench/bench_support.h"

#ifdef ZP_HAVE_FAST_FLOAT
#include <fast_float/fast_float.h>
#endif

namespace {

constexpr size_t fileBytes = 50'000'000;
constexpr int columns = 6;

// Times, temperatures, pressures, counts and compositions, as a logger writes them.
std::string numericLines(size_t bytes)
{
  std::mt19937 random(42);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::string text;
  text.reserve(bytes + 200);
  char line[200];
  for (int time = 0; text.size() < bytes; ++time) {
    int const length =
        std::snprintf(line, sizeof line, "%.2f %.4f %.6e %d %.6g %.5f\r\n", time * 0.25, 250.0 + 200.0 * unit(random),
                      1e5 * unit(random), static_cast<int>(random() % 100000), unit(random), -50.0 * unit(random));
    text.append(line, static_cast<size_t>(length));
  }
  return text;
}

struct Data {
  Data() : text(numericLines(fileBytes)), path(FromHostPath(scratch.File("data.txt")))
  {
    std::ofstream(scratch.File("data.txt"), std::ios::binary) << text;
    values = columns * std::count(text.begin(), text.end(), '\n');
  }

  bench::Scratch scratch;
  std::string text;
  CString path;
  int64_t values;
};

Data const & data()
{
  static Data const made;
  return made;
}

void count(benchmark::State & state)
{
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(data().text.size()));
  state.SetItemsProcessed(state.iterations() * data().values);
}

void WholeRoad(benchmark::State & state)
{
  data();
  for (auto _ : state) {
    double sum = 0.0;
    ParseFile file(data().path);
    while (file.ReadLine() != -1) {
      for (int i = 0; i < columns; ++i) sum += file.GetNext_Double();
    }
    benchmark::DoNotOptimize(sum);
  }
  count(state);
}

void WholeRoadByLines(benchmark::State & state)
{
  data();
  for (auto _ : state) {
    double sum = 0.0;
    ParseFile file(data().path);
    while (file.ReadLine() != -1) {
      double values[columns];
      int const count = file.GetNext_Doubles(values, columns);
      for (int i = 0; i < count; ++i) sum += values[i];
    }
    benchmark::DoNotOptimize(sum);
  }
  count(state);
}

void LinesAlone(benchmark::State & state)
{
  data();
  for (auto _ : state) {
    ParseFile file(data().path);
    int64_t length = 0;
    for (int more; (more = file.ReadLine()) != -1;) length += more;
    benchmark::DoNotOptimize(length);
  }
  count(state);
}

// Sums what read makes of each number; read gives the place behind it.
template <class Read>
void bareLoop(benchmark::State & state, Read read)
{
  char const * const last = data().text.data() + data().text.size();
  for (auto _ : state) {
    double sum = 0.0;
    char const * p = data().text.data();
    for (;;) {
      while (p != last && (*p == ' ' || *p == '\r' || *p == '\n')) ++p;
      if (p == last) break;
      double value = 0.0;
      p = read(p, last, value);
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  count(state);
}

void TextToDoubleLoop(benchmark::State & state)
{
  bareLoop(state, [](char const * p, char const * last, double & value) {
    size_t used = 0;
    value = zp::TextToDouble({p, static_cast<size_t>(last - p)}, &used);
    return p + used;
  });
}

void StrtodLoop(benchmark::State & state)
{
  bareLoop(state, [](char const * p, char const *, double & value) {
    char * end = nullptr;
    value = strtod(p, &end);
    return static_cast<char const *>(end);
  });
}

void FromCharsLoop(benchmark::State & state)
{
  bareLoop(state, [](char const * p, char const * last, double & value) { return std::from_chars(p, last, value).ptr; });
}

#ifdef ZP_HAVE_FAST_FLOAT
void FastFloatLoop(benchmark::State & state)
{
  bareLoop(state, [](char const * p, char const * last, double & value) { return fast_float::from_chars(p, last, value).ptr; });
}
#endif

void StreamExtraction(benchmark::State & state)
{
  for (auto _ : state) {
    std::istringstream in(data().text);
    double sum = 0.0;
    for (double value; in >> value;) sum += value;
    benchmark::DoNotOptimize(sum);
  }
  count(state);
}

void FindColumns(benchmark::State & state, std::string const & text)
{
  bench::Scratch const scratch;
  std::ofstream(scratch.File("columns.txt"), std::ios::binary) << text;
  CString const path = FromHostPath(scratch.File("columns.txt"));
  ParseFile file(path);
  for (auto _ : state) {
    CUIntArray starts;
    CUIntArray ends;
    benchmark::DoNotOptimize(file.GetColumnPositions(starts, ends));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

std::string repeated(std::string const & line, int64_t times)
{
  std::string text;
  for (int64_t i = 0; i < times; ++i) text += line;
  return text;
}

void ColumnsOfTrailingBlanks(benchmark::State & state)
{
  FindColumns(state, repeated("1.5 2.5 \r\n77 8 9 \r\n", state.range(0) / 2));
}

void ManyColumns(benchmark::State & state)
{
  std::string line;
  for (int i = 0; i < state.range(0); ++i) line += "1234 ";
  FindColumns(state, repeated(line + "1\r\n", 200));
}

#ifdef ZP_HAVE_FAST_FLOAT
BENCHMARK(FastFloatLoop)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(WholeRoad)->Unit(benchmark::kMillisecond);
BENCHMARK(WholeRoadByLines)->Unit(benchmark::kMillisecond);
BENCHMARK(LinesAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(TextToDoubleLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(FromCharsLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(StrtodLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(StreamExtraction)->Unit(benchmark::kMillisecond);
BENCHMARK(ColumnsOfTrailingBlanks)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(ManyColumns)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
