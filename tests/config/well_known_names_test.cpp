// The fixed names whose exact bytes callers build on.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include <zpbase/config.h>
#include <zpbase/platform/ascii.h>

TEST(WellKnownNames, SpecialTextsHaveTheirExactBytes)
{
  EXPECT_EQ(std::string(GetCRLFString()), std::string({0x0D, 0x0A}));
  EXPECT_EQ(std::string(GetRateFileSignature()), std::string("RateFile") + '\x1A');
  EXPECT_EQ(std::string(GetADrivePrefix()), std::string({'A', ':', 0x5C}));
  EXPECT_STREQ(GetTitleSeparator(), ":  ");
  EXPECT_STREQ(GetTruncateSuffix(), " ...");
  EXPECT_EQ(GetTruncateSuffixLength(), 4);
}

TEST(WellKnownNames, EachFamilyKeepsItsForm)
{
  using Row = std::tuple<char const *, char const *>;
  Row const rows[] = {
      {GetRecentFileSectionKey(), "Recent File List"},
      {GetFlushMsgWinKey(), "FlushMsgWn"},
      {GetStrTime0IndexExt(), ".SI0"},
      {GetReportExt(), ".RPT"},
      {GetDummyExt(), ".$_$"},
      {GetPPSortedSynonymIndex(), "GPPSSNDX"},
      {GetTowerModelName(), "INSIDEOUT COLUMN"},
      {GetYesString(), "Yes"},
      {GetVersionNumberFormat(), "%u.%u.%02u"},
      {GetTimeSheetTotalsFormat(), "%-8s Totals: "},
      {GetRegistryCompanyKey(), "Vantrelis"},
  };
  for (auto const & [actual, expected] : rows) EXPECT_STREQ(actual, expected);
}

TEST(WellKnownNames, SettingKeysCanStandInEveryStoreAndApart)
{
  struct Name {
    char const * accessor;
    char const * text;
  };
  Name const names[] = {
#define ZP_NAME(accessor, text) {#accessor, accessor()},
#include <zpbase/well_known_names.h>
  };
  std::map<std::string, std::string> owners;
  for (Name const & name : names) {
    EXPECT_STRNE(name.text, "") << name.accessor;
    if (!std::string_view(name.accessor).ends_with("Key")) continue;
    // A profile file has keys as "key=value" and sections in brackets, a hive both in quotes.
    EXPECT_EQ(std::string_view(name.text).find_first_of("=[];\"\\\r\n"), std::string_view::npos) << name.accessor;
    auto const [place, isNew] = owners.emplace(zp::ToLower(name.text), name.accessor);
    EXPECT_TRUE(isNew) << name.accessor << " has the text of " << place->second;
  }
}
