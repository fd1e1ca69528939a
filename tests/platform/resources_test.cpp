// Texts by number: what a file of them comes out as, and the order of those that are asked.

#include <gtest/gtest.h>

#include <zpbase/platform/resources.h>

#include "platform/resources/resources_internal.h"

namespace zp {
extern ResourceText const sampleTexts[];
extern unsigned int const sampleTextsCount;
}  // namespace zp

TEST(Resources, ComeOutOfTheirFileAsTheyStand)
{
  char const * const expected[] = {"an [open bracket", "one; two", "C:\\new\\table]", "\"quoted\" ${name} $<1> @x@",
                                   "first\r\nsecond",  "last"};
  ASSERT_EQ(zp::sampleTextsCount, std::size(expected));
  for (unsigned int i = 0; i < zp::sampleTextsCount; ++i) {
    EXPECT_EQ(zp::sampleTexts[i].id, i + 1);
    EXPECT_STREQ(zp::sampleTexts[i].text, expected[i]);
  }
}

TEST(Resources, OfTheLibraryStandBehindThoseOfTheApplication)
{
  EXPECT_EQ(zp::FormatResource(348, {"book"}), "Unable to close Excel workBook\r\n>> book");
  EXPECT_EQ(zp::FormatResource(349, {"book"}), "349: book");
  zp::FindResourceText const own = [](UINT id) { return id == 348 ? "%s stays open" : nullptr; };
  zp::RegisterResourceModule(own);
  EXPECT_EQ(zp::FormatResource(348, {"book"}), "book stays open");
  zp::UnregisterResourceModule(own);
  CString text;
  EXPECT_EQ(text.LoadString(339), 35);
  EXPECT_EQ(text, "Unable to select Excel chart\r\n>> %s");
}
