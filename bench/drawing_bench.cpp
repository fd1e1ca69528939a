// Entities through DXFDC, in bytes of DXF a second, beside two ways to write the same bytes by hand: formatted with snprintf, its
// text and its line end written one after the other; and ready-made, with one write an entity. Every pass writes the same
// entities over those of the pass before, in a file of TMPDIR's file system.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <zpbase/drawing.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "bench/bench_support.h"

namespace {

constexpr int entities = 20'000;
constexpr int height = 30'000;
CString const texts[] = {"V-101", "Flash drum", "E-2 A/B", "298.15 K"};

struct Line {
  int x1, y1, x2, y2;
};

struct Text {
  int x, y, width, size;
  CString text;
};

template <class Entity>
std::vector<Entity> makeEntities();

template <>
std::vector<Line> makeEntities()
{
  std::mt19937 random(20261125);
  auto const next = [&] { return static_cast<int>(random() % height); };
  std::vector<Line> all(entities);
  for (Line & line : all) line = {next(), next(), next(), next()};
  return all;
}

template <>
std::vector<Text> makeEntities()
{
  std::mt19937 random(20261125);
  auto const next = [&](unsigned int most) { return static_cast<int>(random() % most); };
  std::vector<Text> all(entities);
  for (Text & text : all) text = {next(height), next(height), 50 + next(900), 20 + next(300), texts[random() % 4]};
  return all;
}

void draw(DXFDC & dc, Line const & line)
{
  dc.MoveTo(line.x1, line.y1);
  dc.LineTo(line.x2, line.y2);
}

void draw(DXFDC & dc, Text const & text)
{
  tagRECT const rect{0, 0, text.width, text.size};
  dc.ExtTextOutA(text.x, text.y, 0, &rect, text.text, nullptr);
}

int format(char * buffer, size_t size, Line const & line)
{
  return snprintf(buffer, size,
                  "  0\r\nLINE\r\n  8\r\nFS_OBJECT\r\n  6\r\n%s\r\n 62\r\n%6d\r\n 10\r\n%d.0\r\n 20\r\n%d.0\r\n 11\r\n%d.0\r\n"
                  " 21\r\n%d.0",
                  DXFLineTypeFromPenStyle(PS_SOLID), DXFColorFromCOLORREF(0), line.x1, height - line.y1, line.x2,
                  height - line.y2);
}

int format(char * buffer, size_t size, Text const & text)
{
  double const textHeight = 0.5 * text.size;
  double const margin = 0.2 * std::min(text.width, text.size);
  double const factor = ((text.width - 2 * margin) / text.text.GetLength()) / textHeight;
  return snprintf(buffer, size,
                  "  0\r\nTEXT\r\n  8\r\nFS_OBJECT\r\n 62\r\n%6d\r\n 10\r\n%.2f\r\n 20\r\n%.2f\r\n 40\r\n%.2f\r\n  1\r\n%s\r\n"
                  " 41\r\n%.2f",
                  DXFColorFromCOLORREF(0), text.x + margin, height - (text.y + (text.size + textHeight) / 2), textHeight,
                  text.text.GetString(), factor);
}

template <class Entity>
std::vector<std::string> readyMade(std::vector<Entity> const & all)
{
  std::vector<std::string> records;
  char buffer[5000];
  for (Entity const & entity : all) {
    records.emplace_back(buffer, static_cast<size_t>(format(buffer, sizeof buffer, entity)));
    records.back() += "\r\n";
  }
  return records;
}

size_t sizeOf(std::vector<std::string> const & records)
{
  size_t size = 0;
  for (std::string const & record : records) size += record.size();
  return size;
}

void setBytes(benchmark::State & state, size_t bytes)
{
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

void writeAll(int file, void const * bytes, size_t size)
{
  if (write(file, bytes, size) != static_cast<ssize_t>(size)) std::abort();
}

class HostFile {
 public:
  explicit HostFile(std::string const & name) : m_nFile(open(name.c_str(), O_RDWR | O_CREAT, 0666)) {}
  ~HostFile() { close(m_nFile); }
  HostFile(HostFile const &) = delete;
  HostFile & operator=(HostFile const &) = delete;
  int Get() const { return m_nFile; }

 private:
  int m_nFile;
};

template <class Entity>
void throughContext(benchmark::State & state)
{
  bench::Scratch const scratch;
  std::vector<Entity> const all = makeEntities<Entity>();
  GPFile file(FromHostPath(scratch.File("ours.dxf")));
  file.Open(CFile::modeCreate | CFile::modeReadWrite);
  CDC context;
  DXFDC dc(file, &context, height);
  for (auto _ : state) {
    file.SeekToBegin();
    for (Entity const & entity : all) draw(dc, entity);
  }
  size_t const size = sizeOf(readyMade(all));
  if (file.GetPosition() != size) state.SkipWithError("other bytes than by hand");
  setBytes(state, size);
}

template <class Entity>
void byHand(benchmark::State & state)
{
  bench::Scratch const scratch;
  std::vector<Entity> const all = makeEntities<Entity>();
  HostFile const file(scratch.File("literal.dxf"));
  char buffer[5000];
  for (auto _ : state) {
    lseek(file.Get(), 0, SEEK_SET);
    for (Entity const & entity : all) {
      writeAll(file.Get(), buffer, static_cast<size_t>(format(buffer, sizeof buffer, entity)));
      writeAll(file.Get(), "\r\n", 2);
    }
  }
  setBytes(state, sizeOf(readyMade(all)));
}

template <class Entity>
void onlyWritten(benchmark::State & state)
{
  bench::Scratch const scratch;
  std::vector<std::string> const records = readyMade(makeEntities<Entity>());
  HostFile const file(scratch.File("plain.dxf"));
  for (auto _ : state) {
    lseek(file.Get(), 0, SEEK_SET);
    for (std::string const & record : records) writeAll(file.Get(), record.data(), record.size());
  }
  setBytes(state, sizeOf(records));
}

}  // namespace

BENCHMARK(onlyWritten<Line>)->Name("lines/one plain write each");
BENCHMARK(throughContext<Line>)->Name("lines/DXFDC");
BENCHMARK(byHand<Line>)->Name("lines/snprintf and two writes");
BENCHMARK(onlyWritten<Text>)->Name("texts/one plain write each");
BENCHMARK(throughContext<Text>)->Name("texts/DXFDC");
BENCHMARK(byHand<Text>)->Name("texts/snprintf and two writes");

BENCHMARK_MAIN();
