// The two forms of a path, both directions.

#include <gtest/gtest.h>

#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <cstdlib>
#include <string>

using namespace std::string_literals;

TEST(Paths, InsideFormBecomesTheHosts)
{
  struct Row {
    std::string inside;
    bool accepted;
    std::string host;
  };
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
  for (Row const & row : rows) {
    std::string host = "former";
    EXPECT_EQ(ToHostPath(row.inside, host), row.accepted) << row.inside;
    EXPECT_EQ(host, row.host) << row.inside;
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
