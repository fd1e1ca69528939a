// The index file of a record store: damaged, cut, in use, written by others meanwhile.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>
#include <tuple>
#include <utility>

#include "tests/store/store_fixture.h"

namespace {

TEST_F(Store, RaisesForADamagedIndexAndLeavesTheFiles)
{
  auto const damage = [&](size_t place, std::string_view bytes) {
    std::string index = indexAfterDelete;
    index.replace(place, bytes.size(), bytes);
    folder.Write("a.si", index);
    int const cause = CauseOfOpen();
    EXPECT_EQ(folder.Read("a.si"), index);
    return cause;
  };
  EXPECT_EQ(damage(6, "GPNobody"), CArchiveException::badClass);
  EXPECT_EQ(damage(2, FromHex("02")), CArchiveException::badSchema);
  EXPECT_EQ(damage(14, FromHex("02 00")), CArchiveException::badIndex);   // the header again as the array
  EXPECT_EQ(damage(14, FromHex("00 00")), CArchiveException::badClass);   // no array at all
  EXPECT_EQ(damage(29, FromHex("FF FF")), CArchiveException::endOfFile);  // a count that no file holds
  EXPECT_EQ(damage(37, "GPDataArray"), CArchiveException::badClass);      // a class that is no entry
  for (size_t length = 1; length < indexAfterDelete.size(); ++length) {
    folder.Write("a.si", indexAfterDelete.substr(0, length));
    EXPECT_NE(CauseOfOpen(), 0) << length;
  }
}

TEST_F(Store, SearchesAnIndexOutOfOrderAsItStands)
{
  // Ids 5, 2, 5, -1 at the positions 0, 10, 20, 30, each of length 1.
  folder.Write("a.si", FromHex("00 00 FF FF 01 00 09 00 \"GPObArray\" 04 00 FF FF 01 00 0B 00 \"GPActiveRec\""
                               "00 00 00 00 05 00 01 00  03 80 0A 00 00 00 02 00 01 00  03 80 14 00 00 00 05 00 01 00"
                               "03 80 1E 00 00 00 FF FF 01 00  FF FF 01 00 08 00 \"GPObList\" 00 00"));
  folder.Write("a.sr", FromHex("05 00 01 00 04 00 \"a...\" 02 00 01 00 04 00 \"b...\" 05 00 01 00 04 00 \"c...\""));
  auto store = Open();
  EXPECT_EQ(store->GetRecCount(), 4);
  EXPECT_EQ(store->GetFirstRecID(), 5u);
  EXPECT_EQ(Get(*store, 2), "b");
  EXPECT_EQ(Get(*store, 5), "c");  // the probe after the middle one
  EXPECT_EQ(Put(*store, 3, "new"), 1);
  store->Close();
  EXPECT_EQ(folder.Read("a.si").substr(36, 18), FromHex("1E 00 00 00 03 00 03 00 03 80 00 00 00 00 05 00 01 00"));
}

// Three records of 4 bytes at 0, 10 and 20; the index has two of its entries at 10.
TEST_F(Store, WritesNowhereThatItsIndexNamesTwice)
{
  std::string const active = "00 00 FF FF 01 00 09 00 \"GPObArray\" ";
  std::string const first = " 00 FF FF 01 00 0B 00 \"GPActiveRec\" 00 00 00 00 01 00 04 00 ";
  std::string const second = "03 80 0A 00 00 00 02 00 04 00 ";
  std::string const third = "03 80 14 00 00 00 03 00 04 00 ";
  std::string const free = "FF FF 01 00 08 00 \"GPObList\" ";
  std::string const firstFree = " 00 FF FF 01 00 0A 00 \"GPEmptyRec\" 0A 00 00 00 04 00 ";
  std::pair<std::string, char const *> const rows[] = {
      {active + "03" + first + second + third + free + "01" + firstFree, "02 00"},                     // live and free
      {active + "02" + first + third + free + "02" + firstFree + "08 80 0A 00 00 00 04 00", "02 80"},  // twice free
      {active + "04" + first + second + second + third + free + "00 00", "02 00"},                     // twice live
  };
  for (auto const & [index, word] : rows) {
    std::string const records =
        FromHex("01 00 04 00 04 00 \"aaaa\" " + std::string(word) + " 04 00 04 00 \"bbbb\" 03 00 04 00 04 00 \"cccc\"");
    folder.Write("a.si", FromHex(index));
    folder.Write("a.sr", records);
    auto store = Open();
    EXPECT_EQ(Put(*store, 2, "longer"), 1);
    store->DeleteRec(2);
    for (int const id : {10, 11, 12}) EXPECT_EQ(Put(*store, id, std::string(4, static_cast<char>('A' + id))), 1);
    EXPECT_EQ(Get(*store, 1) + Get(*store, 3) + Get(*store, 10) + Get(*store, 11) + Get(*store, 12), "aaaaccccKKKKLLLLMMMM");
    store->Close();
    EXPECT_EQ(folder.Read("a.sr").substr(0, records.size()), records) << word;
  }
}

TEST_F(Store, LeavesAStoreAloneThatAnotherHasChangedWhereItHasChangesOfItsOwn)
{
  auto const other = [this] { Put(*Open(), 2, "another"); };
  std::tuple<char const *, std::function<void(GPDataFile &)>, std::function<void()>, int> const rows[] = {
      {"a header object", [](GPDataFile & store) { delete std::exchange(store.m_pHeader, new GPObArray); }, other, 1},
      {"a compaction", [](GPDataFile & store) { store.DegasRecFile(); }, other, 0},
      {"an index that was cut to nothing", [](GPDataFile &) {}, [this] { folder.Write("a.si", ""); }, 1},
      {"a damaged index", [](GPDataFile &) {}, [this] { folder.Write("a.si", "?"); }, 1},
  };
  for (auto const & [why, change, otherwise, closes] : rows) {
    std::filesystem::remove(folder.Path() / "a.si");
    std::filesystem::remove(folder.Path() / "a.sr");
    Put(*Open(), 1, "ABCD");
    auto const store = Open();
    change(*store);
    otherwise();
    std::string const index = folder.Read("a.si");
    std::string const records = folder.Read("a.sr");
    EXPECT_EQ(Put(*store, 3, "new") + store->DeleteRec(1) + store->DegasRecFile(), 0) << why;
    EXPECT_EQ(Get(*store, 1), "") << why;
    EXPECT_EQ(store->Close(), closes) << why;
    EXPECT_TRUE(folder.Read("a.si") == index && folder.Read("a.sr") == records) << why;
  }
  std::filesystem::remove(folder.Path() / "a.si");
  std::filesystem::remove(folder.Path() / "a.sr");
  Put(*Open(), 1, "ABCD");
  auto const store = Open();
  EXPECT_EQ(store->DegasRecFile(), 1);
  std::filesystem::permissions(folder.Path() / "a.si", std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  std::filesystem::create_hard_link(folder.Path() / "a.si", folder.Path() / "kept");
  EXPECT_EQ(store->Close(), 1);
}

// As of one that another program, which knows of no locks, goes on writing.
TEST_F(Store, TakesNoTablesFromAnIndexThatIsLongerThanItWasTold)
{
  {
    auto const store = Open();
    for (int id = 0; id < 8000; ++id) Put(*store, id, "a");
  }
  KeptHost const kept;
  zp::GetHostCalls().GetStatus = [](int file, zp::HostStatus & now) {
    int const result = g_Real.GetStatus(file, now);
    now.size = std::min<LONGLONG>(now.size, 70000);
    return result;
  };
  EXPECT_EQ(CodeOf<CArchiveException>([&] { Open(); }), CArchiveException::endOfFile);
}

// As a file system tells it whose clock goes in steps, but for what is beside the step because a program has set it.
int inSteps(int result, zp::HostStatus & status)
{
  constexpr int step = 10'000'000;
  constexpr int most = 1000;
  for (int * const time : {&status.modified.nanoseconds, &status.changed.nanoseconds})
    *time -= *time % step < most ? 0 : *time % step;
  return result;
}

// Again and again within such a step, with an index that keeps its length.
TEST_F(Store, LoadsAnewWhatAnotherHasWrittenBeforeItsFirstRecord)
{
  for (int id = 1; id <= 3; ++id) Put(*Open(), id, std::string(static_cast<size_t>(2 + id), 'a'));
  Open()->DeleteRec(3);
  KeptHost const kept;
  zp::GetHostCalls().GetStatus = [](int file, zp::HostStatus & now) { return inSteps(g_Real.GetStatus(file, now), now); };
  zp::GetHostCalls().GetStatusOf = [](char const * path, zp::HostStatus & now) {
    return inSteps(g_Real.GetStatusOf(path, now), now);
  };
  for (int i = 0; i < 12; ++i) {
    auto const stores = {Open(), Open(), Open(CFile::modeRead), Open(), Open()};
    auto store = stores.begin();
    std::string const text(i % 2 == 0 ? 5 : 3, static_cast<char>('b' + i));
    EXPECT_EQ(Put(**store, 1, text), 1);
    (*store++)->Close();
    GPObject const object;
    EXPECT_EQ((*store)->StoreObj(&object, 2), 1);
    (*store++)->Close();
    std::string bytes(5, '\0');
    bytes.resize((*store)->LoadRec(bytes.data(), 5, 1));
    EXPECT_EQ(bytes, text) << i;
    (*store++)->Close();
    std::unique_ptr<CObject> const loaded((*store)->LoadObj(2));
    EXPECT_TRUE(loaded != nullptr) << i;
    EXPECT_EQ((*store)->DeleteRec(2), 1);
    (*store++)->Close();
    EXPECT_EQ((*store)->DeleteRec(2), 0);
    EXPECT_EQ(Put(**store, 2, "four"), 1);
    (*store)->Close();
    auto const last = Open();
    EXPECT_EQ(Get(*last, 1) + Get(*last, 2), text + "four") << i;
    EXPECT_EQ(last->GetRecCount(), 2);
  }
}

// A header object whose stream fails as long as it is told to.
class FailingHeader : public GPObject {
 public:
  static inline bool m_bFails = false;
  void Serialize(CArchive &) override
  {
    if (m_bFails) AfxThrowArchiveException(CArchiveException::genericException);
  }
};

CObject * makeFailingHeader()
{
  return new FailingHeader;
}

TEST_F(Store, KeepsWhatAHeaderThatCannotBeStoredKeepsFromClosing)
{
  FailingHeader::m_bFails = false;
  Put(*Open(), 1, "ABCD");
  std::string const index = folder.Read("a.si");
  {
    GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
    delete std::exchange(store.m_pHeader, makeFailingHeader());
    Put(store, 2, "XY");
    FailingHeader::m_bFails = true;
    EXPECT_NE(CodeOf<CArchiveException>([&store] { store.Close(); }), CArchiveException::none);
    EXPECT_EQ(folder.Read("a.si"), index);
    EXPECT_EQ(Get(store, 2), "XY");
    EXPECT_EQ(store.Open(CFile::modeReadWrite), 0);
  }  // the destructor stores a null header
  auto const store = Open();
  EXPECT_EQ(store->m_pHeader, nullptr);
  EXPECT_EQ(Get(*store, 1) + Get(*store, 2), "ABCDXY");
}

TEST_F(Store, WaitsForAnIndexFileThatIsInUseAndKeepsItsTables)
{
  auto store = Open();
  Put(*store, 1, "ABCD");
  store->Close();
  store->Open(CFile::modeReadWrite);
  Put(*store, 2, "XY");
  CFile reader;
  ASSERT_TRUE(reader.Open(folder.Name("a.si"), CFile::modeRead));
  EXPECT_EQ(store->Close(), 0);
  EXPECT_EQ(Get(*store, 2), "XY");
  std::thread leaves([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    reader.Close();
  });
  EXPECT_EQ(store->Close(), 1);
  leaves.join();
  store->Open(CFile::modeReadWrite);
  EXPECT_EQ(Get(*store, 1) + Get(*store, 2), "ABCDXY");
}

TEST_F(Store, WritesAnIndexThatReadsAsCutWhenItCameShort)
{
  auto store = Open();
  for (int id = 0; id < 40; ++id) Put(*store, id, "x");
  store->Close();
  size_t const whole = folder.Read("a.si").size();
  store->Open(CFile::modeReadWrite);
  Put(*store, 40, "x");
  {
    KeptHost const kept;
    zp::GetHostCalls().WriteAt = writeIntoRoom;
    g_nRoom = whole / 2;
    store->Close();
  }
  EXPECT_EQ(folder.Read("a.si").size(), whole / 2);
  EXPECT_EQ(CauseOfOpen(), CArchiveException::endOfFile);
}

int failingStatus(char const *, zp::HostStatus &)
{
  errno = EIO;
  return -1;
}

TEST_F(Store, TakesAnIndexThatCannotBeLookedAtForNoNewStore)
{
  Put(*Open(), 1, "ABCD");
  std::string const index = folder.Read("a.si");
  {
    KeptHost const kept;
    zp::GetHostCalls().GetStatusOf = failingStatus;
    EXPECT_EQ(CodeOf<CFileException>([this] { Open(); }), CFileException::hardIO);
    EXPECT_EQ(GPFile::Exists(folder.Name("none")), 1);
    EXPECT_EQ(GPFile::IsEmpty(folder.Name("a.si")), 0);
    EXPECT_EQ(GPFile::CopyFile(folder.Name("a.si"), folder.Name("a.sr"), 0), 0);
  }
  EXPECT_EQ(folder.Read("a.si"), index);
}

TEST(IndexEntries, CompareByIdAndCapacity)
{
  GPActiveRec live;
  GPActiveRec other;
  GPEmptyRec hole;
  GPEmptyRec larger;
  live.m_nRecID = 7;
  other.m_nRecID = 4;
  hole.m_nBlockSize = 40;
  larger.m_nBlockSize = 50;
  EXPECT_EQ(live.Compare(&other) * 100 + hole.Compare(&larger), 290);
  EXPECT_TRUE(live.Compare(&hole) != 0 && hole.Compare(&live) != 0);
}

}  // namespace
