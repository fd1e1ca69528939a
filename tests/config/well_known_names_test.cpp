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
  using Name = std::tuple<char const *, char const *>;
  Name const names[] = {
#define ZP_NAME(accessor, text) {#accessor, accessor()},
#include <zpbase/well_known_names.h>
  };
  std::map<std::string, std::string> owners;
  for (auto const & [function, written] : names) {
    EXPECT_STRNE(written, "") << function;
    if (!std::string_view(function).ends_with("Key")) continue;
    // A profile file has keys as "key=value" and sections in brackets, a hive both in quotes.
    EXPECT_EQ(std::string_view(written).find_first_of("=[];\"\\\r\n"), std::string_view::npos) << function;
    auto const [place, isNew] = owners.emplace(zp::ToLower(written), function);
    EXPECT_TRUE(isNew) << function << " has the text of " << place->second;
  }
}
