// Settings in a profile file: exact bytes after each change, what people wrote beside them, and files that change outside.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <tuple>

#include <zpbase/platform/application.h>

#include "tests/support/TempFolder.h"

namespace {

class ProfileFile : public testing::Test {
 protected:
  ProfileFile() { m_App.SetProfileFile(m_Folder.Name("app.ini")); }

  std::string Get(char const * section, char const * key) { return m_App.GetProfileString(section, key, "default").GetString(); }

  TempFolder m_Folder;
  CWinApp m_App{"app"};
};

}  // namespace

TEST_F(ProfileFile, AChangeTouchesItsOwnLineAlone)
{
  m_Folder.Write(
      "app.ini",
      "\xEF\xBB\xBF[Misc]\r\n; by hand\r\n Beep = Yes \r\nstray line\r\n\r\n; of the next\r\n[Other]\r\nbeep=2\r\nBeep=3");
  ASSERT_TRUE(m_App.WriteProfileString("MISC", "bEEP", "No"));
  ASSERT_TRUE(m_App.WriteProfileString("Misc", "Esc", "Yes"));
  ASSERT_TRUE(m_App.WriteProfileInt("Other", "New", -7));
  ASSERT_TRUE(m_App.WriteProfileString("Third", "a", "b"));
  EXPECT_EQ(
      m_Folder.Read("app.ini"),
      "\xEF\xBB\xBF[Misc]\r\n; by hand\r\n Beep = No \r\nEsc=Yes\r\nstray line\r\n\r\n; of the next\r\n[Other]\r\nbeep=2\r\n"
      "Beep=3\r\nNew=-7\r\n\r\n[Third]\r\na=b\r\n");
  EXPECT_EQ(Get("other", "BEEP"), "2");  // the first of two counts
  ASSERT_TRUE(m_App.WriteProfileString("Other", "Beep", nullptr));
  EXPECT_EQ(Get("Other", "Beep"), "default");
  ASSERT_TRUE(m_App.WriteProfileString("Misc", nullptr, nullptr));
  EXPECT_EQ(m_Folder.Read("app.ini"),
            "; by hand\r\nstray line\r\n\r\n; of the next\r\n[Other]\r\nNew=-7\r\n\r\n[Third]\r\na=b\r\n");
}

TEST_F(ProfileFile, ARemovalOfASectionTakesThoseBelowItToo)
{
  m_Folder.Write("app.ini", "[Misc]\na=1\n[misc\\Sub]\nb=2\n[Miscellany]\nc=3\n[]\nd=4\n=5\n[Mist\\x]\n[open\n");
  EXPECT_TRUE(m_App.WriteProfileString("Misc", nullptr, nullptr));
  EXPECT_FALSE(m_App.WriteProfileString("", nullptr, nullptr));
  EXPECT_EQ(m_Folder.Read("app.ini"), "[Miscellany]\nc=3\n[]\nd=4\n=5\n[Mist\\x]\n[open\n");
  EXPECT_EQ(m_App.ListSettings().size(), 2u);
}

TEST_F(ProfileFile, TextsComeBackAsTheyWentIn)
{
  for (char const * text : {"", " blanks ", "\"quoted\"", "'a'", "'b\"", "'", "a=b;c", "[x]", "\xE4\x80", "\ttab"}) {
    ASSERT_TRUE(m_App.WriteProfileString("S", "k", text));
    EXPECT_EQ(Get("S", "k"), text);
    CWinApp other("other");
    other.SetProfileFile(m_Folder.Name("app.ini"));
    EXPECT_EQ(std::string(other.GetProfileString("S", "k", "default")), text);
  }
}

TEST_F(ProfileFile, WhatTheFormCantHoldIsRefused)
{
  m_Folder.Write("app.ini", "[S]\nk=v\n");
  EXPECT_FALSE(m_App.WriteProfileString("S", "k", "two\nlines"));
  EXPECT_FALSE(m_App.WriteProfileString("S", "a=b", "v"));
  EXPECT_FALSE(m_App.WriteProfileString("S", ";k", "v"));
  EXPECT_FALSE(m_App.WriteProfileString("S", " ", "v"));
  for (char const * key : {"[k", "", "two\nlines"}) EXPECT_FALSE(m_App.WriteProfileString("S", key, "v")) << key;
  for (char const * section : {"S]", "two\nlines"}) EXPECT_FALSE(m_App.WriteProfileString(section, "k", "v")) << section;
  EXPECT_EQ(m_Folder.Read("app.ini"), "[S]\nk=v\n");
}

TEST_F(ProfileFile, NumbersAndBlocksHaveTheirTextForms)
{
  m_Folder.Write(
      "app.ini",
      "[S]\nn=102 apples\nminus=-1\nbig=4294967295\nempty=\nword=x\nodd=PBA\nbad=PZ\nlow=@@\nover=QA\nunder=AQ\nblock=PBAA\n");
  using Row = std::tuple<char const *, int>;
  for (auto const & [name, expected] : {Row{"n", 102}, {"minus", -1}, {"big", -1}, {"empty", 9}, {"none", 9}, {"word", 0}})
    EXPECT_EQ(static_cast<int>(m_App.GetProfileInt("S", name, 9)), expected) << name;
  BYTE * bytes = nullptr;
  UINT length = 9;
  for (char const * key : {"odd", "bad", "low", "over", "under", "empty", "none"})
    EXPECT_FALSE(m_App.GetProfileBinary("S", key, &bytes, &length)) << key;
  EXPECT_EQ(length, 0u);
  ASSERT_TRUE(m_App.GetProfileBinary("S", "block", &bytes, &length));
  std::unique_ptr<BYTE[]> const block(bytes);
  ASSERT_EQ(length, 2u);
  EXPECT_EQ(block[0], 0x1F);
  EXPECT_EQ(block[1], 0x00);
  ASSERT_TRUE(m_App.WriteProfileBinary("S", "block", block.get(), 1));
  EXPECT_EQ(Get("S", "block"), "PB");
}

TEST_F(ProfileFile, AFileThatChangesOutsideIsReadAgain)
{
  EXPECT_EQ(Get("S", "k"), "default");
  for (char const * text : {"one", "two", "six"}) {  // of one size, within one tick of the file system's clock
    m_Folder.Write("app.ini", std::string("[S]\nk=") + text);
    EXPECT_EQ(Get("S", "k"), text);
  }
  std::filesystem::remove(m_Folder.Path() / "app.ini");
  EXPECT_EQ(Get("S", "k"), "default");
}

TEST_F(ProfileFile, WhatCantBeReadIsNotReplaced)
{
  std::filesystem::create_directory(m_Folder.Path() / "app.ini");
  EXPECT_FALSE(m_App.WriteProfileString("S", "k", "v"));
  EXPECT_TRUE(std::filesystem::is_directory(m_Folder.Path() / "app.ini"));
  ASSERT_EQ(mkfifo((m_Folder.Path() / "pipe.ini").c_str(), 0600), 0);  // whose writer isn't waited for
  m_App.SetProfileFile(m_Folder.Name("pipe.ini"));
  EXPECT_EQ(Get("S", "k"), "default");
  EXPECT_FALSE(m_App.WriteProfileString("S", "k", "v"));
  m_App.SetProfileFile("D:\\app.ini");
  EXPECT_FALSE(m_App.WriteProfileString("S", "k", "v"));
  EXPECT_EQ(Get("S", "k"), "default");
}

TEST(Application, NewestOneIsCurrentAndHasAProfileFileOfItsName)
{
  TempFolder const folder;
  setenv("XDG_CONFIG_HOME", (folder.Path() / "deep/config").c_str(), 1);
  EXPECT_EQ(AfxGetApp(), nullptr);
  {
    CWinApp app("flow");
    EXPECT_EQ(AfxGetApp(), &app);
    EXPECT_TRUE(app.WriteProfileString("S", "k", "v"));
    EXPECT_STREQ(CWinApp().m_pszAppName, "test_platform");
  }
  EXPECT_EQ(AfxGetApp(), nullptr);
  EXPECT_EQ(folder.Read("deep/config/flow.ini"), "[S]\nk=v\n");
}

TEST(Application, ListsEverySettingOnceInTheStoresOrder)
{
  TempFolder const folder;
  folder.Write("a.ini", "[B]\nk=1\nK=2\n[A]\nx='q'\n[b]\nz=3\n");
  CWinApp app("a");
  app.SetProfileFile(folder.Name("a.ini"));
  std::string all;
  for (zp::Setting const & s : app.ListSettings()) all += (s.section + "." + s.key + "=" + s.data.GetString() + ";").GetString();
  EXPECT_EQ(all, "B.k=1;A.x=q;b.z=3;");
}
