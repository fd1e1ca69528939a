// The parts of a path, and the entries of a folder.

#include <gtest/gtest.h>

#include <zpbase/platform/folders.h>
#include <zpbase/platform/paths.h>
#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

TEST(Paths, ExtensionsStandBehindTheLastBackslash)
{
  struct Row {
    char const * path;
    int dot;
    char const * name;
    char const * extension;
    char const * prefix;
  };
  Row const rows[] = {{"c:\\dir.x\\file", -1, "c:\\dir.x\\file", "", "c:\\dir.x"},
                      {"file.txt", 4, "file", ".txt", ""},
                      {".txt", 0, "", ".txt", ""},
                      {"c:\\dir\\a.b.c", 10, "c:\\dir\\a.b", ".c", "c:\\dir"},
                      {"a/b.c/d", 3, "a/b", ".c/d", ""},
                      {"", -1, "", "", ""}};
  for (Row const & row : rows) {
    CString out;
    EXPECT_EQ(FindExtension(row.path), row.dot) << row.path;
    ExtractFileName(out, row.path);
    EXPECT_EQ(out, row.name);
    ExtractFileExtension(out, row.path);
    EXPECT_EQ(out, row.extension);
    EXPECT_EQ(GetDirectoryPrefix(row.path, 0), row.prefix);
    EXPECT_EQ(GetDirectoryPrefix(row.path, 1), row.prefix[0] == 0 ? CString() : row.prefix + CString("\\"));
  }
}

TEST(Paths, EntriesAreFoundByPattern)
{
  TempFolder const folder;
  folder.Write("Report.txt", "");
  struct Row {
    char const * pattern;
    char const * found;
  };
  Row const rows[] = {{"r*.TXT", "Report.txt"}, {"?eport.*", "Report.txt"}, {"*.*t", "Report.txt"}, {"r*t*t", "Report.txt"},
                      {"*.doc", nullptr},       {"rep", nullptr},           {"r*x*x", nullptr},     {"none\\*.*", nullptr}};
  for (Row const & row : rows) {
    WIN32_FIND_DATA data = {};
    HANDLE const search = FindFirstFileA(folder.Name(row.pattern), &data);
    EXPECT_EQ(search != INVALID_HANDLE_VALUE, row.found != nullptr) << row.pattern;
    EXPECT_STREQ(data.cFileName, row.found != nullptr ? row.found : "") << row.pattern;
    FindClose(search);
  }
}

}  // namespace
