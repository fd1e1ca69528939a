// The preferences one by one, in the table that a new one joins: what each gives unset and set, how long it is kept, and that
// header, table and page know the same ones.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <type_traits>

#include <zpbase/config.h>
#include <zpbase/platform/application.h>

#include "tests/support/TempFolder.h"

namespace {

enum class Kept { Never, UntilFlushed, UntilForgotten };

struct Preference {
  char const * name;
  std::string (*read)();
  char const * section;
  char const * key;
  char const * unset;
  char const * stored;  // and what it reads as
  char const * value;
  Kept kept;
};

template <auto reader>
std::string shown()
{
  CString text;
  if constexpr (std::is_invocable_v<decltype(reader), CString &>) {
    reader(text);
  } else if constexpr (std::is_same_v<decltype(reader()), CString const &>) {
    text = reader();
  } else {
    text.Format("%.10g", static_cast<double>(reader()));
  }
  return text.GetString();
}

#define ZP_READER(function) #function, &shown < &function>

// clang-format off
Preference const preferences[] = {
    {ZP_READER(GetDefAcctFlag),        "Misc",          "AcctFlag",     "0",          "Yes",     "1",      Kept::Never},
    {ZP_READER(GetDefAcctCode),        "Misc",          "AcctCode",     "",           "C7",      "C7",     Kept::Never},
    {ZP_READER(GetDefASCIIFlag),       "Misc",          "RptASCII",     "0",          "Yes",     "1",      Kept::Never},
    {ZP_READER(GetDefASCIIFile),       "Misc",          "ASCIIFile",    "Report.Dmp", "a.txt",   "a.txt",  Kept::Never},
    {ZP_READER(GetDefExcelFlag),       "ExcelSettings", "RptExcel",     "0",          "Yes",     "1",      Kept::Never},
    {ZP_READER(GetSaveAfterRunFlag),   "ExcelSettings", "SaveAfterRun", "1",          "x",       "0",      Kept::Never},
    {ZP_READER(GetShowExcelFlag),      "ExcelSettings", "ShowExcel",    "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(GetIsVBServerFlag),     "ExcelSettings", "IsVBServer",   "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(AllowBeep),             "Misc",          "Beep",         "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(AllowEnter),            "Misc",          "Enter",        "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(AllowEsc),              "Misc",          "Esc",          "1",          "No",      "0",      Kept::UntilForgotten},
    {ZP_READER(UseKeshCalcSequence),   "Misc",          "OldCalc",      "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(CalcAccordingToKesh),   "Misc",          "MDLSw",        "0",          "Yes",     "1",      Kept::UntilForgotten},
    {ZP_READER(FlushMsgWin),           "Misc",          "FlushMsgWn",   "1",          "No",      "0",      Kept::UntilForgotten},
    {ZP_READER(GetCompSelectBy),       "Misc",          "CompSelectBy", "0",          "4",       "4",      Kept::UntilForgotten},
    {ZP_READER(GetEULabelColor),       "Misc",          "EULabels",     "128",        "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetRequiredLabelColor), "Misc",          "ReqLabels",    "255",        "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetReadOnlyFgColor),    "Misc",          "ROText",       "8388608",    "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetFocusFgColor),       "Misc",          "FocusFg",      "128",        "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetFocusBkColor),       "Misc",          "FocusBk",      "65535",      "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetUserFgColor),        "Misc",          "UserFg",       "255",        "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetUserBkColor),        "Misc",          "UserBk",       "16777215",   "1, 2, 3", "197121", Kept::UntilForgotten},
    {ZP_READER(GetKBase),              "Misc",          "KBase",        "273.15",     "1.5",     "1.5",    Kept::UntilForgotten},
    {ZP_READER(GetRBase),              "Misc",          "RBase",        "459.67",     "1.5",     "1.5",    Kept::UntilForgotten},
    {ZP_READER(GetBarBase),            "Misc",          "barBase",      "1.01325",    "1.5",     "1.5",    Kept::UntilForgotten},
    {ZP_READER(GetKgCm2Base),          "Misc",          "kgcm2Base",    "1.033227",   "1.5",     "1.5",    Kept::UntilForgotten},
    {ZP_READER(GetPsiBase),            "Misc",          "psiBase",      "14.69594",   "1.5",     "1.5",    Kept::UntilForgotten},
    {ZP_READER(GetSDBCFRValFormat),    "Misc",          "CFRVal",       "%g",         "%.2f",    "%.2f",   Kept::UntilFlushed},
    {ZP_READER(GetSDBPropValFormat),   "Misc",          "SDBPVal",      "%g",         "%.3f",    "%.3f",   Kept::UntilFlushed},
    {ZP_READER(GetUserAuthority),      "Authorization", "Authority",    "3",          "Mgr",     "4",      Kept::UntilForgotten},
};
// clang-format on

// Functions of the header's part on preferences that read no setting of the application's.
char const * const others[] = {"GetShortDateFormat", "GetSysAuthority", "GetAuthorityAppendChar", "GetLoadAuthority"};

std::string contentOf(char const * file)
{
  std::ifstream in(std::string(ZP_SOURCE_DIR "/") + file);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::set<std::string> readersIn(std::string const & header)
{
  std::set<std::string> names;
  std::regex const declaration("\nZP_API [^;(]*?(\\w+)\\(");
  for (std::sregex_iterator each(header.begin(), header.end(), declaration), end; each != end; ++each)
    if (std::string const name = (*each)[1]; name.rfind("Set", 0) != 0) names.insert(name);
  return names;
}

}  // namespace

TEST(PreferenceTable, EachHasItsDefaultAndIsKeptAsLongAsItShould)
{
  TempFolder const folder;
  CWinApp app("App");
  app.SetProfileFile(folder.Name("app.ini"));
  for (Preference const & each : preferences) {
    zp::ForgetCachedSettings();
    EXPECT_EQ(each.read(), each.unset) << each.name;
    app.WriteProfileString(each.section, each.key, each.stored);
    EXPECT_EQ(each.read(), each.kept == Kept::Never ? each.value : each.unset) << each.name << ", kept";
    FlushSysINIValues();
    EXPECT_EQ(each.read(), each.kept == Kept::UntilForgotten ? each.unset : each.value) << each.name << ", flushed";
    zp::ForgetCachedSettings();
    EXPECT_EQ(each.read(), each.value) << each.name << ", forgotten";
  }
  zp::ForgetCachedSettings();
}

TEST(PreferenceTable, HasARowForEachReaderThatTheHeaderPublishes)
{
  std::string const header = contentOf("include/config.h");
  size_t const from = header.find("// Preferences:");
  size_t const to = header.find("// Ids of the application messages");
  ASSERT_LT(from, to);
  ASSERT_NE(to, std::string::npos);
  std::set<std::string> known(std::begin(others), std::end(others));
  for (Preference const & each : preferences) known.insert(each.name);
  EXPECT_EQ(readersIn(header.substr(from, to - from)), known);
}

TEST(PreferenceTable, IsThatOfThePage)
{
  std::string const page = contentOf("docs/config.md");
  for (Preference const & each : preferences) {
    std::string const row = std::string("| `") + each.name + "` | " + each.section + " | " + each.key + " | ";
    EXPECT_NE(page.find(row), std::string::npos) << "docs/config.md lacks a row that begins " << row;
  }
}
