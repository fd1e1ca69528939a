// The preferences: how flags, colours, bases and rights read their texts, what writers keep in step, and the time before the
// application.

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <tuple>

#include <zpbase/config.h>
#include <zpbase/platform/application.h>

#include "tests/support/OwnProcess.h"
#include "tests/support/TempFolder.h"

namespace {

class Preferences : public testing::Test {
 protected:
  Preferences()
  {
    zp::ForgetCachedSettings();
    m_App.SetProfileFile(m_Folder.Name("app.ini"));
  }
  ~Preferences() override { zp::ForgetCachedSettings(); }

  TempFolder m_Folder;
  CWinApp m_App{"App"};
};

struct Flag {
  int (*read)();
  char const * section;
  char const * key;
  char const * results;  // for a missing key, "yes", "no" and "x"
};

Flag const flags[] = {
    {GetDefAcctFlag, "Misc", "AcctFlag", "0100"},
    {GetDefASCIIFlag, "Misc", "RptASCII", "0100"},
    {GetDefExcelFlag, "ExcelSettings", "RptExcel", "0100"},
    {GetSaveAfterRunFlag, "ExcelSettings", "SaveAfterRun", "1100"},
    {GetShowExcelFlag, "ExcelSettings", "ShowExcel", "0100"},
    {GetIsVBServerFlag, "ExcelSettings", "IsVBServer", "0100"},
    {AllowBeep, "Misc", "Beep", "0100"},
    {AllowEnter, "Misc", "Enter", "0100"},
    {AllowEsc, "Misc", "Esc", "1101"},
    {UseKeshCalcSequence, "Misc", "OldCalc", "0100"},
    {CalcAccordingToKesh, "Misc", "MDLSw", "0100"},
    {FlushMsgWin, "Misc", "FlushMsgWn", "1101"},
};

}  // namespace

TEST_F(Preferences, FlagsHaveTheirOwnDefaults)
{
  char const * const texts[] = {nullptr, "yes", "no", "x"};
  for (Flag const & flag : flags) {
    for (int i = 0; i < 4; ++i) {
      zp::ForgetCachedSettings();
      m_App.WriteProfileString(flag.section, flag.key, texts[i]);
      EXPECT_EQ(flag.read(), flag.results[i] - '0') << flag.key << i;
    }
  }
}

TEST_F(Preferences, KeptFlagsStayInStepWithTheirWritersAlone)
{
  EXPECT_EQ(SetShowExcelFlag(1), 0);
  m_App.WriteProfileString("ExcelSettings", "ShowExcel", "No");
  EXPECT_EQ(GetShowExcelFlag(), 1);
  EXPECT_EQ(SetShowExcelFlag(0), 1);
  EXPECT_EQ(SetIsVBServerFlag(1), 0);
  SetKeshCalcSequence(5);
  EXPECT_EQ(UseKeshCalcSequence(), 1);
  SetCompSelectBy(7);
  EXPECT_EQ(GetCompSelectBy(), 7);
  SetDefAcctFlag(1);
  SetDefASCIIFlag(1);
  SetDefExcelFlag(1);
  SetDefAcctCode("C7");
  EXPECT_EQ(m_Folder.Read("app.ini"),
            "[ExcelSettings]\nShowExcel=No\nIsVBServer=Yes\nRptExcel=Yes\n\n"
            "[Misc]\nOldCalc=Yes\nCompSelectBy=7\nAcctFlag=Yes\nRptASCII=Yes\nAcctCode=C7\n");
}

TEST_F(Preferences, FlagsOfAnyNumberAreOneOrZero)
{
  for (int const flag : {5, -1}) {
    SetShowExcelFlag(flag);
    SetIsVBServerFlag(flag);
    EXPECT_EQ(GetShowExcelFlag(), 1) << flag;
    m_App.WriteProfileString("ExcelSettings", "ShowExcel", "No");
    EXPECT_EQ(SetShowExcelFlag(0), 1) << flag;
    EXPECT_EQ(SetIsVBServerFlag(0), 1) << flag;
  }
}

TEST(PreferencesBeforeTheApplication, AreDefaultsThatDontStay)
{
  TempFolder const folder;
  folder.Write("app.ini",
               "[Misc]\nBeep=Yes\nKBase=1\nEULabels=1, 2, 3\nCompSelectBy=4\nCFRVal=%.2f\n[ExcelSettings]\n"
               "ShowExcel=Yes\n[Authorization]\nAuthority=Mgr\n[Directory]\nZP3System=C:\\old\n");
  zp::ForgetCachedSettings();
  auto const all = [] {
    return std::array<double, 6>{double(AllowBeep()),        GetKBase(),
                                 double(GetEULabelColor()),  double(GetCompSelectBy()),
                                 double(GetShowExcelFlag()), double(GetUserAuthority())};
  };
  EXPECT_EQ(all(), (std::array<double, 6>{0, 273.15, 128, 0, 0, 3}));
  EXPECT_STREQ(GetSDBCFRValFormat(), "%g");
  EXPECT_EQ(GetZP3SystemPathPrefix(), GetSystemPathPrefix());
  CWinApp app("App");
  app.SetProfileFile(folder.Name("app.ini"));
  EXPECT_EQ(all(), (std::array<double, 6>{1, 1, 0x030201, 4, 1, 4}));
  EXPECT_STREQ(GetSDBCFRValFormat(), "%.2f");
  EXPECT_STREQ(GetZP3SystemPathPrefix(), "C:\\old\\");
  zp::ForgetCachedSettings();
}

TEST_F(Preferences, ReportFileFallsBackWithoutWriting)
{
  CString text;
  GetDefASCIIFile(text);
  EXPECT_STREQ(text, "Report.Dmp");
  GetDefAcctCode(text);
  EXPECT_STREQ(text, "");
  EXPECT_FALSE(m_Folder.Has("app.ini"));
  SetDefASCIIFile("mine.txt");
  GetDefASCIIFile(text);
  EXPECT_STREQ(text, "mine.txt");
}

TEST_F(Preferences, ColoursAreReadOnceAsRedGreenBlue)
{
  using Row = std::tuple<char const *, unsigned long>;
  for (auto const & [written, colour] : {Row{"", 0x80},
                                         {"1, 2, 3", 0x030201},
                                         {"0, 0, 0", 0},
                                         {"256,-1,\t+7x", 0x07FF00},
                                         {"1, 2", 0x80},
                                         {"1 ,2,3", 0x80},
                                         {"red", 0x80}}) {
    zp::ForgetCachedSettings();
    m_App.WriteProfileString("Misc", "EULabels", written);
    EXPECT_EQ(GetEULabelColor(), colour) << written;
    m_App.WriteProfileString("Misc", "EULabels", "9, 9, 9");
    EXPECT_EQ(GetEULabelColor(), colour) << written;
  }
}

TEST_F(Preferences, BaseValuesAreReadAgainWhileTheyAreZero)
{
  m_App.WriteProfileString("Misc", "psiBase", "0");
  EXPECT_EQ(GetPsiBase(), 0.0);
  m_App.WriteProfileString("Misc", "psiBase", "14.7 psi");
  EXPECT_EQ(GetPsiBase(), 14.7);
}

TEST_F(Preferences, ShortDateFollowsTheUsersLocale)
{
  setenv("LC_ALL", "C", 1);
  EXPECT_STREQ(GetShortDateFormat(), "mm/dd/yy");
  RunInLocale("de_DE", "UTF-8", [] {
    EXPECT_STREQ(GetShortDateFormat(), "mm/dd/yy");
    FlushSysINIValues();
    EXPECT_STREQ(GetShortDateFormat(), "dd.MM.yyyy");
  });
}

TEST_F(Preferences, RightsGoByTheExactName)
{
  char const marks[] = "*cJWMPS#";
  char const * const names[] = {"None", "Case", "Job", "User", "Mgr", "PoolMgr", "SysMax", "ProgDog"};
  for (int level = 0; level < 8; ++level) {
    EXPECT_EQ(GetSysAuthority(names[level]), level);
    EXPECT_EQ(GetAuthorityAppendChar(level), marks[level]);
  }
  EXPECT_EQ(GetAuthorityAppendChar(-1), '\0');
  EXPECT_EQ(GetAuthorityAppendChar(8), '\0');
  using Row = std::tuple<char const *, int>;
  for (auto const & [text, rank] : {Row{nullptr, 3}, {"mgr", 3}, {"None", 0}, {"Mgr", 4}}) {
    if (rank != 4) zp::ForgetCachedSettings();  // level 0 isn't kept
    m_App.WriteProfileString("Authorization", "Authority", text);
    EXPECT_EQ(GetUserAuthority(), rank);
  }
  EXPECT_EQ(SetLoadAuthority(6), 0);
  EXPECT_EQ(SetLoadAuthority(0), 6);
  EXPECT_EQ(GetLoadAuthority(), 0);
}
