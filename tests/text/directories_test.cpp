// Making directories and asking for them.

#include <gtest/gtest.h>

#include <filesystem>

#include <zpbase/platform/windows.h>
#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

class MessageWatch : public CUserInterface {
 public:
  MessageWatch() : m_pFormer(SetUserInterface(this)) {}
  ~MessageWatch() override { SetUserInterface(m_pFormer); }
  int ShowMessage(CString const & text, UINT, UINT) override
  {
    m_strSeen += text.View();
    return IDOK;
  }
  int RunDialog(CDialog &) override { return 0; }
  void Beep(UINT) override {}
  void SetWaitCursor(int) override {}

  CString m_strSeen;

 private:
  CUserInterface * m_pFormer;
};

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
  MessageWatch const watch;
  EXPECT_EQ(MakeParentDirectories(folder.Name("file\\below\\more")), 0);
  EXPECT_NE(watch.m_strSeen.Find("--- SYSTEM ERROR 3 ---"), -1) << watch.m_strSeen;
  EXPECT_NE(watch.m_strSeen.Find("The directory " + folder.Name("file\\below") + " can't"), -1) << watch.m_strSeen;
}

}  // namespace
