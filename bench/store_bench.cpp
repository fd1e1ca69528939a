// The record store beside its limit, which is one plain pwrite or pread a record, and beside the peers that were found when this
// was configured. An iteration is one operation on every record, in random order; items are operations. Processor time counts.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <memory>

#include <zpbase/data.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "bench/bench_support.h"
#include "bench/store_peers.h"

namespace {

using bench::Records;
using bench::Scratch;

// One plain file with each record at a place of its own, where the store would put it.
class Limit {
 public:
  Limit(Scratch const & scratch, Records const & records) : m_Records(records), m_Places(records.order.size())
  {
    m_nFile = open(scratch.File("limit").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0666);
    for (int const id : records.order) {
      m_Places[static_cast<size_t>(id)] = m_nEnd;
      m_nEnd += records.Length(id) + 6;
    }
  }
  ~Limit() { close(m_nFile); }
  void Write(int id) { Check(pwrite(m_nFile, m_Records.Data(id), m_Records.Length(id) + 6, m_Places[static_cast<size_t>(id)])); }
  void Mark(int id) { Check(pwrite(m_nFile, m_Records.Data(id), 2, m_Places[static_cast<size_t>(id)])); }
  void Read(int id, char * buffer) { Check(pread(m_nFile, buffer, m_Records.Length(id), m_Places[static_cast<size_t>(id)] + 6)); }

 private:
  static void Check(ssize_t done)
  {
    if (done < 0) abort();
  }

  Records const & m_Records;
  std::vector<off_t> m_Places;
  int m_nFile;
  off_t m_nEnd = 0;
};

// The store behind the face that the peers have.
class Store {
 public:
  explicit Store(Scratch const & scratch) : m_Store(Name(scratch, "b.si"), Name(scratch, "b.sr"), CFile::modeReadWrite, nullptr)
  {
  }
  static CString Name(Scratch const & scratch, char const * file) { return FromHostPath(scratch.File(file)); }
  void Put(int id, char const * data, unsigned int length) { m_Store.StoreRec(data, length, id); }
  unsigned int Get(int id, char * buffer, unsigned int size) { return m_Store.LoadRec(buffer, size, id); }
  void Delete(int id) { m_Store.DeleteRec(id); }

 private:
  GPDataFile m_Store;
};

template <class Peer>
void fill(Peer & peer, Records const & records)
{
  for (int const id : records.order) peer.Put(id, records.Data(id), records.Length(id));
}

void count(benchmark::State & state)
{
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Times work alone, each time on a subject that make builds anew in a scratch folder of its own.
template <class Make, class Work>
void onFresh(benchmark::State & state, Make make, Work work)
{
  for (auto _ : state) {
    state.PauseTiming();
    auto scratch = std::make_unique<Scratch>();
    auto subject = make(*scratch);
    state.ResumeTiming();
    work(*subject);
    state.PauseTiming();
    subject.reset();
    scratch.reset();
    state.ResumeTiming();
  }
  count(state);
}

template <class Peer>
std::unique_ptr<Peer> makeFilled(Scratch const & scratch, Records const & records)
{
  auto peer = std::make_unique<Peer>(scratch);
  fill(*peer, records);
  return peer;
}

template <class Peer>
void insert(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  onFresh(
      state, [](Scratch const & scratch) { return std::make_unique<Peer>(scratch); }, [&](Peer & peer) { fill(peer, records); });
}

template <class Peer>
void replace(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  onFresh(
      state, [&](Scratch const & scratch) { return makeFilled<Peer>(scratch, records); },
      [&](Peer & peer) {
        for (int const id : records.order) peer.Put(id, records.Data(id), records.OtherLength(id));
      });
}

template <class Peer>
void remove(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  onFresh(
      state, [&](Scratch const & scratch) { return makeFilled<Peer>(scratch, records); },
      [&](Peer & peer) {
        for (int const id : records.order) peer.Delete(id);
      });
}

template <class Peer>
void get(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  auto const peer = makeFilled<Peer>(scratch, records);
  char buffer[2048];
  for (auto _ : state)
    for (int const id : records.order) benchmark::DoNotOptimize(peer->Get(id, buffer, records.Length(id)));
  count(state);
}

template <class Peer>
void overwrite(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  auto const peer = makeFilled<Peer>(scratch, records);
  for (auto _ : state) fill(*peer, records);
  count(state);
}

void limitInsert(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  onFresh(
      state, [&](Scratch const & scratch) { return std::make_unique<Limit>(scratch, records); },
      [&](Limit & limit) {
        for (int const id : records.order) limit.Write(id);
      });
}

template <class Work>
void limitOver(benchmark::State & state, Work work)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  Limit limit(scratch, records);
  for (int const id : records.order) limit.Write(id);
  for (auto _ : state)
    for (int const id : records.order) work(limit, id);
  count(state);
}

void limitGet(benchmark::State & state)
{
  char buffer[2048];
  limitOver(state, [&](Limit & limit, int id) { limit.Read(id, buffer); });
}

void limitOverwrite(benchmark::State & state)
{
  limitOver(state, [](Limit & limit, int id) { limit.Write(id); });
}

void limitDelete(benchmark::State & state)
{
  limitOver(state, [](Limit & limit, int id) { limit.Mark(id); });
}

// A store as it is left behind, with a quarter of as many free blocks if wanted.
void leave(Scratch const & scratch, Records const & records, bool hasFreeBlocks)
{
  Store store(scratch);
  fill(store, records);
  if (!hasFreeBlocks) return;
  for (size_t i = 1; i <= records.order.size() / 4; ++i)
    store.Put(records.order[i], records.Data(0), 2001 + static_cast<unsigned int>(i % 1000));  // longer than all
}

template <bool hasFreeBlocks>
void storeReopen(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  leave(scratch, records, hasFreeBlocks);
  char buffer[2048];
  for (auto _ : state) {
    Store store(scratch);
    benchmark::DoNotOptimize(store.Get(records.order[0], buffer, sizeof buffer));
  }
}

template <bool hasFreeBlocks>
void limitReopen(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  leave(scratch, records, hasFreeBlocks);
  size_t const size = std::filesystem::file_size(scratch.File("b.si"));
  char buffer[2048];
  for (auto _ : state) {
    std::vector<char> index(size);
    int const file = open(scratch.File("b.si").c_str(), O_RDONLY);
    benchmark::DoNotOptimize(read(file, index.data(), size));
    close(file);
    int const data = open(scratch.File("b.sr").c_str(), O_RDONLY);
    benchmark::DoNotOptimize(pread(data, buffer, records.Length(records.order[0]), 6));
    close(data);
  }
}

// Every record once, from a store that was just opened.
void storeOpenAndGetAll(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  leave(scratch, records, false);
  char buffer[2048];
  for (auto _ : state) {
    Store store(scratch);
    for (int const id : records.order) benchmark::DoNotOptimize(store.Get(id, buffer, sizeof buffer));
  }
  count(state);
}

// Twenty items of data, as a component has them.
GPDataArray makeComponent()
{
  GPDataArray component;
  component.LoadStringData(1, "Water");
  component.LoadStringData(2, "H2O");
  for (WORD id = 3; id <= 20; ++id) component.LoadFloatData(id, 1.5 * id);
  return component;
}

GPDataFile openForObjects(Scratch const & scratch)
{
  return GPDataFile(Store::Name(scratch, "o.si"), Store::Name(scratch, "o.sr"), CFile::modeReadWrite, nullptr);
}

void storeStoreObj(benchmark::State & state)
{
  Scratch const scratch;
  GPDataArray const component = makeComponent();
  GPDataFile store = openForObjects(scratch);
  for (auto _ : state)
    for (int id = 0; id < state.range(0); ++id) store.StoreObj(&component, id);
  count(state);
}

void storeLoadObj(benchmark::State & state)
{
  Scratch const scratch;
  GPDataArray const component = makeComponent();
  GPDataFile store = openForObjects(scratch);
  for (int id = 0; id < state.range(0); ++id) store.StoreObj(&component, id);
  for (auto _ : state)
    for (int id = 0; id < state.range(0); ++id) delete store.LoadObj(id);
  count(state);
}

// The bytes of such an object alone, over and over.
template <class Call>
void limitOfObjects(benchmark::State & state, Call call)
{
  Scratch const scratch;
  GPDataArray const component = makeComponent();
  GPDataFile store = openForObjects(scratch);
  store.StoreObj(&component, 0);
  std::vector<char> bytes(store.GetRecLength(0) + 6);
  int const file = open(scratch.File("limit").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0666);
  for (int id = 0; id < state.range(0); ++id)
    if (pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(bytes.size()) * id) < 0) abort();
  for (auto _ : state)
    for (int id = 0; id < state.range(0); ++id)
      benchmark::DoNotOptimize(call(file, bytes.data(), bytes.size(), static_cast<off_t>(bytes.size()) * id));
  close(file);
  count(state);
}

void limitStoreObj(benchmark::State & state)
{
  limitOfObjects(state, [](int file, char const * bytes, size_t size, off_t at) { return pwrite(file, bytes, size, at); });
}

void limitLoadObj(benchmark::State & state)
{
  limitOfObjects(state, [](int file, char * bytes, size_t size, off_t at) { return pread(file, bytes, size, at); });
}

#define ZP_STORE_BENCH(function) BENCHMARK(function)->Arg(1000)->Arg(32000)->Unit(benchmark::kMillisecond)
#define ZP_PEER_BENCH(peer)        \
  ZP_STORE_BENCH(insert<peer>);    \
  ZP_STORE_BENCH(get<peer>);       \
  ZP_STORE_BENCH(overwrite<peer>); \
  ZP_STORE_BENCH(replace<peer>);   \
  ZP_STORE_BENCH(remove<peer>)

ZP_STORE_BENCH(limitInsert);
ZP_STORE_BENCH(limitGet);
ZP_STORE_BENCH(limitOverwrite);
ZP_STORE_BENCH(limitDelete);
ZP_PEER_BENCH(Store);
ZP_STORE_BENCH(limitReopen<false>);
ZP_STORE_BENCH(storeReopen<false>);
ZP_STORE_BENCH(limitReopen<true>);
ZP_STORE_BENCH(storeReopen<true>);
ZP_STORE_BENCH(storeOpenAndGetAll);
ZP_STORE_BENCH(limitStoreObj);
ZP_STORE_BENCH(storeStoreObj);
ZP_STORE_BENCH(limitLoadObj);
ZP_STORE_BENCH(storeLoadObj);

#ifdef ZP_HAVE_SQLITE
ZP_PEER_BENCH(bench::Sqlite);
#endif
#ifdef ZP_HAVE_LMDB
ZP_PEER_BENCH(bench::Lmdb);
#endif
#ifdef ZP_HAVE_TKRZW
ZP_PEER_BENCH(bench::Tkrzw);
#endif
#ifdef ZP_HAVE_GDBM
ZP_PEER_BENCH(bench::Gdbm);
#endif
#ifdef ZP_HAVE_BDB
ZP_PEER_BENCH(bench::BerkeleyDb);
#endif

}  // namespace

BENCHMARK_MAIN();
