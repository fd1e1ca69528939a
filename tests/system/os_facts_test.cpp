// What the system is: families, versions, languages, and the locale that is found once.

#include <gtest/gtest.h>

#include <stdlib.h>

#include <zpbase/platform/host_calls.h>
#include <zpbase/system.h>

#include "tests/support/OwnProcess.h"

namespace {

DWORD g_nPlatform = 2;

class SystemVersion : public testing::Test {
 protected:
  SystemVersion() : m_Kept(zp::GetHostCalls())
  {
    zp::GetHostCalls().GetVersion = [](OSVERSIONINFOA & version) {
      version.dwMajorVersion = 6;
      version.dwMinorVersion = 1;
      version.dwBuildNumber = 7601;
      version.dwPlatformId = g_nPlatform;
      strcpy(version.szCSDVersion, "Service Pack 1");
      return g_nPlatform != 77;
    };
  }
  ~SystemVersion() override { zp::GetHostCalls() = m_Kept; }

  zp::HostCalls m_Kept;
};

TEST_F(SystemVersion, IsToldByFamily)
{
  struct Row {
    DWORD platform;
    char const * text;
    int win32s, win95, winNT;
  } const rows[] = {
      {0, "Win32s on Windows 3.1 - Version 6:1:7601", 1, 0, 0},
      {1, "Win32 on Windows 95 - Version 6:1:7601", 0, 1, 0},
      {2, "Windows NT - Version 6:1:7601", 0, 0, 1},
      {0xFFFFFFFF, "Unknown Platform 4294967295 - Version 6:1:7601", 0, 0, 0},
      {77, "Win32s on Windows 3.1 - Version 6:1:7601", 1, 0, 0},  // the call that fails
  };
  for (Row const & row : rows) {
    g_nPlatform = row.platform;
    CString text;
    GetOSVersionString(text);
    EXPECT_EQ(text, row.text);
    EXPECT_EQ(OSIsWin32s(), row.win32s);
    EXPECT_EQ(OSIsWin95(), row.win95);
    EXPECT_EQ(OSIsWinNT(), row.winNT);
  }
  CString mods;
  GetOSModsString(mods);
  EXPECT_EQ(mods, "Service Pack 1");
  EXPECT_EQ(COSVersionInfo().dwOSVersionInfoSize, 148u);
}

TEST(SystemFacts, OfTheHostAreOfTheNTFamily)
{
  EXPECT_EQ(GetOSPlatformID(), 2u);
  EXPECT_GT(GetOSMajorVersion(), 0u);
  EXPECT_EQ(GetOSMinorVersion(), COSVersionInfo().dwMinorVersion);
}

TEST(SystemFacts, NameLanguagesInTwentyFiveCharacters)
{
  CString name;
  for (unsigned int id = 0x0401; id <= 0x0421; ++id) EXPECT_EQ(VerLanguageNameA(id, name), 25u) << id;
  EXPECT_EQ(VerLanguageNameA(0x0409, name), 25u);
  EXPECT_EQ(name, "U.S. English             ");
  EXPECT_EQ(VerLanguageNameA(0x0414, name), 25u);
  EXPECT_EQ(name, "Norwegian -- Bokm\xE5l      ");
  EXPECT_EQ(VerLanguageNameA(0x0000, name), 25u);
  EXPECT_EQ(VerLanguageNameA(0x100C, name), 25u);
  EXPECT_EQ(name, "Swiss French             ");
  EXPECT_EQ(VerLanguageNameA(0x0C07, name), 7u);
  EXPECT_EQ(name, "Unknown");
  EXPECT_EQ(VerLanguageNameA(0x10409, name), 7u);
}

TEST(SystemFacts, AreThoseOfTheUsersLocale)
{
  RunInLocale("de_CH", "ISO-8859-1", [] {
    CString name;
    EXPECT_EQ(GetOSLanguage(name), 1);
    EXPECT_EQ(name, "Swiss German             ");
    EXPECT_EQ(GetThreadLocale(), 0x0807u);
    EXPECT_EQ(GetCurLCID(), 0x0807u);
    setenv("LC_ALL", "C", 1);
    EXPECT_EQ(GetThreadLocale(), 0x0409u);
    EXPECT_EQ(GetCurLCID(), 0x0807u);
    setenv("LC_ALL", "xx_YY", 1);
    EXPECT_EQ(GetSystemDefaultLangID(), 0x0409u);
  });
}

}  // namespace
