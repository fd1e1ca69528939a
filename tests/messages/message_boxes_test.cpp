// Message boxes: defaults, beeps, the owner of the focus, the box of a running simulation, formatted and system texts.

#include <gtest/gtest.h>

#include <tuple>

#include <zpbase/config.h>
#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/resources.h>

#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

namespace {

class MessageBoxes : public testing::Test {
 protected:
  MessageBoxes()
  {
    m_App.SetProfileFile(m_Folder.Name("test.ini"));
    zp::ForgetCachedSettings();
  }
  ~MessageBoxes() override
  {
    SetSimulationInProgress(0);
    ClearAbortFlag();
  }

  // Text, style and help of the last box.
  std::string Last() const
  {
    RecordingInterface::Message const & last = m_UI.m_Messages.back();
    return last.text + '|' + std::to_string(last.style) + '|' + std::to_string(last.helpId);
  }

  TempFolder m_Folder;
  CWinApp m_App{"test"};
  RecordingInterface m_UI;
};

TEST_F(MessageBoxes, GiveIconAndHelpTheirDefaults)
{
  std::tuple<unsigned int, unsigned int, unsigned int, unsigned int, unsigned int> const rows[] = {
      {0, 0, 0, 64, 1454}, {4, 0, 0, 4 | 32, 1454}, {4, 16, 7, 4 | 16, 7}, {0, 48, 0, 48, 1454}, {1, 0, 2, 1 | 32, 2},
  };
  for (auto const & [type, icon, help, style, shownHelp] : rows) {
    EXPECT_EQ(BeepMsgBox(CString("text"), type, icon, help), IDOK);
    EXPECT_EQ(Last(), "text|" + std::to_string(style) + '|' + std::to_string(shownHelp));
  }
  BeepMsgBox(43150, 0, 0, 0);
  EXPECT_EQ(Last(), "Do you want to leave Zephlow?|64|43150");
}

char const * findShare(UINT id)
{
  return id == 70001 ? "100%% of %s" : nullptr;
}

TEST_F(MessageBoxes, ShowAResourceAsItStandsUnlessItIsFormatted)
{
  zp::RegisterResourceModule(&findShare);
  BeepMsgBox(70001, 0, 0, 0);
  EXPECT_EQ(m_UI.m_Messages.back().text, "100%% of %s");
  SystemErrorMsgBox(2, 70001);
  EXPECT_TRUE(m_UI.m_Messages.back().text.ends_with("100%% of %s"));
  PrintfMsgBox(70001, {"it"});
  EXPECT_EQ(m_UI.m_Messages.back().text, "100% of it");
  zp::UnregisterResourceModule(&findShare);
}

TEST_F(MessageBoxes, BeepAlwaysForProblemsAndElseIfAllowed)
{
  for (unsigned int const type : {16u, 48u, 64u, 32u, 0u}) GPBeep(type);
  EXPECT_EQ(m_UI.m_Beeps, (std::vector<UINT>{16, 48}));
  SetSysFlag("Misc", GetAllowBeepKey(), 1);
  zp::ForgetCachedSettings();
  GPBeep(64);
  EXPECT_EQ(m_UI.m_Beeps.back(), 64u);
}

TEST_F(MessageBoxes, DisableTheOwnerOfTheFocusWhileTheyStand)
{
  CWnd frame;
  CWnd field;
  frame.Create("frame");
  field.Create("field", WS_CHILD, &frame, 5);
  m_App.m_pMainWnd = &frame;
  bool enabled = true;
  m_UI.m_WhileShown = [&] { enabled = frame.IsWindowEnabled(); };

  BeepMsgBox(CString("no focus"), 0, 0, 0);
  EXPECT_TRUE(enabled);
  EXPECT_EQ(CWnd::GetForegroundWindow(), &frame);

  field.SetFocus();
  BeepMsgBox(CString("focus"), 0, 0, 0);
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(frame.IsWindowEnabled());

  m_UI.m_WhileShown = [&] { frame.DestroyWindow(); };
  BeepMsgBox(CString("the owner goes"), 0, 0, 0);
  EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST_F(MessageBoxes, OfferToStopARunningSimulation)
{
  SetSimulationInProgress(1);
  m_UI.m_nPress = 990;
  EXPECT_EQ(BeepMsgBox(CString("Tray 3 is dry."), 4, 0, 0), IDYES);
  EXPECT_EQ(m_UI.m_DialogTexts.front(), "Tray 3 is dry.");
  EXPECT_EQ(m_UI.m_nStaticColor, 0x000080u);
  EXPECT_EQ(GetAbortFlag(), 0);

  m_UI.m_nPress = IDCANCEL;
  EXPECT_EQ(BeepMsgBox(CString("dismissed"), 0, 0, 0), -1);
  m_UI.m_nPress = 0;
  EXPECT_EQ(BeepMsgBox(CString("left alone"), 0, 0, 0), -1);
  EXPECT_EQ(SimulationIsInProgress(), 1);

  m_UI.m_nPress = 991;
  EXPECT_EQ(PrintfMsgBox(43150), IDNO);
  EXPECT_EQ(GetAbortFlag(), 1);
  EXPECT_EQ(SimulationIsInProgress(), 0);
  EXPECT_TRUE(m_UI.m_Messages.empty());

  BeepMsgBox(CString("an ordinary box again"), 0, 0, 0);
  EXPECT_EQ(m_UI.m_Messages.size(), 1u);
}

TEST_F(MessageBoxes, FormatTheirResource)
{
  PrintfMsgBox(43782, "C:\\a.obj", 3, "It ends early.");
  EXPECT_EQ(Last(), "The file C:\\a.obj can't be read (problem 3): It ends early.|64|43782");
  PrintfMsgBoxStyle(4, 48, 43782, std::string(6000, 'x').c_str(), 3, "");
  EXPECT_EQ(Last(), "The file " + std::string(4991, 'x') + "|52|43782");
  PrintfMsgBox(1, "a name", 5);
  EXPECT_EQ(Last(), "1: a name 5|64|1");
  PrintfMsgBox(1, {"a name", 5});
  EXPECT_EQ(Last(), "1: a name 5|64|1");
  PrintfMsgBoxStyle(4, 48, 1, CString("a name"), 0.5);
  EXPECT_EQ(Last(), "1: a name 0.5|52|1");
}

TEST_F(MessageBoxes, TellASystemErrorWithTheStateOfTheSystem)
{
  SystemErrorMsgBox(112, CString("Writing a record"));
  EXPECT_EQ(Last(),
            "--- SYSTEM ERROR 112 ---\nThere is not enough space on the disk.\n\n--- SYSTEM STATE ---\nWriting a record|16|1454");
  SystemErrorMsgBox(0xFFFFFFFFul, 43150);
  EXPECT_EQ(m_UI.m_Messages.back().text,
            "--- SYSTEM ERROR 4294967295 ---\nThere is no text for this error.\n\n"
            "--- SYSTEM STATE ---\nDo you want to leave Zephlow?");
}

TEST_F(MessageBoxes, AskBeforeTheEndUnlessTheUserIsInAHurry)
{
  m_UI.m_nAnswer = IDYES;
  EXPECT_EQ(QuitZephlow(), 1);
  EXPECT_EQ(m_UI.m_Messages.back().style, 4u | 16u);
  m_UI.m_nAnswer = IDNO;
  EXPECT_EQ(QuitZephlow(), 0);
  SetSysFlag("Misc", GetFastQuitKey(), 1);
  EXPECT_EQ(QuitZephlow(), 1);
  EXPECT_EQ(m_UI.m_Messages.size(), 2u);
}

}  // namespace
