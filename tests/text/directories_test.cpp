// Making directories and asking for them.

#include <gtest/gtest.h>

#include <filesystem>

#include <zpbase/text.h>

#include "tests/support/RecordingInterface.h"
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
  RecordingInterface const watch;
  EXPECT_EQ(MakeParentDirectories(folder.Name("file\\below\\more")), 0);
  ASSERT_EQ(watch.m_Messages.size(), 1u);
  std::string const & shown = watch.m_Messages.front().text;
  EXPECT_NE(shown.find("--- SYSTEM ERROR 3 ---"), std::string::npos) << shown;
  EXPECT_NE(shown.find(("The directory " + folder.Name("file\\below") + " can't").View()), std::string::npos) << shown;
}

}  // namespace
