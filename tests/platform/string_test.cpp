// CString: pieces, searches and changes, with every bound outside the text.

#include <gtest/gtest.h>

#include <algorithm>

#include <zpbase/platform/string.h>

namespace {

TEST(CString, CutsBoundsToTheText)
{
  CString const text("abcab");
  struct Row {
    int count;
    char const * mid;
    char const * left;
    char const * right;
    int find;
    int without;  // the length less one character there
  };
  Row const rows[] = {{-1, "abcab", "", "", -1, 4},    {0, "abcab", "", "", 0, 4},       {1, "bcab", "a", "b", 3, 4},
                      {4, "b", "abca", "bcab", -1, 4}, {5, "", "abcab", "abcab", -1, 5}, {9, "", "abcab", "abcab", -1, 5}};
  for (Row const & row : rows) {
    CString changed(text);
    EXPECT_EQ(text.Mid(row.count), row.mid) << row.count;
    EXPECT_EQ(text.Left(row.count), row.left) << row.count;
    EXPECT_EQ(text.Right(row.count), row.right) << row.count;
    EXPECT_EQ(text.Find('a', row.count), row.find) << row.count;
    EXPECT_EQ(text.Find("ab", row.count), row.find) << row.count;
    EXPECT_EQ(changed.Delete(row.count), row.without) << row.count;
    EXPECT_EQ(changed.Insert(row.count, "xy"), row.without + 2) << row.count;
  }
  EXPECT_EQ(text.Mid(1, 2) + '|' + text.Mid(3, 9) + '|' + text.Mid(2, -1), "bc|ab|");
  EXPECT_EQ(text.ReverseFind('a') * 10 + text.FindOneOf("cb"), 31);
  EXPECT_EQ(text.ReverseFind('x') + text.FindOneOf("xyz") + text.FindOneOf(nullptr), -3);
}

TEST(CString, ChangesItsTextInPlace)
{
  CString text(" \tA\xC4z \r\n");
  EXPECT_EQ(CString(text).TrimLeft(), "A\xC4z \r\n");
  EXPECT_EQ(text.TrimLeft().TrimRight().MakeUpper(), "A\xC4Z");
  EXPECT_EQ(text.MakeLower(), "a\xC4z");
  EXPECT_EQ(text.Insert(1, "--") * 10 + text.Delete(0, 2), 53);
  EXPECT_EQ(text, "-\xC4z");
  text = "b" + (text = 'c') + "d" + CString("e") + 'f';
  text += static_cast<char const *>(nullptr);
  text.Format("%s-%d", text.GetString(), -7);
  EXPECT_EQ(text, "bcdef--7");
  std::copy_n("xy", 3, text.GetBuffer(2));
  text.ReleaseBuffer();
  EXPECT_EQ(text + CString(std::string_view("")), "xy");
  text.GetBuffer(4)[3] = '!';
  text.ReleaseBuffer(4);
  EXPECT_EQ(text.View(), std::string_view("xy\0!", 4));
  EXPECT_TRUE((text = static_cast<char const *>(nullptr)).IsEmpty());
}

TEST(CString, ComparesByUnsignedBytes)
{
  EXPECT_LT(CString("a").Compare("\xE4"), 0);
  EXPECT_GT(CString("ab").Compare("a"), 0);
  EXPECT_EQ(CString("").Compare(nullptr) | CString("\xC4 Z").CompareNoCase("\xC4 z"), 0);
  EXPECT_NE(CString("\xC4").CompareNoCase("\xE4"), 0);
  EXPECT_LT(CString("A").CompareNoCase("b"), 0);
  EXPECT_TRUE(CString("A") < CString("B") && !(CString("B") < CString("B")));
}

}  // namespace
