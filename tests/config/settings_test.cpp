// The settings store over both of its back ends: defaults, forms and widths, and what stands in the file afterwards.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <tuple>

#include <zpbase/config.h>
#include <zpbase/platform/application.h>

#include "tests/support/TempFolder.h"

namespace {

class Settings : public testing::TestWithParam<char const *> {
 protected:
  Settings()
  {
    setenv("ZP_USER_HIVE", (m_Folder.Path() / "user.reg").c_str(), 1);
    if (std::string(GetParam()) == "registry") {
      m_App.SetRegistryKey("Acme");
    } else {
      m_App.SetProfileFile(m_Folder.Name("app.ini"));
    }
  }

  std::string Stored(char const * key) { return m_App.GetProfileString("S", key, "(none)").GetString(); }

  TempFolder m_Folder;
  CWinApp m_App{"App"};
  CString m_Out;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Over, Settings, testing::Values("registry", "profile"), [](auto const & run) { return run.param; });

TEST_P(Settings, AReadThatFallsBackMakesTheSettingExist)
{
  EXPECT_EQ(GetSysString(m_Out, "S", "k", "abc"), 3);
  EXPECT_EQ(GetSysString(m_Out, "S", "k", "other"), 3);
  EXPECT_STREQ(m_Out, "abc");
  EXPECT_EQ(GetSysString(m_Out, "S", "none", CString()), 0);
  EXPECT_STREQ(m_Out, "");
  EXPECT_EQ(Stored("none"), "(none)");
  RemoveSysKey("S", "k");
  EXPECT_EQ(Stored("k"), "(none)");
}

TEST_P(Settings, FlagsAreYesOrNoInAnyCaseOrNeither)
{
  using Row = std::tuple<char const *, int, int>;
  for (auto const & [text, yes, no] : {Row{"yes", 1, 0}, {"YES", 1, 0}, {"nO", 0, 1}, {"true", 0, 0}, {"", 0, 0}}) {
    SetSysString("S", "f", text);
    EXPECT_EQ(GetSysYes("S", "f"), yes) << text;
    EXPECT_EQ(GetSysNo("S", "f"), no) << text;
  }
  SetSysFlag("S", "f", -5);
  EXPECT_EQ(Stored("f"), "Yes");
  SetSysFlag("S", "f", 0);
  EXPECT_EQ(Stored("f"), "No");
  EXPECT_EQ(GetSysYes("S", "missing") + GetSysNo("S", "missing"), 0);
}

TEST_P(Settings, IntegersAreCutTo16BitsOnReading)
{
  using Row = std::tuple<int, int>;
  for (auto const & [stored, read] : {Row{70000, 4464}, {65535, -1}, {-3, -3}, {32768, -32768}}) {
    EXPECT_NE(SetSysInt("S", "i", stored), 0);
    EXPECT_EQ(GetSysInt("S", "i", 0), read);
  }
  EXPECT_EQ(GetSysInt("S", "none", 70000), 4464);
  EXPECT_EQ(GetSysInt(m_Out, "S", "none", 0, 0), 0);
  EXPECT_STREQ(m_Out, "");
  EXPECT_EQ(GetSysInt(m_Out, "S", "none", 1, 0), 0);
  EXPECT_STREQ(m_Out, "0");
  EXPECT_EQ(GetSysInt(m_Out, "S", "i", 0, 0), -32768);
  EXPECT_STREQ(m_Out, "-32768");
}

TEST_P(Settings, LongsAreUnsignedDecimalText)
{
  EXPECT_EQ(GetSysLong("S", "l", 0), 0);
  EXPECT_EQ(Stored("l"), "(none)");
  EXPECT_EQ(GetSysLong("S", "l", -5), -5);
  EXPECT_EQ(Stored("l"), "4294967291");
  EXPECT_EQ(GetSysLong(m_Out, "S", "l", 0, 0), -5);
  EXPECT_STREQ(m_Out, "-5");
  EXPECT_NE(SetSysLong("S", "l", 0x1'0000'0007), 0);
  EXPECT_EQ(Stored("l"), "7");
  EXPECT_EQ(GetSysLong(m_Out, "S", "m", 1, 0), 0);
  EXPECT_STREQ(m_Out, "0");
}

TEST_P(Settings, BlocksKeepTheZeroByteBehindThem)
{
  EXPECT_NE(SetSysBinary("S", "b", "abc"), 0);
  EXPECT_EQ(GetSysBinary("S", m_Out, "b"), 4);
  EXPECT_EQ(std::string(m_Out.View()), std::string("abc\0", 4));
  EXPECT_EQ(GetSysBinary("S", m_Out, "none"), 0);
  EXPECT_STREQ(m_Out, "");
}

TEST(SettingsWithoutAnApplication, GiveDefaultsAndWriteNothing)
{
  CString out;
  EXPECT_EQ(GetSysString(out, "S", "k", "abc"), 3);
  EXPECT_EQ(SetSysString("S", "k", "x") + SetSysInt("S", "k", 1) + SetSysLong("S", "k", 1) + SetSysBinary("S", "k", "x"), 0);
  EXPECT_EQ(GetSysInt("S", "k", 70000), 4464);
  EXPECT_EQ(GetSysLong("S", "k", -7), -7);
  EXPECT_EQ(GetSysBinary("S", out, "k") + GetSysYes("S", "k") + GetSysNo("S", "k"), 0);
}

TEST(SystemPaths, PlacesEndInABackslashAndAreKeptUntilFlushed)
{
  TempFolder const folder;
  CWinApp app("App");
  app.SetProfileFile(folder.Name("app.ini"));
  EXPECT_TRUE(GetSystemPathPrefix().View().ends_with("\\tests\\"));
  EXPECT_STREQ(GetSystemRootDirectory(), "C:\\");
  EXPECT_EQ(GetZP3SystemPathPrefix(), GetSystemPathPrefix());
  SetSysString("Directory", "ZP3System", "C:\\old");
  EXPECT_EQ(GetZP3SystemPathPrefix(), GetSystemPathPrefix());
  FlushSysINIValues();
  EXPECT_STREQ(GetZP3SystemPathPrefix(), "C:\\old\\");
  FlushSysINIValues();
}
