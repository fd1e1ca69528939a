// zp sheet with an office behind it: what its user is told.

#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/office/OfficeServer.h"
#include "tests/support/RunProgram.h"

namespace {

class OfficeTool : public testing::Test {
 protected:
  void SetUp() override
  {
    if (std::string const why = OfficeServer().WhyNot(); !why.empty()) GTEST_SKIP() << why;
  }

  ProgramRun Run(std::string const & arguments, std::string const & input = "") const
  {
    return RunZp(m_Folder.Path(), "sheet " + arguments + " --server Zephlow.Office", input);
  }
  std::string Path(char const * file) const { return (m_Folder.Path() / file).string(); }

  TempFolder m_Folder;
};

TEST_F(OfficeTool, TellsWhyThereIsNoOffice)
{
  setenv("ZP_OFFICE_PROGRAM", Path("none").c_str(), 1);
  setenv("ZP_OFFICE_PIPE", "zephlow-none-such", 1);
  ProgramRun const run = Run("list b.xlsx");
  unsetenv("ZP_OFFICE_PROGRAM");
  unsetenv("ZP_OFFICE_PIPE");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("zp: the spreadsheet server \"Zephlow.Office\" doesn't start: " + Path("none"))) << run.err;
}

}  // namespace
