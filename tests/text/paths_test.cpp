// The parts of a path, and the entries of a folder.

#include <gtest/gtest.h>

#include <tuple>

#include <zpbase/platform/folders.h>
#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

TEST(Paths, ExtensionsStandBehindTheLastBackslash)
{
  using Row = std::tuple<char const *, int, char const *, char const *, char const *>;
  Row const rows[] = {{"c:\\dir.x\\file", -1, "c:\\dir.x\\file", "", "c:\\dir.x"},
                      {"file.txt", 4, "file", ".txt", ""},
                      {".txt", 0, "", ".txt", ""},
                      {"c:\\dir\\a.b.c", 10, "c:\\dir\\a.b", ".c", "c:\\dir"},
                      {"a/b.c/d", 3, "a/b", ".c/d", ""},
                      {"", -1, "", "", ""}};
  for (auto const & [path, dot, name, extension, prefix] : rows) {
    CString out;
    EXPECT_EQ(FindExtension(path), dot) << path;
    ExtractFileName(out, path);
    EXPECT_EQ(out, name);
    ExtractFileExtension(out, path);
    EXPECT_EQ(out, extension);
    EXPECT_EQ(GetDirectoryPrefix(path, 0), prefix);
    EXPECT_EQ(GetDirectoryPrefix(path, 1), prefix[0] == 0 ? CString() : prefix + CString("\\"));
  }
}

TEST(Paths, EntriesAreFoundByPattern)
{
  TempFolder const folder;
  folder.Write("Report.txt", "");
  using Row = std::tuple<char const *, char const *>;
  Row const rows[] = {{"r*.TXT", "Report.txt"}, {"?eport.*", "Report.txt"}, {"*.*t", "Report.txt"},
                      {"r*t*t", "Report.txt"},  {"*.doc", nullptr},         {"rep", nullptr},
                      {"r*x*x", nullptr},       {"none\\*.*", nullptr},     {"p*.*", nullptr}};
  for (auto const & [pattern, found] : rows) {
    WIN32_FIND_DATA data = {};
    HANDLE const search = FindFirstFileA(folder.Name(pattern), &data);
    EXPECT_EQ(search != INVALID_HANDLE_VALUE, found != nullptr) << pattern;
    EXPECT_STREQ(data.cFileName, found != nullptr ? found : "") << pattern;
    EXPECT_EQ(data.dwFileAttributes, 0U) << pattern;
    FindClose(search);
  }
}

}  // namespace
