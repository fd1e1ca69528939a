// Streaming of 100,000 items of four kinds, to memory and back, beside a hand-written encoder as the limit, which keeps its
// buffer, and beside cereal and Boost.Serialization when they were found. Each loads into owning pointers; items are objects.
// Processor time counts.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>

#include "bench/archive_peers.h"

namespace {

constexpr int itemCount = 100000;

void count(benchmark::State & state)
{
  state.SetItemsProcessed(state.iterations() * itemCount);
}

std::string textOf(int i)
{
  return "item " + std::to_string(i);
}

// Our items: a GPDataArray through CArchive.
struct Archive {
  static std::unique_ptr<GPObArray> Make()
  {
    auto items = std::make_unique<GPObArray>();
    for (int i = 0; i < itemCount; ++i) {
      auto const id = static_cast<unsigned int>(i & 0xFFFF);
      switch (i % 4) {
        case 0:
          items->Add(new GPd(id, i));
          break;
        case 1:
          items->Add(new GPf(id, static_cast<float>(i)));
          break;
        case 2:
          items->Add(new GPw(id, i));
          break;
        default:
          items->Add(new GPs(id, CString(textOf(i))));
          break;
      }
    }
    return items;
  }
  static void Store(GPObArray & items, CMemFile & file)
  {
    CArchive ar(&file, CArchive::store);
    ar.WriteObject(&items);
    ar.Close();
  }
};

void archiveStore(benchmark::State & state)
{
  auto const items = Archive::Make();
  for (auto _ : state) {
    CMemFile file;
    Archive::Store(*items, file);
    benchmark::DoNotOptimize(file.GetLength());
  }
  count(state);
}

void archiveLoad(benchmark::State & state)
{
  auto const items = Archive::Make();
  CMemFile file;
  Archive::Store(*items, file);
  for (auto _ : state) {
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load);
    std::unique_ptr<CObject> const loaded(ar.ReadObject(RUNTIME_CLASS(GPObArray)));
    benchmark::DoNotOptimize(loaded.get());
  }
  count(state);
}

// The limit: virtual items that write a kind, an id and a value into a byte vector, and a switch that reads them back.
struct Item {
  explicit Item(uint16_t id) : m_nID(id) {}
  virtual ~Item() = default;
  virtual void Encode(std::vector<char> & out) const = 0;
  uint16_t m_nID;

 protected:
  template <class... Values>
  static void Put(std::vector<char> & out, Values... values)
  {
    size_t at = out.size();
    out.resize(at + (sizeof values + ...));
    ((std::memcpy(out.data() + at, &values, sizeof values), at += sizeof values), ...);
  }
};

template <class Value, char kind>
struct NumberItem : Item {
  NumberItem(uint16_t id, Value value) : Item(id), m_Value(value) {}
  void Encode(std::vector<char> & out) const override { Put(out, kind, m_nID, m_Value); }
  Value m_Value;
};

struct TextItem : Item {
  TextItem(uint16_t id, std::string value) : Item(id), m_Value(std::move(value)) {}
  void Encode(std::vector<char> & out) const override
  {
    Put(out, char{3}, m_nID, static_cast<uint8_t>(m_Value.size()));
    out.insert(out.end(), m_Value.begin(), m_Value.end());
  }
  std::string m_Value;
};

using RealItem = NumberItem<double, 0>;
using SingleItem = NumberItem<float, 1>;
using WordItem = NumberItem<int16_t, 2>;
using Items = std::vector<std::unique_ptr<Item>>;

Items makeItems()
{
  Items items;
  for (int i = 0; i < itemCount; ++i) {
    auto const id = static_cast<uint16_t>(i);
    switch (i % 4) {
      case 0:
        items.push_back(std::make_unique<RealItem>(id, i));
        break;
      case 1:
        items.push_back(std::make_unique<SingleItem>(id, static_cast<float>(i)));
        break;
      case 2:
        items.push_back(std::make_unique<WordItem>(id, static_cast<int16_t>(i)));
        break;
      default:
        items.push_back(std::make_unique<TextItem>(id, textOf(i)));
        break;
    }
  }
  return items;
}

void encode(Items const & items, std::vector<char> & out)
{
  out.clear();
  for (auto const & item : items) item->Encode(out);
}

template <class Value>
Value take(char const *& from)
{
  Value value;
  std::memcpy(&value, from, sizeof value);
  from += sizeof value;
  return value;
}

Items decode(std::vector<char> const & bytes)
{
  Items items;
  for (char const *at = bytes.data(), *end = at + bytes.size(); at < end;) {
    char const kind = take<char>(at);
    auto const id = take<uint16_t>(at);
    switch (kind) {
      case 0:
        items.push_back(std::make_unique<RealItem>(id, take<double>(at)));
        break;
      case 1:
        items.push_back(std::make_unique<SingleItem>(id, take<float>(at)));
        break;
      case 2:
        items.push_back(std::make_unique<WordItem>(id, take<int16_t>(at)));
        break;
      default: {
        auto const length = take<uint8_t>(at);
        items.push_back(std::make_unique<TextItem>(id, std::string(at, length)));
        at += length;
      }
    }
  }
  return items;
}

void limitStore(benchmark::State & state)
{
  Items const items = makeItems();
  std::vector<char> bytes;
  for (auto _ : state) {
    encode(items, bytes);
    benchmark::DoNotOptimize(bytes.data());
  }
  count(state);
}

void limitLoad(benchmark::State & state)
{
  std::vector<char> bytes;
  encode(makeItems(), bytes);
  for (auto _ : state) benchmark::DoNotOptimize(decode(bytes));
  count(state);
}

template <class Peer>
void peerStore(benchmark::State & state)
{
  auto const items = bench::makePeerItems(itemCount);
  for (auto _ : state) benchmark::DoNotOptimize(Peer::Store(items));
  count(state);
}

template <class Peer>
void peerLoad(benchmark::State & state)
{
  std::string const bytes = Peer::Store(bench::makePeerItems(itemCount));
  for (auto _ : state) benchmark::DoNotOptimize(Peer::Load(bytes));
  count(state);
}

BENCHMARK(limitStore)->Unit(benchmark::kMillisecond);
BENCHMARK(archiveStore)->Unit(benchmark::kMillisecond);
#ifdef ZP_HAVE_CEREAL
BENCHMARK(peerStore<bench::Cereal>)->Unit(benchmark::kMillisecond);
#endif
#ifdef ZP_HAVE_BOOST
BENCHMARK(peerStore<bench::Boost>)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(limitLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(archiveLoad)->Unit(benchmark::kMillisecond);
#ifdef ZP_HAVE_CEREAL
BENCHMARK(peerLoad<bench::Cereal>)->Unit(benchmark::kMillisecond);
#endif
#ifdef ZP_HAVE_BOOST
BENCHMARK(peerLoad<bench::Boost>)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();
