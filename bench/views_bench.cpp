// A text file of 50 MB, a million CR LF lines, into a report document; beside its limit, the reading of the file and the finding
// of its line ends. An iteration is the whole file.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <memory>

#include <zpbase/platform/paths.h>
#include <zpbase/store.h>
#include <zpbase/views.h>

#include "bench/bench_support.h"

namespace {

constexpr int lineCount = 1'000'000;
constexpr size_t lineBytes = 50;  // with its end; three quarters to five quarters of it
constexpr size_t chunkBytes = 0x40000;

class Report {
 public:
  explicit Report(bool withTabs) : m_Path(m_Scratch.File("report.txt"))
  {
    std::mt19937 random(7);
    std::string text;
    for (int i = 0; i < lineCount; ++i) {
      size_t const length = lineBytes * 3 / 4 + random() % (lineBytes / 2 + 1) - 2;
      for (size_t k = 0; k < length; ++k)
        text += withTabs && k % 12 == 6 ? '\t' : static_cast<char>('0' + (i + static_cast<int>(k)) % 64);
      text += "\r\n";
    }
    std::ofstream(m_Path, std::ios::binary) << text;
    m_nBytes = text.size();
  }

  std::string const & Path() const { return m_Path; }
  int64_t Bytes() const { return static_cast<int64_t>(m_nBytes); }

 private:
  bench::Scratch m_Scratch;
  std::string m_Path;
  size_t m_nBytes;
};

int countEnds(char const * p, char const * end)
{
  int ends = 0;
  for (; (p = static_cast<char const *>(std::memchr(p, '\r', static_cast<size_t>(end - p)))) != nullptr; ++p) ++ends;
  return ends;
}

void findLineEnds(benchmark::State & state, size_t bufferBytes)
{
  Report const report(false);
  for (auto _ : state) {
    auto const buffer = std::make_unique_for_overwrite<char[]>(bufferBytes);
    int const file = open(report.Path().c_str(), O_RDONLY);
    int ends = 0;
    for (ssize_t got; (got = read(file, buffer.get(), bufferBytes)) > 0;) ends += countEnds(buffer.get(), buffer.get() + got);
    close(file);
    if (ends != lineCount) state.SkipWithError("lines are missing");
  }
  state.SetBytesProcessed(state.iterations() * report.Bytes());
}

void fillDocument(benchmark::State & state, bool withTabs)
{
  Report const report(withTabs);
  CString const path = FromHostPath(report.Path());
  for (auto _ : state) {
    auto lines = std::make_unique<CStringArray>();
    if (GPFile(path).InitStringArray(lines.get()) != lineCount) state.SkipWithError("lines are missing");
    auto doc = std::make_unique<GPRptDoc>(lines.release(), nullptr);
    state.PauseTiming();
    doc.reset();
    malloc_trim(0);  // a million texts leave the heap in pieces, which the next document would tidy up
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * report.Bytes());
}

}  // namespace

BENCHMARK_CAPTURE(findLineEnds, whole, size_t{64} << 20)
    ->Name("limit/file into memory, line ends found")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(findLineEnds, pieces, chunkBytes)
    ->Name("file through a small buffer, line ends found")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fillDocument, plain, false)->Name("report/into a document")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fillDocument, tabs, true)->Name("report/into a document, with tabs")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
