// Reading and writing a workbook of a million numbers, beside what its packages alone cost: unpacking with a parser that tells
// its elements to nobody.

#include <benchmark/benchmark.h>

#include <random>
#include <span>
#include <string>

#include <expat.h>
#include <zip.h>

#include "servers/embedded/workbook_reader.h"
#include "servers/embedded/workbook_writer.h"

namespace {

constexpr uint32_t rows = 10000;
constexpr uint32_t columns = 100;

embedded::Workbook const & book()
{
  static embedded::Workbook const made = [] {
    embedded::Workbook fresh;
    fresh.sheets.push_back(std::make_unique<embedded::Sheet>());
    fresh.sheets.back()->name = "Data";
    std::mt19937_64 random(1);
    std::uniform_int_distribution<int> millionths(0, 1000000000);
    for (uint32_t row = 0; row < rows; ++row) {
      for (uint32_t column = 0; column < columns; ++column) {
        auto cell = embedded::Cell::OfNumber(millionths(random) / 1e6);
        cell.SetPlace(row, column);
        fresh.sheets.back()->cells.Put(std::move(cell));
      }
    }
    return fresh;
  }();
  return made;
}

std::string const & packedBook()
{
  static std::string const packed = embedded::PackWorkbook(book());
  return packed;
}

void tellCells(benchmark::State & state)
{
  state.SetItemsProcessed(state.iterations() * rows * columns);
}

void BM_ReadMillionCells(benchmark::State & state)
{
  for (auto _ : state) benchmark::DoNotOptimize(embedded::ReadWorkbook(std::as_bytes(std::span(packedBook()))));
  tellCells(state);
}
BENCHMARK(BM_ReadMillionCells)->Unit(benchmark::kMillisecond);

void onStart(void * count, char const *, char const **)
{
  ++*static_cast<int *>(count);
}
void onEnd(void *, char const *) {}
void onText(void *, char const *, int) {}

void BM_UnpackAndParseAlone(benchmark::State & state)
{
  for (auto _ : state) {
    zip_source_t * const source = zip_source_buffer_create(packedBook().data(), packedBook().size(), 0, nullptr);
    zip_t * const archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    zip_file_t * const part = zip_fopen(archive, "xl/worksheets/sheet1.xml", 0);
    XML_Parser const parser = XML_ParserCreateNS(nullptr, '|');
    int elements = 0;
    XML_SetUserData(parser, &elements);
    XML_SetElementHandler(parser, onStart, onEnd);
    XML_SetCharacterDataHandler(parser, onText);
    constexpr int atOnce = 128 << 10;
    while (zip_int64_t const got = zip_fread(part, XML_GetBuffer(parser, atOnce), atOnce))
      XML_ParseBuffer(parser, static_cast<int>(got), 0);
    if (elements != static_cast<int>(2 * rows * columns + rows + 3)) state.SkipWithError("not the elements that were written");
    XML_ParserFree(parser);
    zip_fclose(part);
    zip_discard(archive);
  }
  tellCells(state);
}
BENCHMARK(BM_UnpackAndParseAlone)->Unit(benchmark::kMillisecond);

void BM_WriteMillionCells(benchmark::State & state)
{
  for (auto _ : state) benchmark::DoNotOptimize(embedded::PackWorkbook(book()));
  tellCells(state);
}
BENCHMARK(BM_WriteMillionCells)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
