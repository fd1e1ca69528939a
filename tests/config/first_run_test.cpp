// What a new user gets of the default user's settings, and what stops the copy.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <zpbase/config.h>

#include "tests/support/TempFolder.h"

namespace {

class FirstRun : public testing::Test {
 protected:
  FirstRun()
  {
    setenv("ZP_USER_HIVE", (m_Folder.Path() / "user.reg").c_str(), 1);
    setenv("ZP_DEFAULT_HIVE", (m_Folder.Path() / "default.reg").c_str(), 1);
  }

  void Default(std::string const & lines) const { m_Folder.Write("default.reg", "REGEDIT4\r\n" + lines); }
  std::string User() const { return m_Folder.Read("user.reg"); }

  TempFolder m_Folder;
};

std::string const branch = "[HKEY_USERS\\.DEFAULT\\Software\\Acme\\App";
std::string const own = "[HKEY_CURRENT_USER\\Software\\Acme\\App";

}  // namespace

TEST_F(FirstRun, CopiesTheValuesOfEachSubKeyAndNothingElse)
{
  Default(branch + "]\r\n\"top\"=\"x\"\r\n" + branch + "\\A]\r\n\"n\"=dword:00000005\r\n\"none\"=hex:\r\n\"t\"=\"x\"\r\n" +
          branch + "\\A\\Deep]\r\n\"d\"=\"x\"\r\n" + branch + "\\B]\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", ""), 1);
  EXPECT_EQ(User(), "REGEDIT4\r\n\r\n" + own + "]\r\n\r\n" + own + "\\A]\r\n\"n\"=dword:00000005\r\n\"t\"=\"x\"\r\n\r\n" + own +
                        "\\B]\r\n");
}

TEST_F(FirstRun, CopiesTheValuesOfOneSection)
{
  Default(branch + "\\A]\r\n@=\"x\"\r\n" + branch + "\\A\\Deep]\r\n\"d\"=\"x\"\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", "A"), 1);
  EXPECT_EQ(User(), "REGEDIT4\r\n\r\n" + own + "\\A]\r\n@=\"x\"\r\n");
}

TEST_F(FirstRun, LeavesAUserWhoHasTheBranchAlone)
{
  Default(branch + "\\A]\r\n\"x\"=\"x\"\r\n");
  m_Folder.Write("user.reg", "REGEDIT4\r\n" + own + "\\Other]\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", ""), 1);
  EXPECT_EQ(User(), "REGEDIT4\r\n" + own + "\\Other]\r\n");
}

TEST_F(FirstRun, WithoutADefaultBranchNothingIsCreated)
{
  EXPECT_EQ(InitRegistry("Acme", "App", ""), 0);
  EXPECT_FALSE(m_Folder.Has("user.reg"));
}

TEST_F(FirstRun, AValueOfMoreThan259BytesStopsTheCopy)
{
  std::string const text(259, 'x');  // 260 bytes with its zero
  Default(branch + "\\A]\r\n\"long\"=\"" + text + "\"\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", "A"), 0);
  EXPECT_EQ(User(), "REGEDIT4\r\n\r\n" + own + "\\A]\r\n");
  Default(branch + "\\B]\r\n\"long\"=\"" + text.substr(1) + "\"\r\n\"" + text.substr(1) + "\"=\"\"\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", "B"), 1);
  Default(branch + "\\C]\r\n\"" + text + "\"=\"\"\r\n");
  EXPECT_EQ(InitRegistry("Acme", "App", "C"), 0);
}
