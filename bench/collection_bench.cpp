// Keyed collections of 10, 100 and 1,000 items: adding in random order, finding, loading and unloading values. Beside them a
// std::map from id to a variant as the peer, and a plain sorted vector of such pairs as the limit. Ids follow each other but
// where they are scattered. Each figure is for all items. The list is there to be compared with the array. Storing and loading is
// that of a whole collection, as an object in memory.
//
//   collection_bench --benchmark_repetitions=7 --benchmark_report_aggregates_only

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <benchmark/benchmark.h>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>

namespace {

using Id = uint16_t;
using Value = std::variant<float, double, int16_t, std::string>;

std::vector<Id> shuffledIds(benchmark::State const & state)
{
  std::vector<Id> ids(static_cast<size_t>(state.range(0)));
  std::iota(ids.begin(), ids.end(), Id{1});
  std::shuffle(ids.begin(), ids.end(), std::mt19937(7));
  return ids;
}

// Ids from the whole range, of which none follows from another.
std::vector<Id> scatteredIds(benchmark::State const & state)
{
  std::vector<Id> ids(0xFFFF);
  std::iota(ids.begin(), ids.end(), Id{1});
  std::shuffle(ids.begin(), ids.end(), std::mt19937(7));
  ids.resize(static_cast<size_t>(state.range(0)));
  return ids;
}

// The system's collections.
struct Collection {
  GPDataArray m_Items;

  void Add(Id id, float value) { m_Items.AddData(new GPf(id, value)); }
  bool Find(Id id) const { return m_Items.GetData(id, 1) != nullptr; }
  void Load(Id id, double value) { m_Items.LoadFloatData(id, value); }
  double Unload(Id id) const
  {
    double value;
    m_Items.UnloadFloatData(value, id);
    return value;
  }
};

struct List {
  GPDataList m_Items;

  void Add(Id id, float value) { m_Items.AddData(new GPf(id, value)); }
  bool Find(Id id) { return m_Items.GetData(id) != nullptr; }
  void Load(Id id, double value)
  {
    m_Items.DeleteData(id);
    Add(id, static_cast<float>(value));
  }
};

struct Map {
  std::map<Id, Value> m_Items;

  void Add(Id id, float value) { m_Items.emplace(id, value); }
  bool Find(Id id) const { return m_Items.find(id) != m_Items.end(); }
  void Load(Id id, double value) { m_Items.insert_or_assign(id, static_cast<float>(value)); }
  double Unload(Id id) const { return static_cast<double>(std::get<float>(m_Items.find(id)->second)); }
};

struct SortedVector {
  std::vector<std::pair<Id, Value>> m_Items;

  auto PlaceOf(Id id) const
  {
    return std::lower_bound(m_Items.begin(), m_Items.end(), id, [](auto const & item, Id wanted) { return item.first < wanted; });
  }
  void Add(Id id, float value) { m_Items.emplace(PlaceOf(id), id, value); }
  bool Find(Id id) const { return PlaceOf(id)->first == id; }
  void Load(Id id, double value)
  {
    m_Items[static_cast<size_t>(PlaceOf(id) - m_Items.begin())].second = static_cast<float>(value);
  }
  double Unload(Id id) const { return static_cast<double>(std::get<float>(PlaceOf(id)->second)); }
};

template <class Items>
void add(benchmark::State & state)
{
  std::vector<Id> const ids = shuffledIds(state);
  for (auto _ : state) {
    Items items;
    for (Id const id : ids) items.Add(id, 1.5F);
    benchmark::DoNotOptimize(items);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Items, class Step>
void walk(benchmark::State & state, std::vector<Id> const & ids, Step step)
{
  Items items;
  for (Id const id : ids) items.Add(id, 1.5F);
  for (auto _ : state)
    for (Id const id : ids) step(items, id);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Items>
void find(benchmark::State & state)
{
  walk<Items>(state, shuffledIds(state), [](Items & items, Id id) { benchmark::DoNotOptimize(items.Find(id)); });
}

template <class Items>
void load(benchmark::State & state)
{
  walk<Items>(state, shuffledIds(state), [](Items & items, Id id) { items.Load(id, 2.5); });
}

template <class Items>
void loadScattered(benchmark::State & state)
{
  walk<Items>(state, scatteredIds(state), [](Items & items, Id id) { items.Load(id, 2.5); });
}

template <class Items>
void unload(benchmark::State & state)
{
  walk<Items>(state, shuffledIds(state), [](Items const & items, Id id) { benchmark::DoNotOptimize(items.Unload(id)); });
}

template <class Items>
void fill(Items & items, int count)
{
  for (int i = 0; i < count; ++i) items.m_Items.AddData(new GPf(static_cast<Id>(i), 1.5F));
}

template <class Items>
void store(benchmark::State & state)
{
  Items items;
  fill(items, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.WriteObject(&items.m_Items);
    archive.Close();
    benchmark::DoNotOptimize(file.GetLength());
  }
}

template <class Items>
void restore(benchmark::State & state)
{
  Items items;
  fill(items, static_cast<int>(state.range(0)));
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  archive.WriteObject(&items.m_Items);
  archive.Close();
  for (auto _ : state) {
    file.SeekToBegin();
    CArchive from(&file, CArchive::load);
    std::unique_ptr<CObject> const loaded(from.ReadObject(nullptr));
    benchmark::DoNotOptimize(loaded.get());
  }
}

}  // namespace

#define ZP_SIZES ->Arg(10)->Arg(100)->Arg(1000)
BENCHMARK(add<SortedVector>) ZP_SIZES;
BENCHMARK(add<Map>) ZP_SIZES;
BENCHMARK(add<Collection>) ZP_SIZES;
BENCHMARK(find<SortedVector>) ZP_SIZES;
BENCHMARK(find<Map>) ZP_SIZES;
BENCHMARK(find<Collection>) ZP_SIZES;
BENCHMARK(load<SortedVector>) ZP_SIZES;
BENCHMARK(load<Map>) ZP_SIZES;
BENCHMARK(load<Collection>) ZP_SIZES;
BENCHMARK(loadScattered<Map>)->Arg(1000);
BENCHMARK(loadScattered<Collection>)->Arg(1000);
BENCHMARK(unload<SortedVector>) ZP_SIZES;
BENCHMARK(unload<Map>) ZP_SIZES;
BENCHMARK(unload<Collection>) ZP_SIZES;
BENCHMARK(add<List>) ZP_SIZES->Arg(10000);
BENCHMARK(find<List>) ZP_SIZES;
BENCHMARK(load<List>) ZP_SIZES;
BENCHMARK(store<Collection>)->Arg(20);
BENCHMARK(store<List>)->Arg(20);
BENCHMARK(restore<Collection>)->Arg(20);
BENCHMARK(restore<List>)->Arg(20);
BENCHMARK_MAIN();
