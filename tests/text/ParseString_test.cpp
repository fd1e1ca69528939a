// The tokenizer: taking tokens, their kinds, quoted strings, lists, and the values of numeric lines.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdlib>
#include <random>
#include <tuple>
#include <vector>

#include <zpbase/text.h>

#include "tests/support/OwnProcess.h"

namespace {

using Texts = std::vector<std::string>;

Texts textsOf(CStringArray const & array)
{
  Texts texts;
  for (int i = 0; i < array.GetSize(); ++i) texts.emplace_back(array[i].View());
  return texts;
}

std::vector<int> valuesOf(CUIntArray const & array)
{
  std::vector<int> values;
  for (int i = 0; i < array.GetSize(); ++i) values.push_back(static_cast<int>(array[i]));
  return values;
}

ParseString withDelimeters(char const * text, char const * delimiters, int limit = -1)
{
  ParseString line(text);
  line.SetTokenDelimeters(delimiters);
  line.SetDelimeterLimit(limit);
  return line;
}

TEST(ParseString, TokensAreClassifiedByTheirCharacters)
{
  using Row = std::tuple<char const *, int>;
  Row const rows[] = {{"12", 2},    {"-12", 2}, {"+12", 2}, {"-", 2},   {"+", 2},     {"1.5", 3}, {"1e5", 3},   {"1E-5", 3},
                      {"1.5.2", 3}, {"E", 3},   {".", 3},   {"++", 3},  {"1-2.5", 3}, {"3-7", 6}, {"--5", 6},   {"3-7-9", 4},
                      {"12a", 4},   {"1,5", 4}, {"x", 4},   {"\"a", 5}, {"1\"", 4},   {"\n", 1},  {"\r\"x", 5}, {"", 0}};
  for (auto const & [token, type] : rows) {
    ParseString line(token);
    EXPECT_EQ(line.GetNextTokenType(), type) << token;
    EXPECT_EQ(line.GetNextTokenType(), type) << token;
  }
  EXPECT_EQ(ParseString(CString("1\0002", 3)).GetNextTokenType(), textToken);
}

TEST(ParseString, DelimetersAtTheEndMakeALastEmptyToken)
{
  ParseString line("  a  ");
  CString token;
  EXPECT_EQ(line.GetNextString(token), 1);
  EXPECT_EQ(token, "a");
  EXPECT_EQ(line.GetNextString(token), 0);
  EXPECT_EQ(line.GetNextString(token), -1);
  EXPECT_EQ(token, "");
  EXPECT_EQ(line.DiscardNextToken(), 0);
  EXPECT_EQ(line.GetNext_Double(), 0.0);
}

TEST(ParseString, TheLimitSaysHowManyDelimetersBelongTogether)
{
  using Row = std::tuple<char const *, int, Texts>;
  // clang-format off
  Row const rows[] = {
      {"a,,b", -1, {"a", "b"}}, {"a,,b", 1, {"a", "", "b"}}, {"a,,,b", 2, {"a", "", "b"}}, {"a,,b", 0, {"a", "", "b"}},
      {",a", 1, {"a"}}, {"a,", 1, {"a", ""}}, {",,,", 1, {"", "", ""}}, {",,,", -5, {""}}, {"", -1, {}},
      {"x,\"a,b\"y", 1, {"x", "a,b", "y"}}};
  // clang-format on
  for (auto const & [text, limit, words] : rows) {
    ParseString line = withDelimeters(text, ",", limit);
    CStringArray tokens;
    EXPECT_EQ(line.BuildTokenArray(tokens), static_cast<int>(words.size())) << text;
    EXPECT_EQ(textsOf(tokens), words) << text << " with " << limit;
  }
}

TEST(ParseString, NumbersWrapAndLettersReadAsZero)
{
  ParseString line("12 4294967295 x 1e3 7abc\t-2.5 0x10");
  EXPECT_EQ(line.GetNextInt(), 12);
  EXPECT_EQ(line.GetNextLong(), -1);
  EXPECT_EQ(line.GetNextLong(), 0);
  EXPECT_EQ(line.GetNextInt(), 1);
  EXPECT_EQ(line.GetNextFloat(), 7.0F);
  EXPECT_EQ(line.GetNext_Double(), -2.5);
  EXPECT_EQ(line.GetNext_Double(), 16.0);
  line.RestoreToken();
  line.RestoreToken();
  EXPECT_EQ(line.GetNext_Double(), 16.0);
}

struct LineReader : ParseString {
  using ParseString::SetLine;
};

TEST(ParseString, BeginsALineWithoutATokenToRestore)
{
  LineReader line;
  line.SetLine("1 2");
  EXPECT_EQ(line.GetNextInt() + line.GetNextInt(), 3);
  line.SetLine("3 4");
  line.RestoreToken();
  EXPECT_EQ(line.GetNextInt() + line.GetNextInt(), 7);
  line.ResetOffset();
  line.RestoreToken();
  EXPECT_EQ(line.GetNextInt(), 3);
}

double strtodInC(char const * text)
{
  PlainLocale const plain;
  return std::strtod(text, nullptr);
}

// A number must not be looked for beyond its token, whatever the delimiters are.
TEST(ParseString, DoublesAreThoseOfTheirTokens)
{
  std::mt19937 random(3);
  std::string const letters = "0123456789.eE+-xinfa \t\n,;_()";
  char const * const sets[] = {" \t", ",", "\t", "e", "5", "-", ".", "\n", "x ", ""};
  for (int i = 0; i < 60000; ++i) {
    std::string text;
    for (size_t length = random() % 20; text.size() < length;) text += letters[random() % letters.size()];
    char const * const delimiters = sets[random() % 10];
    ParseString byToken = withDelimeters(text.c_str(), delimiters, random() % 2 != 0 ? -1 : 1);
    ParseString byValue = byToken;
    ParseString byLine = byToken;
    std::array<double, 30> values;
    values.fill(-7.0);
    size_t count = static_cast<size_t>(byLine.GetNext_Doubles(values.data(), static_cast<int>(random() % 8)));
    count += static_cast<size_t>(byLine.GetNext_Doubles(values.data() + count, 22));
    ASSERT_EQ(byLine.GetNext_Doubles(values.data() + count, 1), 0);
    ASSERT_EQ(values[count], -7.0);
    size_t place = 0;
    CString token;
    while (byToken.GetNextString(token) != -1) {
      uint64_t const expected = std::bit_cast<uint64_t>(strtodInC(token));
      ASSERT_EQ(std::bit_cast<uint64_t>(byValue.GetNext_Double()), expected) << '"' << text << "\" cut at '" << delimiters << "'";
      ASSERT_LT(place, count);
      ASSERT_EQ(std::bit_cast<uint64_t>(values[place++]), expected) << '"' << text << "\" cut at '" << delimiters << "'";
      ASSERT_STREQ(byValue, byToken) << text;
      ParseString valueStart = byValue;
      ParseString tokenStart = byToken;
      valueStart.RestoreToken();
      tokenStart.RestoreToken();
      ASSERT_STREQ(valueStart, tokenStart) << text;
    }
    ASSERT_EQ(place, count);
    byValue.RestoreToken();
    byLine.RestoreToken();
    ASSERT_STREQ(byLine, byValue) << text;
  }
}

TEST(ParseString, CopiesCarryTheirPlaceAndDelimeters)
{
  ParseString line = withDelimeters("a;b,c", ";", 1);
  line.AddTokenDelimeter(',');
  line.AddTokenDelimeters("x");
  line.DiscardNextToken();
  ParseString copy;
  copy = line;
  CString token;
  EXPECT_EQ(copy.GetNextString(token), 1);
  EXPECT_EQ(token, "b");
  copy.GetTokenDelimeters(token);
  EXPECT_EQ(token, ";,x");
  EXPECT_STREQ(line, ";b,c");
  EXPECT_EQ(CString(static_cast<CString const &>(line)), "a;b,c");
  copy = "z";
  EXPECT_STREQ(copy, "");
  EXPECT_EQ(copy.GetRemainingString(token), -2);
  EXPECT_EQ(copy.GetCurChar(), 0);
  copy.ResetOffset();
  EXPECT_STREQ(copy, "z");
}

TEST(ParseString, MovesStayInsideTheText)
{
  ParseString line("ab");
  EXPECT_EQ(line.DiscardChars(3), 0);
  EXPECT_EQ(line.DiscardChars(-1), 0);
  EXPECT_EQ(line.DiscardChars(INT32_MAX), 0);
  EXPECT_EQ(line.GetCurChar(), 'a');
  EXPECT_EQ(line.DiscardChars(2), 1);
  EXPECT_EQ(line.GetNextTokenType(), noToken);
}

TEST(ParseString, QuotedStringsKeepEscapesAndExpandTabsAtTheirColumn)
{
  struct Row {
    char const * text;
    int length;
    char const * quoted;  // "old" before
    char const * rest;
  };
  // clang-format off
  Row const rows[] = {
      {"abc \"d\\\"e\" f", 4, "d\\\"e", " f"}, {"x\"open", 4, "open", ""}, {"none", 0, "old", ""}, {"\"\" y", 0, "", " y"},
      {"\"a\\\\\"b\"c", 5, "a\\\\\"b", "c"}, {"12345 \"\tz\" ", 2, " z", " "}, {"123456 \"\tz\"", 9, "        z", ""},
      {"\\\"a\"", 1, "a", ""}, {"", 0, "", ""}};
  // clang-format on
  for (Row const & row : rows) {
    ParseString line(row.text);
    CString quoted("old");
    EXPECT_EQ(line.GetNextQuotedString(quoted), row.length) << row.text;
    EXPECT_EQ(quoted, row.quoted) << row.text;
    EXPECT_STREQ(line, row.rest) << row.text;
  }
}

TEST(ParseString, ListsOfNumbersAndRangesFallBackToTheDefaultDelimeters)
{
  using Row = std::tuple<char const *, char const *, std::vector<int>>;
  // clang-format off
  Row const rows[] = {
      {"1 3-5 12", " ", {1, 3, 4, 5, 12}}, {"1 - 3 , 5", " ", {1, 2, 3, 5}}, {"1  -   3", " ", {1, 2, 3}},
      {"1,3-4,7", ",", {1, 3, 4, 7}}, {"1,3 -4,7", ",", {}}, {"2.5 x \"1 2\" 9", " ", {9}}, {"4294967297", " ", {1}},
      {"", " ", {}}};
  // clang-format on
  for (auto const & [written, delimiters, values] : rows) {
    ParseString line = withDelimeters(written, delimiters);
    GPUIntArray out(77, 78);
    EXPECT_EQ(line.GetUIntArray(out, 0, GPUIntArray()), static_cast<int>(values.size())) << written;
    EXPECT_EQ(valuesOf(out), values) << written;
  }
  ParseString line("3 1-4 2");
  GPUIntArray out;
  EXPECT_EQ(line.GetUIntArray(out, GPUIntArray::addSorted | GPUIntArray::addUnique, GPUIntArray(2, 4)), 3);
  EXPECT_EQ(valuesOf(out), (std::vector<int>{2, 3, 4}));
}

TEST(ParseString, ValuesOfNumericLinesHaveCountsAndPositions)
{
  struct Row {
    char const * text;
    int count;
    std::vector<int> starts;
    std::vector<int> ends;
    int limit = -1;
  };
  // clang-format off
  Row const rows[] = {
      {"1  2", 3, {0, 2, 4}, {0, 3, 3}, 1}, {"1   2", 3, {0, 3, 5}, {0, 4, 4}, 2},
      {"10 20", 2, {0, 3}, {1, 4}}, {"1 ", 2, {0, 2}, {0, 1}}, {"1 2 ", 3, {0, 2, 4}, {0, 2, 3}}, {"", 0, {}, {}},
      {"1 2 x", 0, {}, {}}, {"1 3-7", 0, {}, {}}, {"  ", 1, {2}, {1}}, {"\t-1.5e3", 1, {1}, {6}}};
  // clang-format on
  for (Row const & row : rows) {
    ParseString line(row.text);
    line.SetDelimeterLimit(row.limit);
    CUIntArray starts;
    CUIntArray ends;
    starts.SetSize(9);
    EXPECT_EQ(line.GetValueCount(), row.count) << row.text;
    EXPECT_EQ(line.GetValuePositions(starts, ends), row.count != 0) << row.text;
    EXPECT_EQ(valuesOf(starts), row.starts) << row.text;
    EXPECT_EQ(valuesOf(ends), row.ends) << row.text;
    EXPECT_STREQ(line, row.text);
  }
}

TEST(ParseString, ValueTextsAreCutAtPositionsOrAtEachDelimeter)
{
  CStringArray out;
  ParseString line = withDelimeters("1,,2", ",");
  EXPECT_EQ(line.GetValueStrings(out, 3), 1);
  EXPECT_EQ(textsOf(out), (Texts{"1", "", "2"}));
  EXPECT_EQ(line.GetValueStrings(out, 4), 1);
  EXPECT_EQ(textsOf(out), (Texts{"1", "", "2", ""}));
  line.DiscardNextToken();
  EXPECT_EQ(line.GetValueStrings(out, 1), 1);
  EXPECT_EQ(textsOf(out), (Texts{"1"}));
  EXPECT_EQ(line.GetValueStrings(out, -1), 0);
  EXPECT_EQ(out.GetSize(), 0);

  CUIntArray starts;
  CUIntArray ends;
  for (UINT const start : {0U, 1U, 3U, 9U, 2U}) starts.Add(start);
  for (UINT const end : {0U, 2U, 100U, 12U, 1U}) ends.Add(end);
  EXPECT_EQ(line.GetValueStrings(out, starts, ends), 1);
  EXPECT_EQ(textsOf(out), (Texts{"1", ",,", "2", "", ""}));
  EXPECT_EQ(ParseString("word").GetValueStrings(out, starts, ends), 0);
  EXPECT_EQ(out.GetSize(), 0);
}

}  // namespace
