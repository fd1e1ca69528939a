// CString: pieces, searches and changes, with every bound outside the text; and characters in their forms.

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include <zpbase/platform/encoding.h>
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

TEST(Encoding, CharactersKeepTheirValueInEveryForm)
{
  using Row = std::tuple<std::string, std::u16string>;
  for (auto const & [narrow, broad] : {Row{"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80", u"\x7F\u0080\u07FF\u0800"},
                                       Row{"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\uD7FF\uE000\uFFFF"},
                                       Row{"\xF0\x90\x80\x80\xF4\x8F\xBF\xBFz", u"\U00010000\U0010FFFFz"}}) {
    std::u16string wide;
    std::string utf8;
    EXPECT_TRUE(zp::Utf8ToWide(narrow, wide));
    EXPECT_EQ(wide, broad);
    zp::AppendUtf8(utf8, broad);
    EXPECT_EQ(utf8, narrow);
  }
  CString text("kept");
  std::u16string wide = u"kept";
  for (char const * damaged : {"\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE2\x82", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
                               "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "a\xFF"})
    EXPECT_FALSE(zp::Utf8ToText(damaged, text) || zp::Utf8ToWide(damaged, wide)) << damaged;
  EXPECT_FALSE(zp::Utf8ToText("\xCE\xB1", text)) << "alpha";
  EXPECT_TRUE(text == "kept" && wide == u"kept");
  char16_t const halves[] = {0xD800, 'x', 0xDC00, 0xDBFF, 0xD83D, 0xDE00, 0xD83D, 0xE000, 0xDBFF};
  std::string utf8;
  zp::AppendUtf8(utf8, {halves, std::size(halves)});
  EXPECT_EQ(utf8, "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD\xEE\x80\x80\xEF\xBF\xBD");
}

TEST(Encoding, EveryByteOfTheCodePageComesBackAndHasItsClass)
{
  std::string letters;
  std::string digits;
  for (int i = 1; i < 256; ++i) {
    std::string const byte(1, static_cast<char>(i));
    CString text;
    std::string narrow;
    EXPECT_TRUE(zp::Utf8ToText(zp::TextToUtf8(byte), text));
    zp::AppendWide(narrow, zp::TextToWide(byte));
    EXPECT_EQ(text.View(), byte);
    EXPECT_EQ(narrow, byte);
    (IsCharAlphaA(byte[0]) ? letters : IsCharAlphaNumericA(byte[0]) ? digits : narrow) += byte;
  }
  EXPECT_EQ(
      zp::TextToUtf8(letters),
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz\u0192\u0160\u0152\u017D\u0161\u0153\u017E\u0178\u00AA\u00B5\u00BA"
      "ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿ");
  EXPECT_EQ(zp::TextToUtf8(digits), "0123456789²³¹");
  EXPECT_EQ(zp::TextToUtf8("\x80\x8D\x99"), "\u20AC\u008D\u2122");
}

}  // namespace
