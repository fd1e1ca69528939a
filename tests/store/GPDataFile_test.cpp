// The record store: bytes of the record file, best fit, and what survives each failure.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "tests/store/store_fixture.h"

namespace {

TEST_F(Store, WritesTheRecordFileAtOnceAndTheIndexAtClose)
{
  auto store = Open();
  EXPECT_TRUE(store->IsEmpty());
  EXPECT_EQ(store->GetNextRecID(), 1u);
  EXPECT_FALSE(folder.Has("a.sr"));
  EXPECT_EQ(Put(*store, 1, "ABCD"), 1);
  EXPECT_EQ(Put(*store, 2, "XY"), 1);
  EXPECT_EQ(folder.Read("a.sr"), recordFile);
  EXPECT_EQ(Get(*store, 1), "ABCD");
  EXPECT_EQ(store->DeleteRec(1), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(0, 2), FromHex("01 80"));
  EXPECT_FALSE(folder.Has("a.si"));
  store->Close();
  EXPECT_EQ(folder.Read("a.si"), indexAfterDelete);

  store = Open();
  EXPECT_EQ(store->GetRecCount(), 1);
  EXPECT_EQ(Put(*store, 3, "Z"), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(0, 10), FromHex("03 00 01 00 04 00 \"ZBCD\""));
  EXPECT_EQ(Put(*store, 4, "4"), 1);
  store->Close();
  EXPECT_EQ(folder.Read("a.si").substr(56, 10), FromHex("05 80 00 00 00 00 03 00 01 00"));
}

TEST_F(Store, LeavesTheIndexAloneWhenNoPlaceChanged)
{
  Put(*Open(), 1, "ABCD");
  std::string const index = folder.Read("a.si");
  folder.Write("a.si", index + "tail that no one reads");
  auto store = Open();
  EXPECT_EQ(Put(*store, 1, "EFGH"), 1);
  store->Close();
  EXPECT_EQ(folder.Read("a.si"), index + "tail that no one reads");
  EXPECT_EQ(folder.Read("a.sr"), FromHex("01 00 04 00 04 00 \"EFGH\""));
}

TEST_F(Store, RefusesWhatTheFormatsCannotHold)
{
  auto const store = Open();
  std::string const most(65535, 'x');
  EXPECT_EQ(Put(*store, 32767, most), 1);
  EXPECT_EQ(Put(*store, 0, "zero"), 1);
  for (auto const & [id, length] : std::map<int, unsigned int>{{-1, 1}, {32768, 1}, {5, 0}, {6, 65536}, {32767, 0}})
    EXPECT_EQ(store->StoreRec(most.data(), length, id), 0) << id;
  GPUIntArray numbers;  // of two bytes each
  numbers.SetSize(40000);
  EXPECT_EQ(store->StoreObj(&numbers, 6), 0);
  EXPECT_EQ(store->GetRecCount(), 2);
  EXPECT_EQ(Get(*store, 32767), most);
  char small[3] = {'a', 'b', 'c'};
  EXPECT_EQ(store->LoadRec(small, sizeof small, 0), 0u);
  EXPECT_EQ(small[0], 'a');
}

TEST_F(Store, TakesTheFirstFreedOfTheSmallestBlocksThatFit)
{
  auto store = Open();
  Put(*store, 1, std::string(8, 'a'));    // at 0
  Put(*store, 2, std::string(4, 'b'));    // at 14
  Put(*store, 3, std::string(8, 'c'));    // at 24
  Put(*store, 4, std::string(100, 'd'));  // at 38
  for (int const id : {3, 1, 2, 4}) store->DeleteRec(id);
  store->Close();
  store = Open();  // the order of freeing survives
  Put(*store, 5, "12345");
  EXPECT_EQ(folder.Read("a.sr").substr(24, 11), FromHex("05 00 05 00 08 00 \"12345\""));
  Put(*store, 6, std::string(9, 'e'));
  EXPECT_EQ(folder.Read("a.sr").substr(38, 6), FromHex("06 00 09 00 64 00"));
  Put(*store, 6, "f");  // frees 100 again and takes the 4
  EXPECT_EQ(folder.Read("a.sr").substr(14, 7), FromHex("06 00 01 00 04 00 \"f\""));
  EXPECT_EQ(folder.Read("a.sr").substr(38, 6), FromHex("06 80 09 00 64 00"));
  Put(*store, 7, std::string(6, 'g'));  // takes the other 8, at 0
  Put(*store, 5, "123");                // its own block is the best fit: the header keeps the capacity
  EXPECT_EQ(folder.Read("a.sr").substr(24, 11), FromHex("05 00 03 00 08 00 \"12345\""));
  Put(*store, 5, std::string(101, 'h'));  // fits nowhere: to the end
  EXPECT_EQ(folder.Read("a.sr").size(), 144u + 107u);
}

TEST_F(Store, AnswersNothingWhenClosed)
{
  auto const store = Open();
  Put(*store, 1, "ABCD");
  EXPECT_EQ(store->Close(), 1);
  char buffer[4];
  EXPECT_EQ(store->LoadRec(buffer, 4, 1), 0u);
  EXPECT_EQ(store->LoadObj(1), nullptr);
  EXPECT_EQ(Put(*store, 1, "ABCD"), 0);
  EXPECT_EQ(store->DeleteRec(1), 0);
  EXPECT_EQ(store->DegasRecFile(), 0);
  EXPECT_EQ(store->GetNextRecID(), 0u);
  EXPECT_EQ(store->m_pHeader, nullptr);
  EXPECT_EQ(store->Close(), 1);
  auto const reader = Open(CFile::modeRead);
  EXPECT_EQ(Get(*reader, 1), "ABCD");
  EXPECT_EQ(reader->LoadObj(8), nullptr);
  Put(*reader, 10, "no room");  // the file is open for reading: only a warning, the file stays
  EXPECT_EQ(folder.Read("a.sr").substr(6), "ABCD");
}

TEST_F(Store, SurvivesTheLossOfItsRecordFile)
{
  Put(*Open(), 1, "ABCD");
  std::filesystem::remove(folder.Path() / "a.sr");
  auto store = Open();
  EXPECT_EQ(Get(*store, 1), "");
  EXPECT_EQ(store->DeleteRec(1), 0);
  EXPECT_EQ(Put(*store, 2, "first"), 1);
  EXPECT_EQ(Put(*store, 2, "other"), 1);
  EXPECT_EQ(Get(*store, 2), "other");
}

TEST_F(Store, ForgetsFreeBlocksThatTheRecordFileDoesNotKnow)
{
  // Free blocks of 4 bytes at 0, where a live record stands, at 10, where the capacity differs, and far behind the end.
  folder.Write("a.si", FromHex("00 00 FF FF 01 00 09 00 \"GPObArray\" 00 00 FF FF 01 00 08 00 \"GPObList\" 03 00"
                               "FF FF 01 00 0A 00 \"GPEmptyRec\" 00 00 00 00 04 00  05 80 0A 00 00 00 04 00"
                               "05 80 B6 B6 B6 B6 04 00"));
  std::string const records = FromHex("01 00 04 00 04 00 \"ABCD\" 02 80 03 00 03 00 \"EFG\"");
  folder.Write("a.sr", records);
  auto const store = Open();
  EXPECT_EQ(Put(*store, 5, "wxyz"), 1);
  EXPECT_EQ(folder.Read("a.sr"), records + FromHex("05 00 04 00 04 00 \"wxyz\""));
}

TEST_F(Store, MeetsItsMatchInALock)
{
  auto const first = Open();
  Put(*first, 1, "ABCD");
  auto const second = Open();
  EXPECT_EQ(Put(*second, 1, "EFGH"), 0);
  EXPECT_EQ(second->GetRecCount(), 0);
  EXPECT_EQ(folder.Read("a.sr").substr(6), "ABCD");
}

long writeNothing(int, void const *, size_t, LONGLONG)
{
  errno = EIO;
  return -1;
}

TEST_F(Store, CutsBackAnAppendThatCameShortAndFindsThePlaceLater)
{
  auto store = Open();
  Put(*store, 1, "ABCD");
  Put(*store, 2, "XY");
  for (size_t const room : {0, 3, 9}) {
    KeptHost const kept;
    zp::GetHostCalls().WriteAt = writeIntoRoom;
    g_nRoom = room;
    EXPECT_EQ(Put(*store, 3, "a long record"), 1);  // told by a warning alone
    EXPECT_EQ(Put(*store, 1, "a longer record"), 1);
    EXPECT_EQ(folder.Read("a.sr"), recordFile) << room;
    EXPECT_EQ(Get(*store, 3), "");
    EXPECT_EQ(Get(*store, 1), "ABCD");
  }
  EXPECT_EQ(store->GetRecCount(), 3);
  store->Close();
  store = Open();  // the entry without a place lasts
  EXPECT_EQ(Get(*store, 3), "");
  EXPECT_EQ(Put(*store, 4, "new"), 1);
  EXPECT_EQ(Put(*store, 3, "any length"), 1);
  EXPECT_EQ(Get(*store, 1) + Get(*store, 2) + Get(*store, 3) + Get(*store, 4), "ABCDXYany lengthnew");
  EXPECT_EQ(store->DegasRecFile(), 1);
  EXPECT_EQ(store->GetRecCount(), 4);
}

TEST_F(Store, LeavesABlockAsItWasWhenItCannotBeWrittenOrFreed)
{
  auto store = Open();
  Put(*store, 1, "ABCD");
  Put(*store, 2, "XY");
  Put(*store, 3, "Z");
  store->DeleteRec(3);
  std::string const before = folder.Read("a.sr");
  {
    KeptHost const kept;
    zp::GetHostCalls().WriteAt = writeNothing;
    EXPECT_EQ(store->DeleteRec(1), 0);
    EXPECT_EQ(Put(*store, 1, "abc"), 1);  // would fit its own block
    EXPECT_EQ(Put(*store, 2, "x"), 1);    // would fit the free one
    EXPECT_EQ(Put(*store, 4, "n"), 1);
  }
  EXPECT_EQ(folder.Read("a.sr"), before);
  EXPECT_EQ(Get(*store, 1) + Get(*store, 2) + Get(*store, 4), "ABCDXY");
  EXPECT_EQ(store->DeleteRec(4), 1);
  EXPECT_EQ(Put(*store, 5, "5"), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(18), FromHex("05 00 01 00 01 00 \"5\""));
}

// Over a record whose block the index didn't tell of.
TEST_F(Store, TellsTheLengthThatAWriteWhichCameShortHasLeft)
{
  Put(*Open(), 1, "ABCD");
  auto const store = Open();
  Put(*store, 1, "ABC");
  Put(*store, 2, "a new record");
  {
    KeptHost const kept;
    zp::GetHostCalls().WriteAt = [](int file, void const * buffer, size_t count, LONGLONG position) {
      g_Real.WriteAt(file, buffer, 8, position);
      return writeNothing(file, buffer, count, position);
    };
    EXPECT_EQ(Put(*store, 2, "shorter"), 1);
  }
  EXPECT_EQ(Get(*store, 2), "shnew r");
}

TEST_F(Store, GivesAFreeBlockAWholeHeaderWhereAWriteIntoItCameShort)
{
  auto const store = Open();
  for (int id = 1; id <= 3; ++id) Put(*store, id, std::string(300, 'a'));
  Put(*store, 2, std::string(20, 'b'));
  store->DeleteRec(2);
  KeptHost const kept;
  g_nRoom = 3;
  zp::GetHostCalls().WriteAt = [](int file, void const * buffer, size_t count, LONGLONG position) {
    static bool hasFailed = false;
    if (g_nRoom == 0 && !std::exchange(hasFailed, true)) return writeNothing(file, buffer, count, position);
    return g_Real.WriteAt(file, buffer, g_nRoom > 0 ? std::exchange(g_nRoom, 0) : count, position);
  };
  EXPECT_EQ(Put(*store, 9, std::string(256, 'c')), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(306, 6), FromHex("09 80 00 01 2C 01"));
}

TEST_F(Store, FindsPlacesForTheRecordsOfAFileThatCouldNotBeCreated)
{
  GPDataFile store(folder.Name("a.si"), folder.Name("none\\a.sr"), CFile::modeReadWrite, nullptr);
  std::string const texts[] = {"zero", "one", "two"};
  for (int id = 0; id < 3; ++id) {
    EXPECT_NE(CodeOf<CFileException>([&] { Put(store, id, texts[id]); }), CFileException::none);
  }
  EXPECT_EQ(store.GetRecCount(), 3);
  EXPECT_EQ(store.GetRecLength(0), 4u);
  EXPECT_EQ(Get(store, 0), "");
  EXPECT_EQ(store.DeleteRec(2), 1);
  std::filesystem::create_directory(folder.Path() / "none");
  for (int id = 0; id < 3; ++id) EXPECT_EQ(Put(store, id, texts[id]), 1);
  for (int id = 0; id < 3; ++id) EXPECT_EQ(Get(store, id), texts[id]);
}

// An index that is stale, or headers that lie, in front of records that the index tells of too.
TEST_F(Store, WritesToNoBlockThatItsHeaderDoesNotVouchFor)
{
  std::tuple<char const *, size_t, char const *> const rows[] = {
      {"another record", 0, "07 00"},
      {"a free block", 0, "01 80"},
      {"less room than its record has", 4, "03 00"},
      {"room that holds the next record", 4, "0C 00"},
      {"room behind the end of the file", 4, "FF FF"},
  };
  for (auto const & [why, place, bytes] : rows)
    for (char const * const content : {"abcd", "abcdefgh", ""}) {
      std::filesystem::remove(folder.Path() / "a.si");
      std::filesystem::remove(folder.Path() / "a.sr");
      {
        auto const store = Open();
        Put(*store, 1, "ABCD");
        Put(*store, 2, "XY");
      }
      std::string lying = recordFile;
      lying.replace(place, FromHex(bytes).size(), FromHex(bytes));
      folder.Write("a.sr", lying);
      auto const store = Open();
      EXPECT_EQ(*content != '\0' ? Put(*store, 1, content) : store->DeleteRec(1), 1) << why;
      EXPECT_EQ(Get(*store, 1), content) << why;
      EXPECT_EQ(Put(*store, 3, "abcdefgh"), 1);
      EXPECT_EQ(folder.Read("a.sr").substr(0, 18), lying) << why;
      EXPECT_EQ(Get(*store, 2), "XY") << why;
    }
}

TEST_F(Store, GrowsNoFileToWhereABlockHasNoPosition)
{
  constexpr uintmax_t end = 0x7FFFFFFF;
  std::tuple<uintmax_t, size_t, bool> const rows[] = {
      {end - 17, 10, true}, {end - 16, 10, false}, {end, 1, false}, {end + 0x1000, 1, false}};
  for (auto const & [length, size, isFit] : rows) {
    std::filesystem::remove(folder.Path() / "a.si");
    std::filesystem::remove(folder.Path() / "a.sr");
    auto store = Open();
    Put(*store, 1, "ABCD");
    Put(*store, 2, std::string(64, 'f'));
    store->DeleteRec(2);
    store->Close();
    std::filesystem::resize_file(folder.Path() / "a.sr", length);  // a hole
    store = Open();
    std::string const record(size, 'x');
    Put(*store, 3, std::string(64, 'y'));  // the free block fits
    EXPECT_EQ(Put(*store, 4, record), isFit) << length;
    EXPECT_EQ(Get(*store, 4), isFit ? record : "") << length;
    EXPECT_EQ(Put(*store, 1, "more than it has"), 0) << length;
    EXPECT_EQ(Get(*store, 1), "ABCD");
    EXPECT_EQ(store->DeleteRec(3), 1);
    EXPECT_EQ(Put(*store, 1, "more than it has"), 1) << length;  // into the free block
    EXPECT_EQ(Get(*store, 1), "more than it has");
    EXPECT_EQ(store->DeleteRec(4), 1);
    EXPECT_LT(std::filesystem::file_size(folder.Path() / "a.sr"), std::max(end, length + 1));
  }
}

TEST_F(Store, SeesTheRecordFileThatAnotherHasMade)
{
  auto const first = Open();
  Put(*Open(), 1, "ABCD");
  EXPECT_EQ(first->Open(CFile::modeReadWrite), 1);
  EXPECT_EQ(Get(*first, 1), "ABCD");
  EXPECT_EQ(Put(*first, 2, "XY"), 1);
  EXPECT_EQ(folder.Read("a.sr"), recordFile);
}

}  // namespace
