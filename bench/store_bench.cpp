// The record store beside its limit, which is one plain pwrite or pread a record, and beside the peers that were found when this
// was configured. An iteration is one operation on every record, in random order; items are operations. Processor time counts.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <memory>

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

void storeReopen(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  {
    Store store(scratch);
    fill(store, records);
  }
  char buffer[2048];
  for (auto _ : state) {
    Store store(scratch);
    benchmark::DoNotOptimize(store.Get(records.order[0], buffer, sizeof buffer));
  }
}

void limitReopen(benchmark::State & state)
{
  Records const records(static_cast<int>(state.range(0)));
  Scratch const scratch;
  {
    Store store(scratch);
    fill(store, records);
  }
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
ZP_STORE_BENCH(limitReopen);
ZP_STORE_BENCH(storeReopen);

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
