// The store's quick ways beside plain ones: records from memory beside the file's bytes, the index in its own bytes beside an
// array. ZP_STORE_STEPS says how many steps of random work each seed is given.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/store.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr int fewSteps = 4000;
constexpr unsigned int seeds = 6;

// Counts the reads at a place, and lets reads, writes and locks fail as told while it lives.
class Host {
 public:
  Host()
  {
    g_Real = zp::GetHostCalls();
    g_nReads = g_nReadsToFail = g_nReadThatFails = 0;
    g_bWriteFails = g_bHasNoLocks = false;
    zp::GetHostCalls().ReadAt = [](int file, void * buffer, size_t count, LONGLONG position) {
      bool const fails = ++g_nReads == g_nReadThatFails || g_nReadsToFail > 0;
      if (g_nReadsToFail > 0) --g_nReadsToFail;
      return fails ? Fail(EIO) : g_Real.ReadAt(file, buffer, count, position);
    };
    zp::GetHostCalls().WriteAt = [](int file, void const * buffer, size_t count, LONGLONG position) {
      if (!std::exchange(g_bWriteFails, false)) return g_Real.WriteAt(file, buffer, count, position);
      g_Real.WriteAt(file, buffer, count / 2, position);
      return Fail(ENOSPC);
    };
    zp::GetHostCalls().Lock = [](int file, zp::HostLock lock) {
      return g_bHasNoLocks ? static_cast<int>(Fail(ENOLCK)) : g_Real.Lock(file, lock);
    };
  }
  ~Host() { zp::GetHostCalls() = g_Real; }

  static inline int g_nReads;
  static inline int g_nReadsToFail;    // of the next ones
  static inline int g_nReadThatFails;  // by g_nReads
  static inline bool g_bWriteFails;    // one write takes half of its bytes and fails
  static inline bool g_bHasNoLocks;

 private:
  static long Fail(int error)
  {
    errno = error;
    return -1;
  }
  static inline zp::HostCalls g_Real;
};

int put(GPDataFile & store, int id, std::string_view bytes)
{
  return store.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
}

std::string get(GPDataFile & store, int id)
{
  std::string bytes(store.GetRecLength(id), '\0');
  bytes.resize(store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id));
  return bytes;
}

// Random work on a store. What is loaded must be what a walk over the file's blocks has found, or was stored since.
class Session {
 public:
  explicit Session(unsigned int seed) : m_Random(seed) { Reopen(); }

  void Step()
  {
    int const id = Draw(120);
    int const what = Draw(1000);
    if (what < 1) return Reopen();
    if (what < 3) return Compact();
    if (what < 30) return Fail();
    if (what < 50 && !m_bLocked) return WriteFromOutside(id);
    if (what < 200 && m_bWrites) return Change(id);
    EXPECT_EQ(get(*m_pStore, id), Expected(id));
    if (m_pOther == nullptr) return;
    EXPECT_EQ(get(*m_pOther, id), Expected(id));
  }

 private:
  int Draw(int range) { return static_cast<int>(m_Random() % static_cast<unsigned int>(range)); }
  std::string Expected(int id) const
  {
    auto const found = m_Records.find(id);
    return found != m_Records.end() ? found->second : "";
  }
  std::unique_ptr<GPDataFile> Open(unsigned int mode)
  {
    return std::make_unique<GPDataFile>(m_Folder.Name("a.si"), m_Folder.Name("a.sr"), mode, nullptr);
  }

  // Alone for reading and writing, one of two readers, without a lock by choice and for want of locks.
  void Reopen()
  {
    m_pOther.reset();
    m_pStore.reset();
    bool const isShared = Draw(4) == 0 && m_Folder.Has("a.si");
    bool const isUnlocked = !isShared && Draw(3) == 0;
    m_bWrites = !isShared && (!isUnlocked || Draw(2) == 0 || !m_Folder.Has("a.si"));
    m_bLocked = !isUnlocked;
    Host::g_bHasNoLocks = isUnlocked && m_bWrites;
    constexpr unsigned int shared = CFile::modeRead | CFile::shareDenyWrite;
    m_pStore = Open(m_bWrites ? unsigned{CFile::modeReadWrite} : isShared ? shared : CFile::modeRead | CFile::shareDenyNone);
    if (isShared) m_pOther = Open(shared);
  }

  void Compact()
  {
    if (!m_bWrites || !m_Folder.Has("a.sr")) return;
    EXPECT_EQ(m_pStore->DegasRecFile(), 1);
  }

  void Change(int id)
  {
    if (Draw(4) == 0) {
      EXPECT_GE(m_pStore->DeleteRec(id), m_Records.erase(id) != 0);  // a record without a place can be deleted too
      return;
    }
    std::string & record = m_Records[id];
    constexpr int lengths[] = {3, 40, 1500, 9000, 65535};
    if (record.empty() || Draw(2) == 0) record.resize(1 + static_cast<size_t>(Draw(lengths[Draw(Draw(9) == 0 ? 5 : 4)])));
    std::generate(record.begin(), record.end(), [this] { return static_cast<char>(m_Random()); });
    EXPECT_EQ(put(*m_pStore, id, record), 1);
  }

  // A read may raise or be made good for; after a write that failed the file tells what is there.
  void Fail()
  {
    Host::g_nReadsToFail = 1 + Draw(2);
    int const id = Draw(120);
    CodeOf<CFileException>([&] { EXPECT_EQ(get(*m_pStore, id), Expected(id)); });
    Host::g_nReadsToFail = 0;
    if (!m_bWrites || !m_Folder.Has("a.sr")) return;
    Host::g_bWriteFails = true;
    if (Draw(2) == 0)
      m_pStore->DeleteRec(id);
    else
      put(*m_pStore, id, std::string(std::max<size_t>(Expected(id).size(), 1) + 1 - static_cast<size_t>(Draw(3)), 'f'));
    Host::g_bWriteFails = false;
    m_Records.clear();
    ForEachLive([this](int live, ULONGLONG, std::string bytes) { m_Records[live] = std::move(bytes); });
  }

  template <class Use>
  void ForEachLive(Use use)
  {
    CFile file;
    ASSERT_TRUE(file.Open(m_Folder.Name("a.sr"), CFile::modeRead | CFile::shareDenyNone));
    zp::BlockChain chain(file);
    for (zp::RecordBlock block; chain.Next(block);) {
      if (block.isFree) continue;
      auto const payload = chain.GetPayload();
      use(block.id, block.position, std::string(payload.begin(), payload.end()));
    }
    ASSERT_EQ(chain.GetState(), zp::BlockChain::State::AtEnd);
  }

  void WriteFromOutside(int id)
  {
    if (!m_Records.contains(id)) return;
    std::string & record = m_Records[id];
    std::fstream file(m_Folder.Path() / "a.sr", std::ios::in | std::ios::out | std::ios::binary);
    ForEachLive([&](int live, ULONGLONG position, std::string const & bytes) {
      if (live != id) return;
      record = std::string(bytes.size(), static_cast<char>(m_Random()));
      file.seekp(static_cast<std::streamoff>(position + zp::BlockHeader::byteCount));
      file.write(record.data(), static_cast<std::streamsize>(record.size()));
    });
  }

  std::mt19937 m_Random;
  TempFolder m_Folder;
  Host m_Host;
  std::map<int, std::string> m_Records;
  std::unique_ptr<GPDataFile> m_pStore;
  std::unique_ptr<GPDataFile> m_pOther;
  bool m_bWrites = false;
  bool m_bLocked = false;
};

TEST(RandomWork, LoadsWhatTheFileHolds)
{
  char const * const wanted = std::getenv("ZP_STORE_STEPS");
  int const steps = wanted != nullptr ? std::atoi(wanted) : fewSteps;
  for (unsigned int seed = 1; seed <= seeds; ++seed) {
    Session session(seed);
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
      session.Step();
    }
  }
}

TEST(RandomWork, ReadsTheFileAgainWithoutALockAndAfterAStore)
{
  struct Row {
    unsigned int mode;
    bool hasLocks;
    int reads;  // for a hundred loads of one record: 16 beforehand, a first touch, and its page
  } const rows[] = {
      {CFile::modeReadWrite, true, 18},
      {CFile::modeRead, true, 18},
      {CFile::modeRead | CFile::shareDenyWrite, true, 18},
      {CFile::modeRead | CFile::shareDenyNone, true, 100},
      {CFile::modeReadWrite, false, 100},
      {CFile::modeRead | CFile::shareDenyWrite, false, 100},
  };
  for (Row const & row : rows) {
    TempFolder const folder;
    Host const host;
    auto const open = [&](unsigned int mode) { return GPDataFile(folder.Name("a.si"), folder.Name("a.sr"), mode, nullptr); };
    {
      GPDataFile store = open(CFile::modeReadWrite);
      for (int id = 1; id <= 9; ++id) put(store, id, std::string(900, static_cast<char>('0' + id)));
    }
    Host::g_bHasNoLocks = !row.hasLocks;
    GPDataFile store = open(row.mode);
    get(store, 5);
    Host::g_nReads = 1;
    for (int i = 1; i < 100; ++i) EXPECT_EQ(get(store, 5), std::string(900, '5'));
    EXPECT_EQ(Host::g_nReads, row.reads) << row.mode;
    if (row.reads == 100) continue;
    Host::g_nReadsToFail = 1;
    EXPECT_EQ(get(store, 1), std::string(900, '1'));  // by a device that fails
    Host::g_nReadsToFail = 0;
    if (row.mode != CFile::modeReadWrite) continue;
    put(store, 5, std::string(900, 'n'));
    Host::g_nReads = 0;
    for (int const id : {5, 1, 2, 3, 4, 6, 7, 8, 9})
      EXPECT_EQ(get(store, id), std::string(900, id == 5 ? 'n' : static_cast<char>('0' + id)));
    EXPECT_EQ(Host::g_nReads, 1);
  }
}

// What moved before the exception is found where it is by then.
TEST(RandomWork, LoadsAfterACompactionThatRaised)
{
  TempFolder const folder;
  Host const host;
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
  constexpr int count = 60;
  auto const content = [](int id) { return std::string(20000, static_cast<char>('0' + id)); };
  for (int id = 0; id < count; ++id) put(store, id, content(id));
  auto const expectAll = [&](int first) {
    for (int id = first; id < count; ++id) EXPECT_EQ(get(store, id), content(id));
  };
  for (int pass = 0; pass < 3; ++pass) expectAll(0);
  store.DeleteRec(0);
  Host::g_nReads = 0;
  Host::g_nReadThatFails = 6 + 3;  // a walk over all comes first
  EXPECT_NE(CodeOf<CFileException>([&store] { store.DegasRecFile(); }), CFileException::none);
  EXPECT_EQ(folder.Read("a.sr").substr(6, 20000), content(1));
  for (int pass = 0; pass < 3; ++pass) expectAll(1);
}

struct Entry {
  int id;
  DWORD length;
  DWORD position = zp::noBlockPosition;
};

// An index file as the containers themselves write it.
std::string indexOf(CObject const * header, std::vector<Entry> const & active, std::vector<Entry> const & free)
{
  GPObArray array;
  for (Entry const & each : active) {
    auto entry = std::make_unique<GPActiveRec>();
    entry->m_nFilePos = each.position;
    entry->m_nRecID = each.id;
    entry->m_nRecLen = each.length;
    array.Add(entry.release());
  }
  GPObList list;
  for (Entry const & each : free) {
    auto block = std::make_unique<GPEmptyRec>();
    block->m_nFilePos = each.position;
    block->m_nBlockSize = each.length;
    list.AddTail(block.release());
  }
  GPMemFile file;
  CArchive ar(&file, CArchive::store);
  ar.WriteObject(header);
  ar.WriteObject(&array);
  ar.WriteObject(&list);
  ar.Close();
  return {reinterpret_cast<char const *>(file.GetMemPtr()), static_cast<size_t>(file.GetLength())};
}

// What a search by halves comes to, whatever the order: the length, 0 for a miss.
DWORD lengthIn(std::vector<Entry> const & active, int id)
{
  for (int low = 0, high = static_cast<int>(active.size()) - 1; low <= high;) {
    Entry const & at = active[static_cast<size_t>((low + high) / 2)];
    if (at.id == id) return at.length;
    (id > at.id ? low : high) = (low + high) / 2 + (id > at.id ? 1 : -1);
  }
  return 0;
}

// As an archive may be that names the class once more, in front of the third entry.
void nameClassAgain(std::string & index)
{
  constexpr size_t thirdTag = 19 + 17 + 8 + 10;
  index.replace(thirdTag, 2, FromHex("FF FF 01 00 0B 00 \"GPActiveRec\""));
}

// The same answers from the bytes, from the table that many looks make, and after a change; what is written then has all entries
// in their order. Tables also come of an index that is too large to be kept, and of entries that don't lie evenly.
TEST(RandomWork, FindsInAnIndexWhatAnArrayWouldFind)
{
  std::mt19937 random(3);
  GPObArray large;
  large.SetSize(0x210000);
  GPObArray entries;
  entries.Add(new GPActiveRec);
  CObject const * const headers[] = {nullptr, &entries, &large};
  for (int round = 0; round < 60; ++round) {
    bool const isInOrder = round % 2 == 0;
    std::vector<Entry> active;
    std::vector<Entry> free;
    bool const isLarge = round == 58;
    bool const isUneven = round % 5 == 4 && !isLarge;
    for (int id = isInOrder ? 1 : -3; id < (isLarge ? 9000 : 80); ++id) {
      if (random() % 3 != 0) active.push_back({id, 1 + static_cast<DWORD>(random() % 65535)});
      if (random() % 3 == 0) free.push_back({0, static_cast<DWORD>(random() % 99), static_cast<DWORD>(random())});
    }
    if (!isInOrder) {
      active.insert(active.end(), active.begin(), active.begin() + 5);
      std::shuffle(active.begin(), active.begin() + static_cast<int>(random() % active.size()), random);
    }
    if (round % 4 < 2) std::ranges::sort(free, {}, &Entry::length);
    if (isUneven) free.clear();
    CObject const * const header = headers[isLarge ? 2 : isUneven ? 0 : round % 4 / 2];
    TempFolder const folder;
    std::string index = indexOf(header, active, free);
    if (isUneven) nameClassAgain(index);
    folder.Write("a.si", index);
    GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
    auto const expectSame = [&] {
      EXPECT_EQ(store.GetRecCount(), static_cast<int>(active.size()));
      EXPECT_EQ(store.GetFirstRecID(), static_cast<unsigned int>(active.front().id)) << round;
      EXPECT_EQ(store.GetLastRecID(), static_cast<unsigned int>(active.back().id)) << round;
      for (int id = -5; id < 90; ++id) EXPECT_EQ(store.GetRecLength(id), lengthIn(active, id)) << round << ' ' << id;
    };
    if (round % 3 != 0) expectSame();
    auto const gone = std::ranges::find_if(active, [&](Entry const & at) { return lengthIn(active, at.id) == at.length; });
    EXPECT_EQ(store.DeleteRec(gone->id), 1);
    active.erase(gone);
    expectSame();
    store.Close();
    EXPECT_TRUE(folder.Read("a.si") == indexOf(header, active, free)) << round;
  }
}

// A record that an index takes to be longer than the file is there when the file has grown so far.
TEST(RandomWork, FollowsTheEndOfTheFile)
{
  TempFolder const folder;
  Host const host;
  folder.Write("a.sr", FromHex("01 00 04 00 04 00 \"ABCD\" 02 00 02 00 02 00 \"XY\""));
  folder.Write("a.si", indexOf(nullptr, {{1, 4, 0}, {2, 2, 10}, {3, 9, 10}}, {}));
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(get(store, 1) + get(store, 2) + get(store, 3), "ABCDXY");
  EXPECT_EQ(put(store, 4, "new"), 1);
  Host::g_nReads = 0;
  for (int i = 0; i < 9; ++i) EXPECT_EQ(get(store, 4) + get(store, 3), "newXY" + FromHex("04 00 03 00 03 00") + "n");
  EXPECT_EQ(Host::g_nReads, 1);
  for (int const id : {5, 6}) put(store, id, std::string(3000, 'x'));
  Host::g_nReads = 0;
  for (int i = 0; i < 9; ++i) EXPECT_EQ(get(store, 5), std::string(3000, 'x'));
  EXPECT_LE(Host::g_nReads, 2);
}

TEST(RandomWork, TakesNoMoreMemoryThanItMay)
{
  constexpr int count = 1300;
  constexpr DWORD length = 65535;
  TempFolder const folder;
  std::vector<Entry> active;
  std::ofstream file(folder.Path() / "a.sr", std::ios::binary);
  for (int id = 0; id < count; ++id) {
    active.push_back({id, length, static_cast<DWORD>(id) * (zp::BlockHeader::byteCount + length)});
    file.seekp(static_cast<std::streamoff>(active.back().position + zp::BlockHeader::byteCount + length - 4));  // the rest a hole
    file.write(reinterpret_cast<char const *>(&id), 4);
  }
  file.close();
  folder.Write("a.si", indexOf(nullptr, active, {}));
  Host const host;
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeRead, nullptr);
  for (int pass = 0; pass < 4; ++pass) {
    Host::g_nReads = 0;
    for (int id = 0; id < count; ++id) {
      std::string const bytes = get(store, id);
      ASSERT_EQ(bytes.size(), length);
      ASSERT_EQ(bytes.compare(length - 4, 4, reinterpret_cast<char const *>(&id), 4), 0) << pass;
    }
  }
  EXPECT_GE(Host::g_nReads, count - 1024);
  EXPECT_LE(Host::g_nReads, count - 1000);
}

}  // namespace
