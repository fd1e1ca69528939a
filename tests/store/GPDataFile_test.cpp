// The record store: bytes of both files, best fit, and what survives each failure.

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <random>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/store.h>

#include "tests/support/TempFolder.h"

namespace {

class Store : public ::testing::Test {
 protected:
  std::unique_ptr<GPDataFile> Open(unsigned int mode = CFile::modeReadWrite)
  {
    return std::make_unique<GPDataFile>(folder.Name("a.si"), folder.Name("a.sr"), mode, nullptr);
  }

  static int Put(GPDataFile & store, int id, std::string_view bytes)
  {
    return store.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
  }

  static std::string Get(GPDataFile & store, int id)
  {
    std::string bytes(store.GetRecLength(id), '\0');
    bytes.resize(store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id));
    return bytes;
  }

  int CauseOfOpen()
  {
    try {
      Open();
    } catch (CArchiveException * problem) {
      zp::ExceptionGuard const guard(problem);
      return problem->m_cause;
    }
    return 0;
  }

  TempFolder folder;
};

std::string const recordFile = FromHex("01 00 04 00 04 00 \"ABCD\" 02 00 02 00 02 00 \"XY\"");
std::string const indexAfterDelete = FromHex(
    "FF FF 01 00 08 00 \"GPObject\""
    "FF FF 01 00 09 00 \"GPObArray\" 01 00"
    "FF FF 01 00 0B 00 \"GPActiveRec\" 0A 00 00 00 02 00 02 00"
    "FF FF 01 00 08 00 \"GPObList\" 01 00"
    "FF FF 01 00 0A 00 \"GPEmptyRec\" 00 00 00 00 04 00");

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

TEST_F(Store, AgreesWithALiteralModelOverRandomWork)
{
  std::mt19937 random(7);
  std::map<int, std::string> model;
  auto store = Open();
  for (int step = 0; step < 4000; ++step) {
    int const id = static_cast<int>(random() % 60);
    if (random() % 3 == 0) {
      EXPECT_EQ(store->DeleteRec(id), model.erase(id) != 0) << step;
    } else {
      model[id] = std::string(1 + random() % 40, static_cast<char>('a' + step % 26));
      EXPECT_EQ(Put(*store, id, model[id]), 1) << step;
    }
    if (step % 500 == 0) {
      store->Close();
      store->Open(CFile::modeReadWrite);
    }
    if (step % 1300 == 1299) {
      EXPECT_EQ(store->DegasRecFile(), 1);
    }
    ASSERT_EQ(store->GetLastRecID(), model.empty() ? 0u : static_cast<unsigned int>(model.rbegin()->first));
    ASSERT_EQ(store->GetFirstRecID(), model.empty() ? 0u : static_cast<unsigned int>(model.begin()->first));
  }
  ASSERT_EQ(store->GetRecCount(), static_cast<int>(model.size()));
  for (auto const & [id, bytes] : model) EXPECT_EQ(Get(*store, id), bytes);
}

TEST_F(Store, KeepsObjectsOfAnyClass)
{
  auto store = Open();
  GPObArray array;
  array.Add(new GPObject);
  array.Add(nullptr);
  EXPECT_EQ(store->StoreObj(&array, 9), 1);
  store->Close();
  store = Open(CFile::modeRead);
  std::unique_ptr<CObject> const object(store->LoadObj(9));
  ASSERT_TRUE(object);
  ASSERT_TRUE(object->IsKindOf(RUNTIME_CLASS(GPObArray)));
  EXPECT_EQ(static_cast<GPObArray &>(*object).GetSize(), 2);
  EXPECT_EQ(store->LoadObj(8), nullptr);
  Put(*store, 10, "no object");  // the file is open for reading: only a warning, the file stays
  EXPECT_EQ(Get(*store, 9).size(), store->GetRecLength(9));
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
}

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

TEST_F(Store, RelocatesARecordWhoseBlockIsTooSmall)
{
  Put(*Open(), 1, "ABCD");
  Put(*Open(), 2, "EF");
  std::string records = folder.Read("a.sr");
  records[4] = 3;  // the first block claims less room than its record has
  folder.Write("a.sr", records);
  auto const store = Open();
  EXPECT_EQ(Put(*store, 1, "abcd"), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(0, 18), records);
  EXPECT_EQ(Get(*store, 1), "abcd");
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
  errno = ENOSPC;
  return -1;
}

TEST_F(Store, TellsAFailedWriteByWarningsAlone)
{
  auto store = Open();
  Put(*store, 1, "ABCD");
  auto const host = zp::GetHostCalls();
  zp::GetHostCalls().WriteAt = writeNothing;
  EXPECT_EQ(Put(*store, 2, "EF"), 1);
  EXPECT_EQ(Put(*store, 3, "GH"), 1);
  zp::GetHostCalls() = host;
  EXPECT_EQ(Put(*store, 4, "IJ"), 1);
  EXPECT_EQ(folder.Read("a.sr").substr(10), FromHex("04 00 02 00 02 00 \"IJ\""));
}

TEST_F(Store, KeepsTheEntryOfARecordFileThatCannotBeCreated)
{
  GPDataFile store(folder.Name("a.si"), folder.Name("none\\a.sr"), CFile::modeReadWrite, nullptr);
  try {
    Put(store, 7, "ABCD");
    ADD_FAILURE() << "nothing was raised";
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
  }
  EXPECT_EQ(store.GetRecCount(), 1);
  EXPECT_EQ(store.GetRecLength(7), 4u);
}

}  // namespace
