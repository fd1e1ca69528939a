// Text files as lines of a report and as documents in the main window.

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <random>
#include <tuple>

#include <zpbase/job_folders.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/store.h>
#include <zpbase/text.h>

#include "tests/views/application.h"

#include "tests/support/Raised.h"

namespace {

class Browsing : public ViewsTest {
 protected:
  ~Browsing() override { job_path[0] = '\0'; }

  std::vector<std::string> Lines(std::string_view bytes)
  {
    m_Folder.Write("text", bytes);
    GPFile file(m_Folder.Name("text"));
    CStringArray lines;
    lines.Add("old");
    int const count = file.InitStringArray(&lines);
    EXPECT_EQ(count, lines.GetSize());
    EXPECT_FALSE(file.IsOpen());
    std::vector<std::string> texts;
    for (int i = 0; i < lines.GetSize(); ++i) texts.emplace_back(lines[i].View());
    return texts;
  }
};

using Texts = std::vector<std::string>;

TEST_F(Browsing, CutsAFileIntoTheLinesOfAReport)
{
  std::string const full(2000, 'x');
  std::tuple<std::string, Texts> const rows[] = {
      {"", {}},
      {"\n\x1A\n", {}},
      {"a\r\n\r\nb", {"a", "", "b"}},
      {"\r\r", {"", ""}},
      {"a\nb\x1A"
       "c\r",
       {"abc"}},
      {std::string("a\0b", 3), {"a", "b"}},
      {"\x0C\r\n\x0CX\r\nY\x0C\r", {"\x01", "\x01", "X", "Y\x0C"}},
      {"\n\x0C\tX", {"\x01", "        X"}},  // the tab counts from behind the form feed
      {"\x0C\x0C\r", {"\x01", "\x0C"}},
      {"a\tb\x01\r\n\x0C\r\nab", {"a       b\x01", "\x01", "ab"}},
      {full + "\r\nb", {full, "", "b"}},
      {full + "yz\r", {full, "yz"}},
      {"\x0C" + full, {"\x01", full.substr(1), "x"}},
      {"\xE4\xFF", {"\xE4\xFF"}},
  };
  for (auto const & [bytes, lines] : rows) EXPECT_EQ(Lines(bytes), lines) << bytes.substr(0, 20);
}

// Whatever the bytes are, and wherever a chunk of the file ends, the lines are those of ReadLine.
TEST_F(Browsing, ReadsAnyBytesAsReadLineDoes)
{
  std::mt19937 random(11);
  std::string bytes(600'000, ' ');
  char const special[] = {'\r', '\n', '\0', '\x1A', '\t', '\x0C', 'x', '\x7F'};
  for (size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = random() % 400 < 3 ? special[random() % 8] : random() % 5000 == 0 ? '\r' : static_cast<char>(random() | 0x20);
  std::fill(bytes.begin() + 200'000, bytes.begin() + 300'000, '\xA0');
  Texts const lines = Lines(bytes);
  Texts expected;
  GPFile file(m_Folder.Name("text"));
  file.Open(CFile::modeRead);
  for (CString line; file.ReadLine(line) != -1;) {
    if (!line.IsEmpty() && line[0] == '\x0C') {
      expected.push_back("\x01");
      if (line.GetLength() == 1) continue;
      line.Delete(0);
    }
    ExpandTabs(line, 8);
    expected.emplace_back(line.View());
  }
  EXPECT_GT(lines.size(), 1000u);
  EXPECT_EQ(lines, expected);
}

TEST_F(Browsing, OpensAFileAgainAtItsPlaceWithoutTruncatingIt)
{
  GPFile file(m_Folder.Name("log"));
  CStringArray lines;
  EXPECT_EQ(file.InitStringArray(&lines), -1);
  file.Open(CFile::modeCreate);
  file.WriteLine("one");
  file.WriteLine("two");
  file.Seek(2, CFile::begin);
  EXPECT_EQ(file.InitStringArray(&lines), 2);
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(file.GetPosition(), 2u);
  file.Write("E");
  EXPECT_EQ(file.Browse(), 1);
  EXPECT_EQ(file.GetPosition(), 3u);
  delete GetNewDocument();
  EXPECT_EQ(m_Folder.Read("log"), "onE\r\ntwo\r\n");
}

TEST_F(Browsing, FindsNothingInAnOpenFileThatWasRemoved)
{
  CStringArray lines;
  lines.Add("old");
  for (auto const count : {+[](GPFile &file, CStringArray &into) { return file.InitStringArray(&into); },
                           +[](GPFile &file, CStringArray &) { return file.GetLineCount(); }}) {
    GPFile file(m_Folder.Name("log"));
    ASSERT_TRUE(file.Open(CFile::modeCreate));
    std::filesystem::remove(m_Folder.Path() / "log");
    EXPECT_EQ(count(file, lines), -1);
    EXPECT_FALSE(file.IsOpen() || file.Exists());
    EXPECT_FALSE(m_Folder.Has("log"));
  }
  EXPECT_EQ(lines.GetSize(), 1);
}

// The cause of the file exception that ends InitStringArray; none if there is none.
int causeOf(GPFile & file, CStringArray & lines)
{
  return CodeOf<CFileException>([&] { file.InitStringArray(&lines); });
}

TEST_F(Browsing, TellsOfAFileThatCannotBeReadAndLeavesItOpenAtItsPlace)
{
  m_Folder.Write("bad", "one\r\n");
  GPFile file(m_Folder.Name("bad"));
  file.Open(CFile::modeRead);
  file.Seek(1, CFile::begin);
  CStringArray lines;
  zp::HostCalls const kept = zp::GetHostCalls();
  zp::GetHostCalls().ReadAt = [](int, void *, size_t, LONGLONG) {
    errno = EIO;
    return -1L;
  };
  EXPECT_EQ(causeOf(file, lines), CFileException::hardIO);
  m_Folder.Write("bad2", "x");
  EXPECT_EQ(BrowseFile(m_Folder.Name("bad2"), 43374), 0);
  zp::GetHostCalls() = kept;
  EXPECT_EQ(m_UI.m_Messages.size(), 1u);
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(file.GetPosition(), 1u);

  GPFile gone(m_Folder.Name("bad2"));
  std::filesystem::remove(m_Folder.Path() / "bad2");
  lines.Add("old");
  EXPECT_NE(causeOf(gone, lines), CFileException::none);
  EXPECT_EQ(lines[0], "old");
}

TEST_F(Browsing, KeepsWhatWasReadOfAFileThatShrinks)
{
  m_Folder.Write("log", std::string(400'000, '\r'));
  static std::string path;
  path = (m_Folder.Path() / "log").string();
  static zp::HostCalls kept;
  kept = zp::GetHostCalls();
  zp::GetHostCalls().ReadAt = [](int file, void * buffer, size_t count, LONGLONG position) {
    long const got = kept.ReadAt(file, buffer, count, position);
    std::filesystem::resize_file(path, 10);
    return got;
  };
  GPFile file(m_Folder.Name("log"));
  CStringArray lines;
  int const count = file.InitStringArray(&lines);
  zp::GetHostCalls() = kept;
  EXPECT_GT(count, 1000);
  EXPECT_LT(count, 400'000);
}

TEST_F(Browsing, HandsAReportToTheMainWindow)
{
  MainFrame & main = OpenMainWindow();
  CString const path = m_Folder.Name("list");
  m_Folder.Write("list", "\x0CX");
  EXPECT_EQ(BrowseFile(path, 1), 1);
  m_Folder.Write("list", "");
  EXPECT_EQ(BrowseFile(path, 1), 1);
  ASSERT_EQ(main.m_Taken.size(), 2u);
  auto * const first = static_cast<GPRptDoc *>(main.m_Taken[0]);
  EXPECT_EQ(first->GetRptArray()->GetSize(), 2);
  EXPECT_EQ(first->GetPageHeaderFn(), nullptr);
  EXPECT_EQ(first->GetTitle(), CString("Report ") + path);
  EXPECT_EQ(static_cast<GPRptDoc *>(main.m_Taken[1])->GetRptArray()->GetSize(), 0);
  for (CDocument * const doc : main.m_Taken) delete doc;

  std::filesystem::remove(m_Folder.Path() / "list");
  GPFile gone(path);
  EXPECT_EQ(gone.Browse(), 0);
  EXPECT_EQ(m_UI.m_Messages.back().text,
            std::string("There is nothing to show: the file ") + path.GetString() + " doesn't exist.");
  EXPECT_EQ(m_UI.m_Messages.back().helpId, 43374u);

  m_Folder.Write("list", "held");
  CFile holder;
  ASSERT_TRUE(holder.Open(path, CFile::modeReadWrite));
  EXPECT_EQ(BrowseFile(path, 1), 0) << "in use elsewhere: told, no empty document";
  EXPECT_NE(m_UI.m_Messages.back().text.find("in use by another program"), std::string::npos);
  EXPECT_EQ(main.m_Taken.size(), 2u);
}

TEST_F(Browsing, ShowsTheWarningsOrTellsThatThereAreNone)
{
  MainFrame & main = OpenMainWindow();
  std::strcpy(job_path, m_Folder.Name("").GetString());
  BrowseWarnings(0);
  EXPECT_TRUE(m_UI.m_Messages.empty());
  BrowseWarnings(1);
  EXPECT_EQ(m_UI.m_Messages.back().helpId, 43277u);
  EXPECT_TRUE(main.m_Taken.empty());
  m_Folder.Write("WARNINGS", "Tray 3\r\n");
  BrowseWarnings(0);
  ASSERT_EQ(main.m_Taken.size(), 1u);
  EXPECT_EQ(static_cast<GPRptDoc *>(main.m_Taken[0])->GetRptArray()->GetAt(0), "Tray 3");
  delete main.m_Taken[0];
}

}  // namespace
