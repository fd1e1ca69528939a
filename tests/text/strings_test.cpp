// Functions on strings.

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include <zpbase/text.h>

namespace {

using Texts = std::vector<std::string>;

TEST(Strings, ChoppingCutsAtWholeLineEndsOnly)
{
  using Row = std::tuple<char const *, int, Texts>;
  // clang-format off
  Row const rows[] = {
      {"a\r\nb", 1, {"a", "b"}}, {"a\r\n\r\nbcd\r\n", 3, {"a", "", "bcd"}}, {"", 0, {}}, {"\r\n", 0, {""}},
      {"a\r\r\nb", 5, {"a\r\r\nb"}}, {"a\rb\nc", 5, {"a\rb\nc"}}, {"a\r", 2, {"a\r"}}, {"\r\r\r\nx", 2, {"\r\r", "x"}}};
  // clang-format on
  for (auto const & [text, longest, parts] : rows) {
    CStringArray lines;
    lines.Add("kept");
    EXPECT_EQ(ChopString(lines, text), longest) << text;
    ASSERT_EQ(lines.GetSize(), static_cast<int>(parts.size()) + 1) << text;
    for (size_t i = 0; i < parts.size(); ++i) EXPECT_EQ(lines[static_cast<int>(i) + 1], parts[i].c_str());
  }
}

TEST(Strings, TabsReachTheNextStop)
{
  using Row = std::tuple<char const *, int, unsigned int, char const *>;
  Row const rows[] = {{"a\tb", 8, 1, "a       b"}, {"12345678\t|", 8, 1, "12345678        |"},
                      {"\t\tx", 2, 2, "    x"},    {"none", 8, 0, "none"},
                      {"a\tb", 0, 1, "a b"},       {"", 8, 0, ""}};
  for (auto const & [written, width, tabs, expanded] : rows) {
    CString text(written);
    EXPECT_EQ(ExpandTabs(text, width), tabs) << written;
    EXPECT_EQ(text, expanded);
  }
  CString wide(std::string(100, '\t'));
  ExpandTabs(wide, 8);
  EXPECT_EQ(wide.GetLength(), 800);
}

TEST(Strings, GroupsCountFromEitherEnd)
{
  struct Row {
    char const * text;
    int group;
    char const * spaced;
  };
  Row const rows[] = {{"abcdef", 2, "ab cd ef"},    {"abcdefg", 3, "abc def g"}, {"abc", 9, "abc"}, {"", 2, ""},
                      {"abcdefg", -3, "a bcd efg"}, {"abcdef", -3, " abc def"},  {"ab", -3, "ab"},  {"abc", 0, "abc"},
                      {"ab", INT32_MIN, "ab"}};
  for (Row const & row : rows) {
    CString text(row.text);
    InsertSpaces(text, row.group);
    EXPECT_EQ(text, row.spaced) << row.group;
  }
}

TEST(Strings, BlanksComeAndGo)
{
  CString text(" a\t b ");
  EXPECT_EQ(RemoveSpaces(text), 3);
  EXPECT_EQ(text, "a\tb");
  EXPECT_EQ(PadString(text, 2), 0);
  EXPECT_EQ(PadString(text, 3), 1);
  EXPECT_EQ(text, "a\tb");
  EXPECT_EQ(PadString(text, 5), 1);
  EXPECT_EQ(text, "a\tb  ");
}

TEST(Strings, DigitsAreNeitherLettersNorSigns)
{
  for (char const * c = "059\xB2"; *c != 0; ++c) EXPECT_EQ(IsCharDigit(*c), 1) << *c;
  for (char const * c = "/:aZ_ \xE4\xAA\x80\xD7"; *c != 0; ++c) EXPECT_EQ(IsCharDigit(*c), 0) << *c;
  EXPECT_EQ(IsCharDigit(47) + IsCharDigit(58) + IsCharDigit(0xB2U) + IsCharDigit(0x130), 0);
  EXPECT_EQ(IsCharDigit(48) + IsCharDigit(57U), 2);
}

TEST(Strings, TheFirstEqualElementIsFound)
{
  CStringArray array;
  for (char const * text : {"a", "B", "b", "b"}) array.Add(text);
  EXPECT_EQ(FindString(array, "b"), 2);
  EXPECT_EQ(FindString(array, "A"), -1);
}

}  // namespace
