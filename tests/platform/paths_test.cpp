// The two forms of a path, both directions; folders that are searched and made.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <tuple>

#include <zpbase/platform/folders.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "tests/support/TempFolder.h"

using namespace std::string_literals;

TEST(Paths, InsideFormBecomesTheHosts)
{
  using Row = std::tuple<std::string, bool, std::string>;
  Row const rows[] = {
      {"C:\\var\\job\\a.SI", true, "/var/job/a.SI"},
      {"c:\\", true, "/"},
      {"\\tmp\\x", true, "/tmp/x"},
      {"C:x\\y", true, "x/y"},
      {"C:", true, "."},
      {"/as it\\stands", true, "/as it\\stands"},
      {"plain.txt", true, "plain.txt"},
      {"", true, ""},
      {"D:\\x", false, ""},
      {"a:b", false, ""},
      {"\\\\server\\share", false, ""},
      {"\\/server", false, ""},
      {"C:\\cut\0here"s, false, ""},
  };
  for (auto const & [inside, accepted, onHost] : rows) {
    std::string host = "former";
    EXPECT_EQ(ToHostPath(inside, host), accepted) << inside;
    EXPECT_EQ(host, onHost) << inside;
  }
}

TEST(Paths, HostFormBecomesTheInsideOneAndBack)
{
  struct Row {
    char const * host;
    char const * inside;
  };
  Row const rows[] = {{"/var/job/a.si", "C:\\var\\job\\a.si"}, {"/", "C:\\"}, {"a/b", "a\\b"}, {"x:y", ".\\x:y"}, {"", ""}};
  for (Row const & row : rows) EXPECT_STREQ(FromHostPath(row.host), row.inside);
  std::string host;
  ASSERT_TRUE(ToHostPath(FromHostPath("x:y").View(), host));
  EXPECT_EQ(host, "./x:y");
}

TEST(Paths, ModuleFileNameIsWholeOrCutWithItsSize)
{
  char path[500];
  DWORD const length = GetModuleFileName(nullptr, path, sizeof path);
  std::string const whole(path);
  EXPECT_EQ(whole.size(), length);
  EXPECT_TRUE(whole.starts_with("C:\\")) << whole;
  EXPECT_TRUE(whole.ends_with("\\test_platform")) << whole;
  EXPECT_EQ(GetModuleFileName(nullptr, path, 5), 5u);
  EXPECT_EQ(std::string(path), whole.substr(0, 4));
  void * const library = reinterpret_cast<void *>(&FromHostPath);
  ASSERT_GT(GetModuleFileName(static_cast<HINSTANCE>(library), path, sizeof path), 0u);
  EXPECT_NE(std::string(path).find("libzpbase"), std::string::npos) << path;
  EXPECT_EQ(GetModuleFileName(reinterpret_cast<HINSTANCE>(1), path, sizeof path), 0u);
}

TEST(Paths, ConfigFolderFollowsTheEnvironment)
{
  setenv("HOME", "/home/ada", 1);
  setenv("XDG_CONFIG_HOME", "/cfg", 1);
  EXPECT_EQ(GetUserConfigFolder(), "/cfg");
  setenv("XDG_CONFIG_HOME", "not/absolute", 1);
  EXPECT_EQ(GetUserConfigFolder(), "/home/ada/.config");
  unsetenv("XDG_CONFIG_HOME");
  unsetenv("HOME");
  EXPECT_EQ(GetUserConfigFolder(), "");
}

TEST(Folders, AreSearchedInTheirOrder)
{
  TempFolder const folder;
  EXPECT_TRUE(CreateDirectoryA(folder.Name("sub"), nullptr));
  folder.Write("sub/x.txt", "");
  folder.Write("x.txt", "");
  folder.Write("y", "");
  CString const here = folder.Name("");
  CString const both = here + "sub;;D:\\none;" + here;
  using Row = std::tuple<CString, CString, char const *, char const *>;
  Row const rows[] = {
      {both, "x.txt", nullptr, "sub\\x.txt"},        {both, "x", ".txt", "sub\\x.txt"},     {both, "y", nullptr, "\\y"},
      {here, here + "sub\\x", ".txt", "sub\\x.txt"}, {here, "x.", "txt", nullptr},          {here, "sub", nullptr, nullptr},
      {here, here + "none", nullptr, nullptr},       {here, "D:\\x.txt", nullptr, nullptr}, {";", "", ".txt", nullptr}};
  for (auto const & [path, name, extension, wanted] : rows) {
    char found[300] = "";
    char * last = nullptr;
    DWORD const length = SearchPathA(path, name, extension, sizeof found, found, &last);
    if (wanted == nullptr) {
      EXPECT_TRUE(length == 0 && GetLastError() == ERROR_FILE_NOT_FOUND && last == nullptr) << name;
      continue;
    }
    EXPECT_STREQ(found, here + wanted) << name;
    EXPECT_STREQ(last, CString(wanted).Mid(CString(wanted).Find('\\') + 1));
    char cut[300] = "kept";
    EXPECT_EQ(SearchPathA(path, name, extension, length, cut, nullptr), length + 1);
    EXPECT_EQ(SearchPathA(path, name, extension, length + 1, found, nullptr), length);
    EXPECT_STREQ(cut, "kept");
  }
  std::string const programs = std::getenv("PATH");
  unsetenv("PATH");
  char found[1024];
  EXPECT_NE(SearchPathA(nullptr, "test_platform", nullptr, sizeof found, found, nullptr), 0u);
  EXPECT_TRUE(std::string(found).ends_with("\\test_platform")) << found;
  EXPECT_EQ(SearchPathA(nullptr, "x.txt", nullptr, sizeof found, found, nullptr), 0u);
  setenv("PATH", programs.c_str(), 1);
}

TEST(Folders, TellWhatCantBeFoundOrMade)
{
  TempFolder const folder;
  for (auto const & [path, error] : {std::pair(CString("D:\\x"), ERROR_PATH_NOT_FOUND),
                                     {folder.Name("a\\b"), ERROR_PATH_NOT_FOUND},
                                     {folder.Name(""), ERROR_ALREADY_EXISTS}}) {
    EXPECT_FALSE(CreateDirectoryA(path, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(error)) << path;
  }
  for (auto const & [pattern, error] : {std::pair("D:\\*", ERROR_PATH_NOT_FOUND), {"no such file*", ERROR_FILE_NOT_FOUND}}) {
    EXPECT_EQ(FindFirstFileA(pattern, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(error)) << pattern;
  }
  WIN32_FIND_DATA found{};
  HANDLE const search = FindFirstFileA("\\t?p", &found);
  EXPECT_STREQ(found.cFileName, "tmp");
  EXPECT_EQ(found.dwFileAttributes, 0x10u);
  EXPECT_TRUE(FindClose(search) && FindClose(INVALID_HANDLE_VALUE));
}
