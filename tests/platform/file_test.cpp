// CFile's failures on names, and what the host's failures become.

#include <gtest/gtest.h>

#include <functional>

#include <zpbase/platform/file.h>
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
