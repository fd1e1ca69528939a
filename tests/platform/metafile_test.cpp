// Metafiles: what is one, which records a walk gives, and files that lie or are cut.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <tuple>
#include <vector>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/metafile.h>

#include "tests/support/Metafiles.h"
#include "tests/support/TempFolder.h"

namespace {

using Functions = std::vector<int>;

int note(HDC dc, HANDLETABLE * table, METARECORD * record, int objects, LPARAM user)
{
  EXPECT_EQ(dc, nullptr);
  EXPECT_NE(table, nullptr);
  EXPECT_EQ(objects, 0);
  reinterpret_cast<Functions *>(user)->push_back(record->rdFunction);
  std::memset(record, 0xAA, size_t{2} * record->rdSize);  // ours to change
  return 1;
}

struct Walk {
  bool known;
  BOOL result;
  Functions functions;
};

Walk walk(std::string const & bytes)
{
  std::vector<BYTE> const exact(bytes.begin(), bytes.end());
  HMETAFILE const metafile = SetMetaFileBitsEx(static_cast<UINT>(exact.size()), exact.data());
  Walk walked{metafile != nullptr, FALSE, {}};
  for (int i = 0; i < 2; ++i) {  // the second walk sees what the first saw
    walked.functions.clear();
    walked.result = EnumMetaFile(nullptr, metafile, note, reinterpret_cast<LPARAM>(&walked.functions));
  }
  EXPECT_EQ(DeleteMetaFile(metafile), walked.known);
  return walked;
}

std::string const one = MetaRecord(META_SETBKMODE, {1});
std::string const two = MetaRecord(META_LINETO, {1, 2});

TEST(MetaFile, GivesEachRecordInFrontOfTheEnd)
{
  std::string sizes = MetaHeader();
  for (size_t i = 2; i < 18; ++i)
    if (i != 4 && i != 5) sizes[i] = '\xFF';
  std::string record = two;
  record[0] = 2;
  std::tuple<char const *, std::string, BOOL, Functions> const rows[] = {
      {"plain", MetaHeader() + one + two + MetaEnd(), TRUE, {META_SETBKMODE, META_LINETO}},
      {"placeable", PlaceableHeader() + MetaHeader() + two + MetaEnd(), TRUE, {META_LINETO}},
      {"trailing bytes", MetaHeader() + one + MetaEnd() + two + "x", TRUE, {META_SETBKMODE}},
      {"no end record", MetaHeader() + one + two, TRUE, {META_SETBKMODE, META_LINETO}},
      {"no records", MetaHeader(), TRUE, {}},
      {"sizes that lie", sizes + one + MetaEnd(), TRUE, {META_SETBKMODE}},
      {"a header of zeros behind the key", PlaceableHeader() + std::string(18, '\0') + one, TRUE, {META_SETBKMODE}},
      {"a size below a record's head", MetaHeader() + one + record + MetaEnd(), FALSE, {META_SETBKMODE}},
      {"a size behind the file", MetaHeader() + one + FromHex("FF FF FF FF 13 02") + MetaEnd(), FALSE, {META_SETBKMODE}},
      {"a size of 2 GiB", MetaHeader() + FromHex("00 00 00 80 13 02") + MetaEnd(), FALSE, {}},
  };
  for (auto const & [why, bytes, result, functions] : rows) {
    Walk const walked = walk(bytes);
    EXPECT_TRUE(walked.known) << why;
    EXPECT_EQ(walked.result, result) << why;
    EXPECT_EQ(walked.functions, functions) << why;
  }
}

TEST(MetaFile, TellsWhereAFileWasCut)
{
  std::string const whole = PlaceableHeader() + MetaHeader() + one + two + MetaEnd();
  size_t const first = 40;
  for (size_t length = 0; length < whole.size(); ++length) {
    Walk const walked = walk(whole.substr(0, length));
    EXPECT_EQ(walked.known, length >= first) << length;
    size_t const records = length < first + 8 ? 0 : length < first + 18 ? 1 : 2;
    EXPECT_EQ(walked.functions.size(), records) << length;
    EXPECT_EQ(walked.result, length == first || length == first + 8 || length == first + 18) << length;
  }
}

TEST(MetaFile, TakesOnlyWhatBeginsAsOne)
{
  for (std::string const & bytes :
       {std::string(), std::string(40, '\0'), "\x89PNG" + std::string(40, '\1'), std::string(22, 'x')})
    EXPECT_FALSE(walk(bytes).known);
  EXPECT_EQ(EnumMetaFile(nullptr, nullptr, note, 0), FALSE);
  EXPECT_FALSE(zp::GetMetaFileFacts(nullptr).placeable);
  TempFolder const folder;
  EXPECT_EQ(GetMetaFile(folder.Name("missing.wmf")), nullptr);
  EXPECT_EQ(GetMetaFile(folder.Name("")), nullptr);
  ASSERT_EQ(std::system(("mkfifo '" + (folder.Path() / "pipe.wmf").string() + "'").c_str()), 0);
  EXPECT_EQ(GetMetaFile(folder.Name("pipe.wmf")), nullptr) << "without waiting for a writer";
}

TEST(MetaFile, ReadsRealFiles)
{
  int files = 0;
  for (auto const & entry : std::filesystem::directory_iterator(ZP_SOURCE_DIR "/tests/metafiles")) {
    if (entry.path().extension() != ".wmf") continue;
    ++files;
    HMETAFILE const metafile = GetMetaFile(CString(entry.path().string()));
    ASSERT_NE(metafile, nullptr) << entry.path();
    zp::MetaFileFacts const facts = zp::GetMetaFileFacts(metafile);
    EXPECT_TRUE(facts.placeable) << entry.path();
    EXPECT_GT(facts.bounds.right, facts.bounds.left) << entry.path();
    EXPECT_GE(facts.unitsPerInch, 1200) << entry.path();
    EXPECT_EQ(facts.header.mtHeaderSize, 9) << entry.path();
    Functions functions;
    EXPECT_EQ(EnumMetaFile(nullptr, metafile, note, reinterpret_cast<LPARAM>(&functions)), TRUE) << entry.path();
    EXPECT_GT(functions.size(), 20U);
    int const stopped = EnumMetaFile(
        nullptr, metafile, [](HDC, HANDLETABLE *, METARECORD *, int, LPARAM) { return 0; }, 0);
    EXPECT_EQ(stopped, FALSE);
    DeleteMetaFile(metafile);
  }
  EXPECT_GE(files, 11);
}

}  // namespace
