// The fixed names whose exact bytes callers build on.

#include <gtest/gtest.h>

#include <zpbase/config.h>
#include <string>

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
  struct Row {
    char const * actual;
    char const * expected;
  };
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
  for (Row const & row : rows) EXPECT_STREQ(row.actual, row.expected);
}
