// Compaction: what moves, what stays, and what is refused untouched.

#include <gtest/gtest.h>

#include <algorithm>

#include <zpbase/store.h>

#include "tests/support/TempFolder.h"

namespace {

std::string bytesOf(std::string hex)
{
  std::replace(hex.begin(), hex.end(), '\'', '"');
  return FromHex(hex);
}

std::string const emptyIndex = bytesOf("00 00 FF FF 01 00 09 00 'GPObArray' 00 00 FF FF 01 00 08 00 'GPObList' 00 00");

struct Case {
  char const * pWhy;
  char const * pBefore;
  char const * pAfter;  // null: refused
};

constexpr Case cases[] = {
    {"an empty file", "", ""},
    {"nothing to win", "02 00 01 00 01 00 'b' 01 00 01 00 01 00 'a'", "02 00 01 00 01 00 'b' 01 00 01 00 01 00 'a'"},
    {"a free block first", "01 80 02 00 02 00 'xx' 07 00 01 00 01 00 'a' 03 00 01 00 01 00 'b'",
     "07 00 01 00 01 00 'a' 03 00 01 00 01 00 'b'"},
    {"slack inside", "01 00 01 00 03 00 'axx' 02 00 02 00 02 00 'bc'", "01 00 01 00 01 00 'a' 02 00 02 00 02 00 'bc'"},
    {"a free block last", "01 00 01 00 01 00 'a' 02 80 01 00 01 00 'b'", "01 00 01 00 01 00 'a'"},
    {"a free block longer than its area", "01 80 09 00 01 00 'x' 02 00 01 00 01 00 'b'", "02 00 01 00 01 00 'b'"},
    {"a record of length 0", "01 00 00 00 01 00 'x'", "01 00 00 00 00 00"},
    {"a cut header", "01 80 01 00 01 00 'a' 02 00", nullptr},
    {"a block past the end", "01 80 01 00 01 00 'a' 02 00 02 00 03 00 'bc'", nullptr},
    {"a length above its capacity", "01 80 01 00 01 00 'a' 02 00 02 00 01 00 'b'", nullptr},
    {"two live blocks of one id", "01 80 01 00 01 00 'a' 02 00 01 00 01 00 'b' 02 00 01 00 01 00 'c'", nullptr},
};

TEST(Compaction, MovesWhatIsLiveAndTouchesNothingElse)
{
  for (Case const & at : cases) {
    TempFolder const folder;
    std::string const before = bytesOf(at.pBefore);
    folder.Write("a.si", emptyIndex);
    folder.Write("a.sr", before);
    GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
    EXPECT_EQ(store.DegasRecFile(), at.pAfter != nullptr) << at.pWhy;
    store.Close();
    EXPECT_EQ(folder.Read("a.sr"), at.pAfter != nullptr ? bytesOf(at.pAfter) : before) << at.pWhy;
    EXPECT_EQ(folder.Read("a.si") == emptyIndex, at.pAfter == nullptr || before.empty()) << at.pWhy;
  }
}

TEST(Compaction, SortsTheTableAndKeepsTheOrderInTheFile)
{
  TempFolder const folder;
  folder.Write("a.si", emptyIndex);
  folder.Write("a.sr", bytesOf("07 00 01 00 01 00 'a' 01 80 02 00 02 00 'xx' 03 00 01 00 01 00 'b' 05 00 01 00 02 00 'c.'"));
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
  ASSERT_EQ(store.DegasRecFile(), 1);
  EXPECT_EQ(store.GetFirstRecID(), 3u);
  char byte = 0;
  EXPECT_EQ(store.LoadRec(&byte, 1, 5), 1u);  // opens the record file again
  EXPECT_EQ(byte, 'c');
  store.Close();
  EXPECT_EQ(folder.Read("a.sr"), bytesOf("07 00 01 00 01 00 'a' 03 00 01 00 01 00 'b' 05 00 01 00 01 00 'c'"));
  EXPECT_EQ(folder.Read("a.si").substr(17), bytesOf("03 00 FF FF 01 00 0B 00 'GPActiveRec' 07 00 00 00 03 00 01 00"
                                                    "03 80 0E 00 00 00 05 00 01 00 03 80 00 00 00 00 07 00 01 00"
                                                    "FF FF 01 00 08 00 'GPObList' 00 00"));
}

TEST(Compaction, MovesMoreThanOneBatch)
{
  TempFolder const folder;
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
  auto const content = [](int id) { return std::string(60000 - static_cast<size_t>(id), static_cast<char>('A' + id)); };
  for (int id = 0; id < 60; ++id) store.StoreRec(content(id).data(), static_cast<unsigned int>(content(id).size()), id);
  for (int id = 0; id < 60; id += 3) store.DeleteRec(id);
  ASSERT_EQ(store.DegasRecFile(), 1);
  for (int id = 0; id < 60; ++id) {
    std::string bytes(60000, '\0');
    bytes.resize(store.LoadRec(bytes.data(), 60000, id));
    EXPECT_EQ(bytes, id % 3 == 0 ? "" : content(id)) << id;
  }
}

TEST(Compaction, StampsBothFilesOfAStore)
{
  TempFolder const folder;
  GPDataFile store(folder.Name("a.si"), folder.Name("a.sr"), CFile::modeReadWrite, nullptr);
  store.StoreRec("x", 1, 1);
  CFileStatus status;
  status.m_mtime = 86400;
  store.SetStatus(status);
  for (char const * const name : {"a.si", "a.sr"}) {
    CFileStatus stamped;
    EXPECT_TRUE(CFile::GetStatus(folder.Name(name), stamped));
    EXPECT_EQ(stamped.m_mtime, 86400);
  }
}

}  // namespace
