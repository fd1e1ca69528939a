// Registered messages, unit labels, reference constants and the table of strings.

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <tuple>

#include <zpbase/config.h>
#include <zpbase/platform/messages.h>

TEST(AppMessages, AreRegisteredUnderNameAndGuid)
{
  using Row = std::tuple<char const *, char const *>;
  Row const rows[] = {{"UWM_DOQUICKSHEET", "CE0E9F84-DD5B-4706-8BC0-2CF8EF4EA38A"},
                      {"UWM_PUBLISH_UNITOP_SYMBOL", "CE0E9F84-DD5B-4706-8BC0-2CF8EF4EA38A"},
                      {"UMW_IS_VBA_PROJ_DIRTY", "E5EAFB43-DCC5-4e95-A0C6-8C464C5DA154"},
                      {"UWM_GET_FEED_LOCATIONS", "89890601-D4D8-4894-8853-94AFEF8CC8E8"},
                      {"UWM_GET_LAYER_NAME", "89890601-D4D8-4894-8853-94AFEF8CC8E8"},
                      {"UWM_GET_PRIMITIVE_DATA", "8B29D61E-5006-4058-9AAB-7A68654AE877"}};
  std::set<unsigned int> ids;
  for (auto const & [name, guid] : rows) {
    unsigned int const id = RegisterWindowMessageA((std::string(name) + "-{" + guid + "}").c_str());
    EXPECT_EQ(GetAppMessage(name), id) << name;
    EXPECT_TRUE(ids.insert(id).second) << name;
  }
  EXPECT_EQ(GetAppMessage("UWM_IS_VBA_PROJ_DIRTY"), 0u);
  EXPECT_EQ(GetAppMessage(nullptr), 0u);
}

TEST(RegisterWindowMessage, GivesOneIdForOneString)
{
  EXPECT_NE(RegisterWindowMessageA("One"), RegisterWindowMessageA("one"));
  EXPECT_EQ(RegisterWindowMessageA(""), 0u);
  EXPECT_EQ(RegisterWindowMessageA(std::string(256, 'x').c_str()), 0u);
}

TEST(RegisterWindowMessage, GivesIdsThatFollowFromTheStringAlone)
{
  // The upper 14 bits of the 64-bit FNV-1a hash, computed apart from this code.
  EXPECT_EQ(GetAppMessage("UWM_DOQUICKSHEET"), 0xF9BDu);
  EXPECT_EQ(GetAppMessage("UWM_PUBLISH_UNITOP_SYMBOL"), 0xDF5Du);
  std::set<unsigned int> ids;
  for (int round = 0; round < 2; ++round)
    for (int i = 0; i < 1000; ++i) ids.insert(RegisterWindowMessageA(("string " + std::to_string(i)).c_str()));
  EXPECT_EQ(ids.size(), 1000u) << "strings of one hash have ids of their own";
  EXPECT_GE(*ids.begin(), 0xC000u);
  EXPECT_LE(*ids.rbegin(), 0xFFFFu);
}

TEST(UnitLabels, StandAtTheirNumbers)
{
  EXPECT_EQ(GetEULabelCount(), 44);
  EXPECT_STREQ(GetEULabel(0), "MOLE");
  EXPECT_STREQ(GetEULabel(3), "PRES");
  EXPECT_STREQ(GetEULabel(20), "DMOMENT");
  EXPECT_STREQ(GetEULabel(43), "DIFF");
  EXPECT_EQ(GetEULabel(44), nullptr);
  EXPECT_EQ(GetEULabel(-1), nullptr);
}

TEST(ReferenceConstants, HaveTheirPrecision)
{
  EXPECT_EQ(GetSqrtSingleEpsilon(), static_cast<double>(std::sqrt(1.1920929e-07f)));
  EXPECT_EQ(GetSqrtDoubleEpsilon(), std::ldexp(1.0, -26));
  EXPECT_EQ(GetKelvinAt25C(), 273.15 + 25);
  EXPECT_EQ(GetRankineAt60F(), 459.67 + 60);
  EXPECT_EQ(GetRankineAt212F() - GetRankineAt32F(), (459.67 + 212) - (459.67 + 32));
  EXPECT_EQ(GetKelvinAt100C() - GetKelvinAt0C(), (273.15 + 100) - 273.15);
}

TEST(ResourceStrings, AreFoundByNumberInAFilledTable)
{
  EXPECT_STREQ(GetStringFromResourceID(5), "");
  EXPECT_EQ(ResStringsAreLoaded(), 0);
  ResString const entries[] = {{20, "twenty"}, {0xFFFFFFFF, "last"}, {10, "ten"}, {20, "other"}};
  LoadResStrings(entries, 4);
  EXPECT_EQ(ResStringsAreLoaded(), 1);
  using Row = std::tuple<unsigned int, char const *>;
  for (auto const & [id, text] : {Row{10, "ten"}, {20, "twenty"}, {0xFFFFFFFF, "last"}, {15, "NOT FOUND"}, {0, "NOT FOUND"}})
    EXPECT_STREQ(GetStringFromResourceID(id), text);
  UnloadResStrings();
  UnloadResStrings();
  EXPECT_STREQ(GetStringFromResourceID(10), "");
  EXPECT_EQ(ResStringsAreLoaded(), 0);
}
