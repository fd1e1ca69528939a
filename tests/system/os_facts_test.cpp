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
  std::tuple<DWORD, char const *, int, int, int> const rows[] = {
      {0, "Win32s on Windows 3.1 - Version 6:1:7601", 1, 0, 0},
      {1, "Win32 on Windows 95 - Version 6:1:7601", 0, 1, 0},
      {2, "Windows NT - Version 6:1:7601", 0, 0, 1},
      {0xFFFFFFFF, "Unknown Platform 4294967295 - Version 6:1:7601", 0, 0, 0},
      {77, "Win32s on Windows 3.1 - Version 6:1:7601", 1, 0, 0},  // the call that fails
  };
  for (auto const & [platform, written, win32s, win95, winNT] : rows) {
    g_nPlatform = platform;
    CString text;
    GetOSVersionString(text);
    EXPECT_EQ(text, written);
    EXPECT_EQ(OSIsWin32s(), win32s);
    EXPECT_EQ(OSIsWin95(), win95);
    EXPECT_EQ(OSIsWinNT(), winNT);
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
  CString all;
  CString name;
  for (unsigned int id = 0; id <= 0x10409; ++id) {
    if (VerLanguageNameA(id, name) != 25) {
      EXPECT_EQ(name, "Unknown");
    } else {
      all += CString(id == 0 ? "" : ";") + name.TrimRight();
      all.Format("%s %X", CString(all).GetString(), id);
    }
  }
  EXPECT_EQ(
      all,
      "Language-Neutral 0;Process Default Language 400;Arabic 401;Bulgarian 402;Catalan 403;Traditional Chinese 404;Czech 405;"
      "Danish 406;German 407;Greek 408;U.S. English 409;Castilian Spanish 40A;Finnish 40B;French 40C;Hebrew 40D;Hungarian 40E;"
      "Icelandic 40F;Italian 410;Japanese 411;Korean 412;Dutch 413;Norwegian -- Bokm\xE5l 414;Polish 415;"
      "Brazilian Portuguese 416;Rhaeto-Romanic 417;Romanian 418;Russian 419;Croato-Serbian (Latin) 41A;Slovak 41B;Albanian 41C;"
      "Swedish 41D;Thai 41E;Turkish 41F;Urdu 420;Bahasa 421;Simplified Chinese 804;Swiss German 807;U.K. English 809;"
      "Mexican Spanish 80A;Belgian French 80C;Swiss Italian 810;Belgian Dutch 813;Norwegian -- Nynorsk 814;Portuguese 816;"
      "Serbo-Croatian (Cyrillic) 81A;Australian English C09;Modern Spanish C0A;Canadian French C0C;Canadian English 1009;"
      "Swiss French 100C");
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
