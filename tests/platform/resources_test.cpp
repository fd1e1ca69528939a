// Texts and accelerators by number: what a file of texts comes out as, and the order of those that are asked.

#include <gtest/gtest.h>

#include <zpbase/platform/input.h>
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

TEST(Resources, OfTheLastModuleComeFirst)
{
  static constexpr AcceleratorTable table{7, {}};
  zp::FindAccelerators const keys = [](UINT id) -> AcceleratorTable const * { return id == 7 ? &table : nullptr; };
  for (bool const isThere : {true, false}) {
    if (isThere) zp::RegisterAcceleratorModule(keys);
    EXPECT_EQ(LoadAcceleratorsA(nullptr, MAKEINTRESOURCEA(7)), isThere ? &table : nullptr);
    HACCEL const own = LoadAcceleratorsA(nullptr, MAKEINTRESOURCEA(16));
    ASSERT_TRUE(own != nullptr && own->keys.size() == 1);
    EXPECT_TRUE(own->id == 16 && own->keys[0].key == VK_ESCAPE && own->keys[0].cmd == 0x3E5);
    EXPECT_EQ(LoadAcceleratorsA(nullptr, "name"), nullptr);
    zp::UnregisterAcceleratorModule(keys);
  }
}
