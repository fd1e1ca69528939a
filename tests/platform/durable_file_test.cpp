// Whole-file replacement: the new bytes, the old file's mode and links, and the old file after a failure.

#include <gtest/gtest.h>

#include <zpbase/platform/paths.h>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

namespace {

class DurableFile : public testing::Test {
 protected:
  void SetUp() override
  {
    m_Folder = fs::path(testing::TempDir()) / testing::UnitTest::GetInstance()->current_test_info()->name();
    fs::remove_all(m_Folder);
    fs::create_directories(m_Folder);
  }
  void TearDown() override { fs::remove_all(m_Folder); }

  std::string Path(char const * name) const { return (m_Folder / name).string(); }
  static std::string Read(std::string const & path)
  {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  long Count() const { return std::distance(fs::directory_iterator(m_Folder), fs::directory_iterator()); }

  fs::path m_Folder;
};

}  // namespace

TEST_F(DurableFile, ReplacingKeepsModeAndLinksAndLeavesNothingBeside)
{
  ASSERT_TRUE(ReplaceFileDurably(Path("real").c_str(), "first"));
  fs::permissions(Path("real"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("real", Path("link"));
  std::ofstream(Path("real.zp-new")) << "left by a crash";
  std::string const bytes("a\0b\r\n", 5);
  int error = -1;
  ASSERT_TRUE(ReplaceFileDurably(FromHostPath(Path("link")), bytes, &error));
  EXPECT_EQ(error, 0);
  EXPECT_EQ(Read(Path("real")), bytes);
  EXPECT_TRUE(fs::is_symlink(Path("link")));
  EXPECT_EQ(fs::status(Path("real")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(Count(), 2);
}

TEST_F(DurableFile, MovingPutsAWrittenFileInTheTargetsPlace)
{
  std::ofstream(Path("old")) << "old";
  std::ofstream(Path("new")) << "new";
  EXPECT_TRUE(MoveFileDurably(Path("new").c_str(), Path("old").c_str()));
  EXPECT_EQ(Read(Path("old")), "new");
  EXPECT_EQ(Count(), 1);
}

TEST_F(DurableFile, AFailureNamesItsErrorAndTouchesNothing)
{
  int error = 0;
  EXPECT_FALSE(ReplaceFileDurably(Path("none/file").c_str(), "x", &error));
  EXPECT_EQ(error, ENOENT);
  fs::create_directories(Path("folder/inner"));
  EXPECT_FALSE(ReplaceFileDurably(Path("folder").c_str(), "x", &error));
  EXPECT_EQ(error, EISDIR);
  std::ofstream(Path("old")) << "old";
  EXPECT_FALSE(MoveFileDurably(Path("missing").c_str(), Path("old").c_str(), &error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_FALSE(ReplaceFileDurably("D:\\x", "x"));
  EXPECT_EQ(Read(Path("old")), "old");
  EXPECT_EQ(Count(), 2);
}
