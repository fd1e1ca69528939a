// Making directories and asking for them.

#include <gtest/gtest.h>

#include <filesystem>

#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

TEST(Directories, AreMadeToTheLastPart)
{
  TempFolder const folder;
  EXPECT_EQ(MakeParentDirectories(folder.Name("a\\b.txt\\")), 1);
  EXPECT_EQ(MakeParentDirectories(folder.Name("a\\b.txt")), 1);
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path() / "a" / "b.txt"));
  EXPECT_EQ(MakeParentDirectories("plain"), 1);
  EXPECT_FALSE(std::filesystem::exists("plain"));
  EXPECT_EQ(DirExists(folder.Name("a")), 1);
  EXPECT_EQ(DirExists(folder.Name("a\\")), 1);
  EXPECT_EQ(DirExists(folder.Name("none")), 0);
  EXPECT_EQ(DirExists(""), 0);
  folder.Write("file", "");
  EXPECT_EQ(DirExists(folder.Name("file")), 0);
  EXPECT_EQ(MakeParentDirectories(folder.Name("file\\below\\more")), 0);
}

}  // namespace
