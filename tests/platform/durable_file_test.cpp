// Whole-file replacement: the new bytes, the old file's mode and links, and the old file after a failure.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>

#include <zpbase/platform/durable_file.h>

#include "tests/support/HostFaults.h"
#include "tests/support/TempFolder.h"

namespace fs = std::filesystem;

namespace {

long filesIn(TempFolder const & folder)
{
  return std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator());
}

}  // namespace

TEST(DurableFile, ReplacingKeepsModeAndLinksAndLeavesNothingBeside)
{
  TempFolder const folder;
  fs::path const real = folder.Path() / "real";
  ASSERT_TRUE(ReplaceFileDurably(real.c_str(), "first"));
  fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("real", folder.Path() / "link");
  folder.Write("real.zp-new", "left by a crash");
  std::string const bytes("a\0b\r\n", 5);
  int error = -1;
  ASSERT_TRUE(ReplaceFileDurably(folder.Name("link"), bytes, &error));
  EXPECT_EQ(error, 0);
  EXPECT_EQ(folder.Read("real"), bytes);
  EXPECT_TRUE(fs::is_symlink(folder.Path() / "link"));
  EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(filesIn(folder), 2);
  std::string const longest = std::string(248, 'l') + ".ending";
  ASSERT_TRUE(ReplaceFileDurably(folder.Name(longest.c_str()), "1", &error)) << error;
  ASSERT_TRUE(ReplaceFileDurably(folder.Name(longest.c_str()), "2", &error)) << error;
  EXPECT_EQ(folder.Read(longest), "2");
  std::string const taken = std::string(248, 'l') + ".zp-new";
  folder.Write(taken, "kept");
  EXPECT_FALSE(ReplaceFileDurably(folder.Name(taken.c_str()), "lost", &error));
  EXPECT_EQ(error, ENAMETOOLONG);
  EXPECT_EQ(folder.Read(taken), "kept");
}

TEST(DurableFile, AsksWithTheNewFileBesideTheOldOne)
{
  TempFolder const folder;
  folder.Write("file", "old");
  int error = -1;
  auto const answering = [&](bool answer) {
    return [&folder, answer](std::string const & written) {
      EXPECT_EQ(folder.Read(fs::path(written).filename().string()), "new");
      EXPECT_EQ(folder.Read("file"), "old");
      return answer;
    };
  };
  EXPECT_FALSE(ReplaceFileDurablyIf(folder.Name("file"), "new", answering(false), &error));
  EXPECT_EQ(error, ECANCELED);
  EXPECT_EQ(folder.Read("file"), "old");
  EXPECT_TRUE(ReplaceFileDurablyIf(folder.Name("file"), "new", answering(true), &error));
  EXPECT_EQ(folder.Read("file"), "new");
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(DurableFile, MovingPutsAWrittenFileInTheTargetsPlace)
{
  TempFolder const folder;
  folder.Write("old", "old");
  folder.Write("new", "new");
  EXPECT_TRUE(MoveFileDurably(folder.Name("new"), folder.Name("old")));
  EXPECT_EQ(folder.Read("old"), "new");
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(DurableFile, AFailureNamesItsErrorAndTouchesNothing)
{
  TempFolder const folder;
  int error = 0;
  EXPECT_FALSE(ReplaceFileDurably(folder.Name("none\\file"), "x", &error));
  EXPECT_EQ(error, ENOENT);
  fs::create_directories(folder.Path() / "folder/inner");
  EXPECT_FALSE(ReplaceFileDurably(folder.Name("folder"), "x", &error));
  EXPECT_EQ(error, EISDIR);
  folder.Write("old", "old");
  EXPECT_FALSE(MoveFileDurably(folder.Name("missing"), folder.Name("old"), &error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_FALSE(ReplaceFileDurably("D:\\x", "x"));
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(filesIn(folder), 2);
}

TEST(DurableFile, WaitsForTheFoldersLockAndNotForEver)
{
  TempFolder const folder;
  folder.Write("file", "old");
  static zp::HostCalls const kept = zp::GetHostCalls();
  static LONGLONG now = 0;
  static int held = kept.Open(folder.Path().c_str(), zp::hostRead | zp::hostFolder, 0);
  ASSERT_EQ(kept.Lock(held, zp::HostLock::Exclusive), 0);
  zp::GetHostCalls().SteadyClock = [] { return now; };
  zp::GetHostCalls().Pause = [](int milliseconds) { now += milliseconds * 1'000'000LL; };
  int error = 0;
  EXPECT_FALSE(ReplaceFileDurably(folder.Name("file"), "new", &error));
  EXPECT_EQ(error, EWOULDBLOCK);
  EXPECT_NEAR(static_cast<double>(now), 10e9, 1e8);
  EXPECT_EQ(folder.Read("file"), "old");
  zp::GetHostCalls().Pause = [](int) { kept.Close(held); };
  EXPECT_TRUE(ReplaceFileDurably(folder.Name("file"), "new", &error)) << error;
  zp::GetHostCalls() = kept;
  EXPECT_EQ(folder.Read("file"), "new");
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(DurableFile, WhateverCallFailsTheFileIsTheOldOneOrTheNewOne)
{
  int failures = 0;
  for (int n = 1;; ++n) {
    TempFolder const folder;
    folder.Write("file", "old");
    int error = 0;
    bool hasFailed = false;
    bool replaced = false;
    {
      HostFaults const faults(n, EIO);
      replaced = ReplaceFileDurably(folder.Name("file"), "new", &error);
      hasFailed = faults.HasFailed();
    }
    if (!hasFailed) {
      EXPECT_TRUE(replaced);
      break;
    }
    ++failures;
    EXPECT_EQ(replaced, error == 0) << n;
    std::string const now = folder.Read("file");
    EXPECT_TRUE(now == "new" || (!replaced && now == "old")) << n << ": " << now;
    EXPECT_EQ(filesIn(folder), 1) << n;
  }
  EXPECT_GE(failures, 6) << "open, mode, write, sync, close, rename";
}
