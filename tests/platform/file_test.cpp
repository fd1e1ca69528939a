// CFile's failures on names, and what the host's failures become.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <tuple>
#include <utility>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/file.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/system_error.h>

#include "tests/support/TempFolder.h"

namespace {

// The cause and the system's number of what an operation raises.
std::pair<int, LONG> failureOf(std::function<void()> const & operation)
{
  try {
    operation();
  } catch (CFileException * e) {
    zp::ExceptionGuard const guard(e);
    return {e->m_cause, e->m_lOsError};
  }
  return {CFileException::none, ERROR_SUCCESS};
}

}  // namespace

TEST(File, TellsAMissingFileFromAMissingFolder)
{
  TempFolder const folder;
  folder.Write("a", "1");
  folder.Write("b", "2");
  std::pair<int, LONG> const noFile{CFileException::fileNotFound, ERROR_FILE_NOT_FOUND};
  std::pair<int, LONG> const noFolder{CFileException::badPath, ERROR_PATH_NOT_FOUND};
  std::pair<int, LONG> const exists{CFileException::accessDenied, ERROR_ALREADY_EXISTS};
  CString const a = folder.Name("a");
  EXPECT_EQ(failureOf([&] { CFile::Rename(a, folder.Name("none\\c")); }), noFolder);
  EXPECT_EQ(failureOf([&] { CFile::Rename(a, folder.Name("b")); }), exists);
  EXPECT_EQ(failureOf([&] { CFile::Rename(folder.Name("missing"), folder.Name("c")); }), noFile);
  EXPECT_EQ(failureOf([&] { CFile::Remove(folder.Name("none\\c")); }), noFolder);
  EXPECT_EQ(failureOf([&] { CFile::Remove(folder.Name("c")); }), noFile);
  EXPECT_EQ(folder.Read("a") + folder.Read("b"), "12");
}

// File systems that can't refuse a name that is taken: a hard link does, and without links a look.
TEST(File, RenamesOntoNothingThatExistsWhateverTheSystemOffers)
{
  TempFolder const folder;
  zp::HostCalls const kept = zp::GetHostCalls();
  zp::GetHostCalls().RenameNew = [](char const *, char const *) { return errno = ENOSYS, -1; };
  for (bool const hasLinks : {true, false}) {
    if (!hasLinks) zp::GetHostCalls().Link = [](char const *, char const *) { return errno = EPERM, -1; };
    folder.Write("a", "1");
    folder.Write("b", "2");
    EXPECT_EQ(failureOf([&] { CFile::Rename(folder.Name("a"), folder.Name("b")); }),
              std::pair(int{CFileException::accessDenied}, LONG{ERROR_ALREADY_EXISTS}));
    CFile::Rename(folder.Name("a"), folder.Name("c"));
    EXPECT_EQ(folder.Read("b") + folder.Read("c") + (folder.Has("a") ? "a" : ""), "21");
    CFile::Remove(folder.Name("c"));
  }
  zp::GetHostCalls() = kept;
}

TEST(File, InMemoryCopiesAnAttachedBlockBeforeItGrows)
{
  BYTE block[] = {'0'};
  CMemFile file(block, 1, 4);
  file.Write("1", 1);
  file.Write("2", 1);
  char text[2] = {};
  file.SeekToBegin();
  EXPECT_EQ(file.Read(text, 2), 2u);
  EXPECT_EQ(std::string(text, 2), "12");
  EXPECT_EQ(block[0], '1');
}

TEST(File, RefusesWhatItHasNot)
{
  TempFolder const folder;
  folder.Write("x.tar.gz", "12");
  CFile file;
  ASSERT_TRUE(file.Open(folder.Name("x.tar.gz"), CFile::modeRead));
  EXPECT_EQ(file.GetFileName() + "|" + file.GetFileTitle(), "x.tar.gz|x.tar");
  CMemFile memory;
  memory.SetLength(3);
  EXPECT_EQ(memory.Seek(0, CFile::end), 3U);
  memory.SetLength(2);
  EXPECT_EQ(memory.GetPosition(), 2U);
  EXPECT_EQ(failureOf([&] { file.Seek(-1, CFile::begin); }).first, CFileException::badSeek);
  EXPECT_EQ(failureOf([&] { memory.Seek(-3, CFile::current); }).first, CFileException::badSeek);
  EXPECT_EQ(failureOf([&] { memory.Seek(INT64_MAX, CFile::current); }).first, CFileException::badSeek);
  EXPECT_EQ(failureOf([&] { file.LockRange(0, 1); }).second, ERROR_LOCK_VIOLATION);
  EXPECT_EQ(failureOf([&] { file.UnlockRange(0, 1); }).second, ERROR_NOT_LOCKED);
  EXPECT_EQ(failureOf([&] { memory.Duplicate(); }).first, CFileException::genericException);
  EXPECT_EQ(failureOf([&] { CFile().Flush(); }).first, CFileException::invalidFile);
  memory.Flush();
  memory.Abort();
  EXPECT_EQ(memory.GetLength(), 0U);
}

TEST(Exceptions, SayWhatTheyKnow)
{
  COleDispatchException const server("told", 7);
  COleException const code(static_cast<LONG>(0x80020009));
  CInvalidArgException const place;
  using Row = std::tuple<CException const &, char const *, UINT>;
  for (auto const & [exception, written, helpId] :
       {Row{server, "told", 7}, Row{code, "The operation failed with the code 0x80020009.", 0},
        Row{place, "An index or position is not inside its container.", 0}}) {
    char text[80] = "";
    UINT help = 0;
    EXPECT_NE(exception.GetErrorMessage(text, sizeof text, &help), 0);
    EXPECT_STREQ(text, written);
    EXPECT_EQ(help, helpId);
  }
}
