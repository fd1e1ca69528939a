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

// At the office that the tests share.
class SharedOfficeTool : public OfficeTool {
 protected:
  void SetUp() override
  {
    OfficeTool::SetUp();
    if (IsSkipped()) return;
    OfficeServer().Application();
    setenv("ZP_OFFICE_PIPE", SharedPipe().c_str(), 1);
  }
  void TearDown() override { unsetenv("ZP_OFFICE_PIPE"); }
};

TEST_F(SharedOfficeTool, TellsTheFirstCellThatASheetHasLost)
{
  ASSERT_EQ(RunZp(m_Folder.Path(), "sheet write b.xlsx Old -", "a,b\n1,0.30000000000000004\n2,0.1\n").status, 0);
  ProgramRun const other = Run("write b.xlsx New -", "1.5\n");
  EXPECT_EQ(other.out, "1 row of up to 1 column in the new sheet \"New\" of b.xlsx\n");
  EXPECT_EQ(other.err.substr(0, other.err.find('\n') + 1),  // a sanitizer tells of suppressions behind it
            "zp: warning: b.xlsx: was written, but B2 of the sheet \"Old\" isn't what it was before: the spreadsheet server, or "
            "the format of the file, doesn't keep every value\n");
  ProgramRun const own = Run("write c.xls New -", "1,x\n2,TRUE\n");
  EXPECT_EQ(own.status, 1);
  EXPECT_NE(own.err.find("B2 of the sheet \"New\""), std::string::npos) << own.err;
}

TEST_F(SharedOfficeTool, WritesNoChartWhoseNameTheFormatLosesUnlessAsked)
{
  ASSERT_EQ(RunZp(m_Folder.Path(), "sheet write b.xlsx Data -", "1,2\n").status, 0);
  std::string const bytes = m_Folder.Read("b.xlsx");
  ProgramRun const refused = Run("chart b.xlsx Profile");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err.substr(0, refused.err.find('\n') + 1),
            "zp: " + Path("b.xlsx") +
                " would lose the names of new charts, which .ods keeps; with --drop it is written without them\n");
  EXPECT_EQ(m_Folder.Read("b.xlsx"), bytes);
  EXPECT_EQ(Run("chart b.xlsx Profile --drop").out, "a new chart of b.xlsx, without its name\n");
  ASSERT_EQ(Run("write b.ods Data -", "1,2\n").status, 0);
  EXPECT_EQ(Run("chart b.ods Profile").out, "the new chart \"Profile\" of b.ods\n");
}

}  // namespace
