// The file wrapper: what it remembers, what it reports, and its view of text.

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <tuple>

#include <zpbase/job_folders.h>
#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(GPFile, AnswersFromWhatItKnewLast)
{
  TempFolder const folder;
  GPFile file(folder.Name("a"));
  folder.Write("a", "late");
  EXPECT_EQ(file.Open(CFile::modeRead), 0);  // it wasn't there at construction
  EXPECT_EQ(file.Open(CFile::modeCreate), 1);
  EXPECT_EQ(folder.Read("a"), "");
  EXPECT_EQ(file.Write("text"), 1);
  EXPECT_TRUE(file.IsEmpty());
  file.Close();
  EXPECT_FALSE(file.IsEmpty());
  EXPECT_EQ(file.Open(CFile::modeWrite), 1);
  EXPECT_EQ(folder.Read("a"), "text");
  EXPECT_EQ(file.Seek(-1, 2), 3);
  file.Write("s!");
  file.Close();
  EXPECT_EQ(folder.Read("a"), "texs!");
  EXPECT_EQ(GPFile("").Exists(), 0);
}

TEST(GPFile, TellsWhyAnOpenFailed)
{
  TempFolder const folder;
  CString text("untouched");
  GPFile missing(folder.Name("none\\a"));
  EXPECT_EQ(missing.GetOpenProblem(text), 0);
  EXPECT_EQ(text, "untouched");
  EXPECT_EQ(missing.Open(CFile::modeCreate), 0);
  EXPECT_EQ(missing.GetOpenProblem(text), 1);
  EXPECT_EQ(text, "The path of " + folder.Name("none\\a") + " does not exist (problem 3).");

  GPFile writer(folder.Name("a"));
  writer.Open(CFile::modeCreate);
  writer.Write("kept");
  GPFile other(folder.Name("a"));
  EXPECT_EQ(other.Open(CFile::modeRead), 0);
  other.GetOpenProblem(text);
  EXPECT_EQ(text, "The file " + folder.Name("a") + " is in use by another program (problem 11).");
  EXPECT_EQ(other.Open(CFile::modeCreate), 0);  // refused before it truncates
  EXPECT_EQ(GPFile::DeleteFile(folder.Name("a")), 0);
  EXPECT_EQ(folder.Read("a"), "kept");
  writer.Close();
  text.Empty();
  EXPECT_EQ(other.Open(CFile::modeRead), 1);
  EXPECT_EQ(other.GetOpenProblem(text), 1);  // of the last open that failed
  EXPECT_EQ(text, "The file " + folder.Name("a") + " is in use by another program (problem 11).");
}

TEST(GPFile, TurnsAFailedWriteIntoAFlag)
{
  TempFolder const folder;
  folder.Write("a", "text");
  GPFile file(folder.Name("a"));
  file.Open(CFile::modeRead);
  EXPECT_EQ(file.WriteLine("x"), 0);
  EXPECT_FALSE(file.IsWriteOK());
  EXPECT_EQ(folder.Read("a"), "text");
  file.Close();
  EXPECT_EQ(CodeOf<CFileException>([&] { file.SeekToEnd(); }), CFileException::invalidFile);
}

TEST(GPFile, RaisesNothingForAWriteWithoutAnOpenFile)
{
  TempFolder const folder;
  GPFile file(folder.Name("a"));
  int const none = CFileException::none;
  EXPECT_EQ(CodeOf<CFileException>([&] { file.GPFile::Write("x", 1); }), none);
  EXPECT_FALSE(file.IsWriteOK());
  EXPECT_EQ(CodeOf<CFileException>([&] { EXPECT_EQ(file.Write("x"), 0); }), none);
  EXPECT_EQ(CodeOf<CFileException>([&] { EXPECT_EQ(file.Writef("%d", 1), 0); }), none);
  EXPECT_EQ(CodeOf<CFileException>([&] { EXPECT_EQ(file.WritefLine("%d", 1), 0); }), none);
  EXPECT_EQ(CodeOf<CFileException>([&] { EXPECT_EQ(file.WriteLine(43500u), 0); }), none);
  EXPECT_EQ(CodeOf<CFileException>([&] { EXPECT_EQ(file.WriteEndOfFile(), 0); }), none);
  EXPECT_FALSE(folder.Has("a"));
}

TEST(GPFile, WritesTextWithItsOwnLineEnds)
{
  TempFolder const folder;
  GPFile file(folder.Name("a"));
  file.Open(CFile::modeCreate);
  EXPECT_EQ(file.WritefLine("%s %d %ld", "n", 5, -1L), 1);
  EXPECT_EQ(file.WritefLine(43500u, "p", 2), 1);
  EXPECT_EQ(file.Writef("%lu", static_cast<unsigned long>(-1L)), 1);
  file.WriteFormFeed();
  file.WriteLine();
  file.WriteEndOfFile();
  EXPECT_EQ(folder.Read("a"), "n 5 -1\r\nThe file p was not found (problem 2).\r\n4294967295\f\r\n\x1A");
  file.Empty();
  EXPECT_EQ(file.Write(99999999), 1);
  EXPECT_EQ(file.WritefLine(99999999u, "p", 2), 1);
  EXPECT_EQ(folder.Read("a"), "9999999999999999: p 2\r\n");  // ids without a text
}

TEST(GPFile, ReadsLinesByItsOwnView)
{
  std::string const full(2000, 'x');
  std::tuple<std::string, std::vector<std::string>> const rows[] = {
      {"", {}},
      {"abc", {"abc"}},
      {"a\r\n\r\nb\r\n", {"a", "", "b"}},
      {"a\nb\r", {"ab"}},
      {std::string("a\x1A"
                   "b\0c\xFF\r",
                   7),
       {"ab", "c\xFF"}},
      {full + "\r\nnext\r\n", {full, "", "next"}},
      {full + "yy\r", {full, "yy"}},
      {std::string(40000, '\n') + "z\r", {"z"}},
  };
  TempFolder const folder;
  for (auto const & [content, lines] : rows) {
    folder.Write("a", content);
    GPFile file(folder.Name("a"));
    ASSERT_EQ(file.Open(CFile::modeRead), 1);
    CString line("?");
    for (std::string const & expected : lines) {
      EXPECT_EQ(file.ReadLine(line), static_cast<int>(expected.size()));
      EXPECT_EQ(line.View(), expected);
    }
    EXPECT_EQ(file.ReadLine(line), -1);
    EXPECT_TRUE(line.IsEmpty());
    file.Seek(0, 0);
    if (!lines.empty()) file.ReadLine(line);
    long const place = static_cast<long>(file.GetPosition());
    EXPECT_EQ(file.GetLineCount(), static_cast<int>(lines.size()));
    EXPECT_EQ(static_cast<long>(file.GetPosition()), place);  // open again where it was
  }
  EXPECT_EQ(GPFile(folder.Name("none")).GetLineCount(), -1);
}

// Each change puts a Z where the next line stands, after that line was fetched together with the one before.
TEST(GPFile, ReadsLinesAsTheyAreByNow)
{
  struct Row {
    char const * name;
    std::function<void(GPFile &)> change;
    int length;
  } const rows[] = {
      {"SetLength", [](GPFile & file) { file.SetLength(2), file.Seek(2, 0); }, -1},
      {"Empty", [](GPFile & file) { file.Empty(); }, -1},
      {"Write", [](GPFile & file) { file.Write("Z"), file.Seek(2, 0); }, 1},
      {"CFile::Write", [](GPFile & file) { file.CFile::Write("Z", 1), file.Seek(2, 0); }, 1},
      {"WriteAt", [](GPFile & file) { file.WriteAt(2, "Z", 1); }, 1},
      {"Duplicate",
       [](GPFile & file) {
         std::unique_ptr<CFile> const other(file.Duplicate());
         other->Write("Z", 1);
       },
       1},
  };
  TempFolder const folder;
  for (Row const & row : rows) {
    folder.Write("a", "a\rb\rc\r");
    GPFile file(folder.Name("a"));
    file.Open(CFile::modeReadWrite);
    CString line;
    file.ReadLine(line);
    row.change(file);
    EXPECT_EQ(file.ReadLine(line), row.length) << row.name;
    EXPECT_EQ(line, row.length < 0 ? "" : "Z") << row.name;
  }
}

long failingRead(int, void *, size_t, LONGLONG)
{
  errno = EIO;
  return -1;
}

TEST(GPFile, LeavesAFileAsItWasWhenItsLinesCannotBeCounted)
{
  TempFolder const folder;
  folder.Write("a", "a\rb\r");
  GPFile closed(folder.Name("a"));
  GPFile open(folder.Name("a"));
  auto const host = zp::GetHostCalls();
  zp::GetHostCalls().ReadAt = failingRead;
  EXPECT_EQ(CodeOf<CFileException>([&] { closed.GetLineCount(); }), CFileException::hardIO);
  EXPECT_FALSE(closed.IsOpen());
  open.Open(CFile::modeRead);
  open.Seek(2, 0);
  EXPECT_EQ(CodeOf<CFileException>([&] { open.GetLineCount(); }), CFileException::hardIO);
  zp::GetHostCalls() = host;
  EXPECT_EQ(CodeOf<CFileException>([&] { closed.GetLineCount(); }), CFileException::invalidFile);  // the other one has it
  EXPECT_FALSE(closed.IsOpen());
  CString line;
  EXPECT_EQ(open.ReadLine(line), 1);
  EXPECT_EQ(line, "b");
}

TEST(GPFile, CopiesByItsRules)
{
  TempFolder const folder;
  folder.Write("src", "source");
  folder.Write("empty", "");
  folder.Write("dest", "destination");
  CFileStatus old;
  old.m_mtime = 86400;
  old.m_attribute = CFileStatus::readOnly;
  GPFile::SetStatus(folder.Name("src"), old);
  GPFile::SetStatus(folder.Name("empty"), old);

  EXPECT_EQ(GPFile::CopyFile(folder.Name("dest"), folder.Name("src"), 1), 1);
  EXPECT_EQ(folder.Read("dest"), "destinationsource");
  EXPECT_EQ(GPFile::CopyFile(folder.Name("dest"), folder.Name("empty"), 0), 1);
  EXPECT_EQ(folder.Read("dest"), "destinationsource");
  CFileStatus now;
  CFile::GetStatus(folder.Name("dest"), now);
  EXPECT_EQ(now.m_mtime, 86400);
  EXPECT_EQ(std::filesystem::last_write_time(folder.Path() / "dest").time_since_epoch() % std::chrono::seconds(1),
            std::chrono::nanoseconds(0));
  EXPECT_EQ(now.m_attribute, CFileStatus::archive);
  EXPECT_EQ(GPFile::CopyFile(folder.Name("dest"), folder.Name("src"), 0), 1);
  EXPECT_EQ(folder.Read("dest"), "source");
  EXPECT_EQ(GPFile::CompareFiles(folder.Name("dest"), folder.Name("src")), 1);
  EXPECT_EQ(GPFile::CopyFile(folder.Name("dest"), folder.Name("..\\" + folder.Path().filename().string() + "\\dest"), 0), 0);
  EXPECT_EQ(folder.Read("dest"), "source");  // onto itself: left alone
  EXPECT_EQ(GPFile::CopyFile(folder.Name("dest"), folder.Name("none"), 1), 0);
  EXPECT_FALSE(folder.Has("dest"));  // a copy that failed is removed
}

TEST(GPFile, RenamesOntoNothingThatExistsAndWarnsWithTheCause)
{
  TempFolder const folder;
  CWinApp app("test");
  app.SetProfileFile(folder.Name("test.ini"));
  std::strcpy(job_path, folder.Name("").GetString());
  zp::ResetWarningsGate();
  folder.Write("a", "a");
  folder.Write("b", "b");
  EXPECT_EQ(GPFile::RenameFile(folder.Name("b"), folder.Name("a")), 0);
  EXPECT_EQ(GPFile::RenameFile(folder.Name("none\\c"), folder.Name("a")), 0);
  EXPECT_EQ(GPFile::RenameFile(folder.Name("c"), folder.Name("none")), 0);  // without a word
  EXPECT_EQ(GPFile::RenameFile(folder.Name("c"), folder.Name("a")), 1);
  EXPECT_EQ(folder.Read("b") + folder.Read("c"), "ba");
  CString const start = "Rename file " + folder.Name("a") + " to ";
  EXPECT_EQ(CString(folder.Read("WARNINGS")),
            start + folder.Name("b") + " -> problem 5\r\n" + start + folder.Name("none\\c") + " -> problem 3\r\n");
  job_path[0] = '\0';
  zp::ResetWarningsGate();
  EXPECT_EQ(GPFile::DeleteFile(folder.Name("c")), 1);
  EXPECT_EQ(GPFile::DeleteFile(folder.Name("c")), 0);
}

}  // namespace
