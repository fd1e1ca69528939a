// Text files: what is a line, going from line to line, and the examination of numeric files.

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/windows.h>
#include <zpbase/text.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

using namespace std::literals;
using Texts = std::vector<std::string>;

class Parsed {
 public:
  explicit Parsed(std::string_view bytes) : m_File((m_Folder.Write("data", bytes), m_Folder.Name("data"))) {}
  ParseFile * operator->() { return &m_File; }
  std::string_view Text() { return static_cast<CString const &>(m_File).View(); }

  Texts Lines(int (ParseFile::*read)())
  {
    Texts lines;
    m_File.GotoLineNumber(1);
    for (int length; (length = (m_File.*read)()) != -1;) {
      EXPECT_EQ(length, m_File.GetLength());
      lines.emplace_back(Text());
    }
    EXPECT_EQ(Text(), "");
    return lines;
  }

 private:
  TempFolder m_Folder;
  ParseFile m_File;
};

TEST(ParseFile, LinesEndAtCarriageReturnsAndZeros)
{
  using Row = std::tuple<std::string_view, Texts, Texts>;
  // clang-format off
  Row const rows[] = {
      {"a\r\nb", {"a", "b"}, {"a", "b"}}, {"a\r\nb\x1A", {"a", "b"}, {"a", "b"}},
      {"a\r\n\r\nb\r\n", {"a", "", "b"}, {"a", "", "b"}}, {"a\rb\0c\r"sv, {"a", "b", "c"}, {"a", "b", "c"}}, {"a\r\n\n\x1A"
      "b\r\n", {"a", "b"}, {"a", "b"}}, {"a\r\n\r\n", {"a", ""}, {"a"}}, {"\r", {""}, {}}, {"a\nb\x1A" "c\r\n", {"a\nb\x1A"
      "c"}, {"abc"}}, {"\na\xFF\t\r\n", {"\na\xFF\t"}, {"a\xFF\t"}}, {"a\r\nb\n", {"a"}, {"a", "b"}}, {"a\nb\n", {}, {"ab"}},
      {"a\0"sv, {"a", ""}, {"a"}}, {"\x1A", {}, {}}, {"\x1A\x1A", {"\x1A"}, {}}, {"\n", {}, {}}, {"", {}, {}},
  };
  // clang-format on
  for (auto const & [bytes, read, parsed] : rows) {
    EXPECT_EQ(Parsed(bytes).Lines(&ParseFile::ReadLine), read) << bytes;
    EXPECT_EQ(Parsed(bytes).Lines(&ParseFile::ParseLine), parsed) << bytes;
  }
  EXPECT_EQ(Parsed("a\r\nb\n")->GetLineCount(), 1);
  EXPECT_EQ(Parsed("a\nb\n")->GetLineCount(), 0);
  EXPECT_EQ(Parsed("a\nb\n")->GotoLineNumber(1), 0);
  EXPECT_EQ(Parsed("")->GotoLineNumber(1), 0);
}

TEST(ParseFile, LineNumbersFollowTheReading)
{
  Parsed file("a\r\n\r\nb\r\n");
  EXPECT_EQ(file->GetCurLineNumber(), 0);
  for (int line = 1; line <= 3; ++line) {
    EXPECT_NE(file->ReadLine(), -1);
    EXPECT_EQ(file->GetCurLineNumber(), line);
  }
  EXPECT_EQ(file->ReadLine(), -1);
  EXPECT_EQ(file->GetCurLineNumber(), 3);
  for (int const outside : {0, -1, 5, INT32_MIN, INT32_MAX}) EXPECT_EQ(file->GotoLineNumber(outside), 0);
  EXPECT_EQ(file->GotoLineNumber(4), 1);
  EXPECT_EQ(file->GetCurLineNumber(), -1);
  EXPECT_EQ(file->ReadLine(), -1);
  EXPECT_EQ(file->GotoLineNumber(3), 1);
  EXPECT_EQ(file->GetCurLineNumber(), 2);
  EXPECT_EQ(file->ReadLine(), 1);
  EXPECT_EQ(file.Text(), "b");
}

TEST(ParseFile, LongLinesComeInPiecesThatCountAsOneLine)
{
  std::string const full(2000, 'x');
  std::string const longer(4500, 'y');
  Parsed file(full + "\r\n" + longer + "\r\nlast\r\n");
  EXPECT_EQ(file->GetLineCount(), 3);
  EXPECT_EQ(file.Lines(&ParseFile::ReadLine), (Texts{full, longer, "last"}));
  file->GotoLineNumber(1);
  for (auto const & [length, line] : {std::pair(2000, 1), {2000, 2}, {2000, 2}, {500, 2}, {4, 3}}) {
    EXPECT_EQ(file->ParseLine(), length);
    EXPECT_EQ(file->GetCurLineNumber(), line);
  }
  file->GotoLineNumber(2);
  file->ParseLine();
  EXPECT_EQ(file->ReadLine(), 2500);
  EXPECT_EQ(file->GetCurLineNumber(), 2);
  EXPECT_EQ(file->ReadLine(), 4);
}

TEST(ParseFile, EachLineStartsAnew)
{
  Parsed file("1 2 3\r\n4 5\r\n");
  CString rest;
  file->ReadLine();
  EXPECT_EQ(file->GetNextInt(), 1);
  EXPECT_EQ(file->GetRemainingLine(rest), 4);
  EXPECT_EQ(rest, " 2 3");
  file->ReadLine();
  EXPECT_EQ(file->GetNextInt(), 4);
  file->Close();
  EXPECT_EQ(file->GetNext_Double(), 5.0);
}

class CursorWatch : public CUserInterface {
 public:
  CursorWatch() : m_pFormer(SetUserInterface(this)) {}
  ~CursorWatch() override { SetUserInterface(m_pFormer); }
  int ShowMessage(CString const &, UINT, UINT) override { return 0; }
  int RunDialog(CDialog &) override { return 0; }
  void Beep(UINT) override {}
  void SetWaitCursor(int on) override { m_strSeen += on != 0 ? "on " : "off "; }

  CString m_strSeen;

 private:
  CUserInterface * m_pFormer;
};

int causeOf(CString const & path)
{
  return CodeOf<CFileException>([&path] { ParseFile const file(path); });
}

TEST(ParseFile, AFileThatCannotBeReadTellsWhyAndTheWaitCursorGoesOff)
{
  CursorWatch const watch;
  Parsed const loaded("1\r\n");
  TempFolder const folder;
  EXPECT_EQ(causeOf(folder.Name("none")), CFileException::fileNotFound);
  EXPECT_EQ(causeOf(folder.Name("none\\none")), CFileException::badPath);
  EXPECT_EQ(causeOf(folder.Name("")), CFileException::accessDenied);
  EXPECT_EQ(watch.m_strSeen, "on off on off on off on off ");
}

TEST(ParseFile, NumericLinesAgreeOnTheirDelimeter)
{
  struct Row {
    std::string_view bytes;
    char delimiter;
    int mostValues;  // between blanks and tabs
  };
  // clang-format off
  Row const rows[] = {
      {"1,2\r\n3,4\r\n", ',', 0}, {"1,2\r\n3 4\r\n", 0, 2}, {"x y\r\n1,2\r\n", ',', 0}, {"1\r\n2\r\n", 0, 1},
      {" 1,2\r\n", ' ', 0}, {"1\t2\r\n3\r\n4\t5\t6", '\t', 3}, {"1 2\r\n1-2,3\r\n", ' ', 2},
      {"1 2\r\nx\t1\r\n3,4\r\n5 6", 0, 2}, {"", 0, 0}};
  // clang-format on
  for (Row const & row : rows) {
    Parsed file(row.bytes);
    CString delimiters;
    EXPECT_EQ(file->GetDelimeter(), row.delimiter) << row.bytes;
    EXPECT_EQ(file->GetMaxValuesPerLine(), row.mostValues) << row.bytes;
    EXPECT_EQ(file->GetCurLineNumber(), 0);
    file->GetTokenDelimeters(delimiters);
    EXPECT_EQ(delimiters, " \t");
  }
}

TEST(ParseFile, ColumnsAreWhereTheValuesOverlap)
{
  using Row = std::tuple<std::string_view, std::vector<UINT>, std::vector<UINT>>;
  // clang-format off
  Row const rows[] = {
      {"1  22\r\n10 2\r\n", {0, 3}, {1, 4}}, {"1 2\r\n1234\r\n", {}, {}}, {"1234\r\n1 2\r\n", {0}, {3}},
      {"     7\r\n1\r\n  3\r\n", {0, 2, 5}, {0, 2, 5}}, {"1  4\r\n  3\r\n 2\r\n", {0, 1, 2, 3}, {0, 1, 2, 3}},
      {"1  4\r\n 234\r\n", {0, 1}, {0, 3}}, {"1 3\r\n 23\r\n12\r\n", {}, {}}, {"word\r\n1 2\r\n3-4\r\n", {0, 2}, {0, 2}},
      {"1 \r\n2 \r\n3 \r\n", {0, 2, 2, 2}, {0, 1, 1, 1}}, {"1   5\r\n2 \r\n3 \r\n", {0, 2, 2, 4}, {0, 1, 1, 4}},
      {"1 \r\n2 \r\n3 567\r\n", {0, 2, 2, 2}, {0, 1, 1, 4}}, {"1 \r\n2 \r\n 23\r\n", {}, {}}, {"x\r\n", {}, {}}, {"", {}, {}},
  };
  // clang-format on
  for (auto const & [raw, begins, stops] : rows) {
    Parsed file(raw);
    CUIntArray starts;
    CUIntArray ends;
    ends.SetSize(7);
    EXPECT_EQ(file->GetColumnPositions(starts, ends), !begins.empty()) << raw;
    ASSERT_EQ(starts.GetSize(), static_cast<int>(begins.size())) << raw;
    ASSERT_EQ(ends.GetSize(), static_cast<int>(stops.size())) << raw;
    for (size_t i = 0; i < begins.size(); ++i) {
      EXPECT_EQ(starts[static_cast<int>(i)], begins[i]) << raw;
      EXPECT_EQ(ends[static_cast<int>(i)], stops[i]) << raw;
    }
    EXPECT_EQ(file->GetCurLineNumber(), 0);
  }
}

}  // namespace
