// Warnings: the gate, the file, and what stops a warning.

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include <zpbase/config.h>
#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/file.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/resources.h>
#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

class Warnings : public testing::Test {
 protected:
  Warnings()
  {
    m_App.SetProfileFile(m_Folder.Name("test.ini"));
    std::strcpy(job_path, m_Folder.Name("").GetString());
    zp::ResetWarningsGate();
  }
  ~Warnings() override
  {
    job_path[0] = '\0';
    zp::ResetWarningsGate();
  }

  TempFolder m_Folder;
  CWinApp m_App{"test"};
};

TEST_F(Warnings, RemoveTheLastRunsFileAtTheFirstUseAlone)
{
  m_Folder.Write("WARNINGS", "of the last run\r\n");
  EXPECT_NE(AllowWarnings(), 0);
  EXPECT_FALSE(m_Folder.Has("WARNINGS"));
  m_Folder.Write("WARNINGS", "kept\r\n");
  EXPECT_NE(AllowWarnings(), 0);
  EXPECT_EQ(PutWarning("Tray %d", 3), 1);
  EXPECT_EQ(m_Folder.Read("WARNINGS"), "kept\r\nTray 3\r\n");
  FlushWarningsFile();
  EXPECT_FALSE(m_Folder.Has("WARNINGS"));
  FlushWarningsFile();
}

TEST_F(Warnings, GoToWhoeverTakesThemLast)
{
  std::string outer;
  std::string inner;
  zp::WarningTaker const first([&](std::string_view text) { outer += text; });
  {
    zp::WarningTaker const second([&](std::string_view text) {
      inner += text;
      PutWarning("a warning of its own");
    });
    PutWarning("%s", std::string(300, 'x').c_str());
  }
  job_path[0] = '\0';
  EXPECT_EQ(PutWarning("Tray %d", 3), 1);
  EXPECT_EQ(inner, std::string(300, 'x'));
  EXPECT_EQ(outer, "Tray 3");
  EXPECT_FALSE(m_Folder.Has("WARNINGS"));
}

TEST_F(Warnings, AreOffForNoInAnyCaseAlone)
{
  std::tuple<char const *, int> const rows[] = {{"no", 0}, {"NO", 0}, {"Yes", 1}, {"", 1}, {"none", 1}};
  for (auto const & [setting, allowed] : rows) {
    zp::ResetWarningsGate();
    m_Folder.Write("WARNINGS", "old");
    SetSysString("Misc", GetWarningsKey(), setting);
    EXPECT_EQ(AllowWarnings() != 0, allowed != 0) << setting;
    EXPECT_EQ(PutWarning("%s", "text"), allowed) << setting;
    EXPECT_EQ(m_Folder.Read("WARNINGS"), allowed != 0 ? "text\r\n" : "old") << setting;
  }
  SetSysString("Misc", GetWarningsKey(), "No");
  EXPECT_NE(AllowWarnings(), 0) << "decided once";
}

TEST_F(Warnings, AreOneLineEachCutAt260Characters)
{
  PutWarning("first\r\nsecond");
  PutWarning("%s", std::string(400, 'x').c_str());
  EXPECT_EQ(m_Folder.Read("WARNINGS"), "first  second\r\n" + std::string(260, 'x') + "\r\n");
}

char const * findTray(UINT id)
{
  return id == 55009 ? "Tray %d of %s is dry" : nullptr;
}

TEST_F(Warnings, GivenByNumberShowItAndTheirArgumentsThoughTheyHaveNoText)
{
  zp::RegisterResourceModule(&findTray);
  PutWarning(55009U, 3, "tower");
  PutWarning(55009U, "tower", CString("3"));  // what doesn't fit is shown, not read
  PutWarning(55009U, 3LL, "tower");           // a type beyond numbers and texts
  zp::UnregisterResourceModule(&findTray);
  PutWarning(55009U, 3, "tower", 0.5);
  PutWarning(55010U, 3LL);
  PutWarning(55010U);
  EXPECT_EQ(m_Folder.Read("WARNINGS"),
            "Warning 1: Tray 3 of tower is dry\r\nWarning 1: Tray %d of 3 is dry\r\nWarning 1: Tray 3 of tower is dry\r\n"
            "Warning 1: 55009: 3 tower 0.5\r\nWarning 2: 55010\r\nWarning 2: 55010\r\n");
}

int g_nCalls = 0;

TEST_F(Warnings, OfTheirOwnFileDontComeBackWithoutEnd)
{
  auto & calls = zp::GetHostCalls();
  auto const kept = calls;
  calls.WriteAt = [](int, void const *, size_t, LONGLONG) {
    ++g_nCalls;
    errno = ENOSPC;
    return -1L;
  };
  EXPECT_EQ(PutWarning("lost"), 1);
  calls = kept;
  EXPECT_GT(g_nCalls, 0);
  EXPECT_LT(g_nCalls, 3);
  EXPECT_EQ(PutWarning("kept"), 1);
  EXPECT_EQ(m_Folder.Read("WARNINGS"), "kept\r\n");

  CFile holder;
  ASSERT_TRUE(holder.Open(m_Folder.Name("WARNINGS"), CFile::modeReadWrite));
  EXPECT_EQ(PutWarning("lost"), 1);
  EXPECT_EQ(m_Folder.Read("WARNINGS"), "kept\r\n");
}

TEST_F(Warnings, WithoutAJobWriteAndDeleteNothing)
{
  m_Folder.Write("WARNINGS", "old");
  job_path[0] = '\0';
  EXPECT_EQ(PutWarning("text"), 1);
  FlushWarningsFile();
  EXPECT_EQ(m_Folder.Read("WARNINGS"), "old");
}

TEST(WarningsWithoutAnApplication, StayUndecided)
{
  TempFolder const folder;
  std::strcpy(job_path, folder.Name("").GetString());
  folder.Write("WARNINGS", "old\r\n");
  zp::ResetWarningsGate();
  EXPECT_NE(AllowWarnings(), 0);
  EXPECT_EQ(folder.Read("WARNINGS"), "old\r\n");
  {
    CWinApp app("test");
    app.SetProfileFile(folder.Name("test.ini"));
    EXPECT_NE(AllowWarnings(), 0);
    EXPECT_FALSE(folder.Has("WARNINGS"));
  }
  job_path[0] = '\0';
  zp::ResetWarningsGate();
}

}  // namespace
