// Scrolling views, the tool bar, the meter and places of windows: messages are sent and posted, and the effects are looked at.

#include <zpbase/config.h>
#include <zpbase/platform/host_calls.h>

#include "tests/views/application.h"

namespace {

using Heard = std::vector<std::pair<UINT, WPARAM>>;

constexpr CursorResource busyCursor{500, "busy"};
constexpr UINT barButtons[] = {0xE100, 0, 0xE103};
constexpr ToolBarResource bar{128, barButtons};

class Windows : public ViewsTest {
 protected:
  Windows()
  {
    zp::RegisterCursorModule(&FindCursor);
    zp::RegisterToolBarModule(&FindBar);
  }
  ~Windows() override
  {
    zp::UnregisterCursorModule(&FindCursor);
    zp::UnregisterToolBarModule(&FindBar);
    ::SetCursor(nullptr);
  }

  NotingView & OpenView() { return *FirstView(m_pTemplate->OpenDocumentFile(nullptr)); }

  void Press(CWnd & window, WPARAM key)
  {
    window.PostMessage(WM_KEYDOWN, key);
    ProcessMessages();
  }

 private:
  static CursorResource const * FindCursor(UINT id) { return id == busyCursor.id ? &busyCursor : nullptr; }
  static ToolBarResource const * FindBar(UINT id) { return id == bar.id ? &bar : nullptr; }
};

TEST_F(Windows, TakeEscapeAsARightClickAlsoFromAChildOfTheView)
{
  OpenMainWindow();
  NotingView & view = OpenView();
  CWnd field;
  field.Create("", WS_CHILD, &view, 5);
  CWnd popup;
  popup.Create("", 0, &view, 6);
  EXPECT_EQ(view.GetDlgItem(5), &field);
  EXPECT_EQ(view.GetDlgItem(6), nullptr) << "no child";
  Heard const click = {{WM_COMMAND, 0x103E5}, {WM_RBUTTONDOWN, MK_RBUTTON}, {WM_RBUTTONUP, 0}};
  for (CWnd * const window : {static_cast<CWnd *>(&view), &field}) {
    view.m_Heard.clear();
    Press(*window, VK_ESCAPE);
    EXPECT_EQ(view.m_Heard, click);
  }
  view.m_Heard.clear();
  Press(view, 'A');
  Press(view, VK_SHIFT);
  Press(view, VK_ESCAPE);  // with a shift key it is another key
  EXPECT_LT(GetKeyState(VK_SHIFT), 0);
  view.PostMessage(WM_KEYUP, VK_SHIFT);
  view.PostMessage(WM_KEYLAST + 1, VK_ESCAPE);
  ProcessMessages();
  EXPECT_EQ(GetKeyState(VK_SHIFT), 0);
  Heard const keys = {
      {WM_KEYDOWN, 'A'}, {WM_KEYDOWN, VK_SHIFT}, {WM_KEYDOWN, VK_ESCAPE}, {WM_KEYUP, VK_SHIFT}, {WM_KEYLAST + 1, VK_ESCAPE}};
  EXPECT_EQ(view.m_Heard, keys);
  EXPECT_TRUE(view.HasToolTips());
}

TEST_F(Windows, PassFourCommandsOnToTheMainWindow)
{
  MainFrame & main = OpenMainWindow();
  OpenView();
  for (WPARAM const command : {0xA803, 0xA804, 0xA8A1, 0xA8A2}) main.SendMessage(WM_COMMAND, command);
  EXPECT_EQ(main.m_Commands.size(), 4u) << "posted";
  ProcessMessages();
  EXPECT_EQ(std::vector<UINT>(main.m_Commands.begin() + 4, main.m_Commands.end()),
            (std::vector<UINT>{0xE145, 0xE143, 0xA881, 0xA882}));
}

TEST_F(Windows, ShowTheViewsCursorWithOneLevelOfSaving)
{
  OpenMainWindow();
  NotingView & view = OpenView();
  HCURSOR const arrow = m_App.LoadStandardCursor(IDC_ARROW);
  HCURSOR const cross = m_App.LoadStandardCursor(IDC_CROSS);
  ASSERT_NE(arrow, nullptr);
  ASSERT_NE(cross, nullptr);
  ASSERT_NE(arrow, cross);
  EXPECT_EQ(m_App.LoadStandardCursor("no number"), nullptr);
  auto const over = [&](CWnd & window) {
    return view.SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(window.GetSafeHwnd()), 1);
  };

  ::SetCursor(arrow);
  EXPECT_EQ(over(view), 0) << "the default handling";
  view.SetCursor(500);
  EXPECT_EQ(::GetCursor(), &busyCursor);
  ::SetCursor(nullptr);
  EXPECT_EQ(over(view), 1);
  EXPECT_EQ(::GetCursor(), &busyCursor);
  EXPECT_EQ(over(*view.GetParent()), 0);
  view.RestoreCursor();
  EXPECT_EQ(::GetCursor(), arrow);
  view.RestoreCursor();
  EXPECT_EQ(::GetCursor(), nullptr);
  EXPECT_EQ(over(view), 0);

  ::SetCursor(arrow);
  view.SetCursor(500);
  view.SetCursor(IDC_CROSS);
  view.RestoreCursor();
  EXPECT_EQ(::GetCursor(), &busyCursor) << "the arrow is lost";
}

TEST_F(Windows, InvalidateLogicalRectanglesWithAMargin)
{
  OpenMainWindow();
  NotingView & view = OpenView();
  view.ValidateRect();
  view.InvalidateLogRect(CRect(10, 30, 20, 40), 0);  // twice as large, and Y grows upwards
  CRect update;
  EXPECT_TRUE(view.GetUpdateRect(update));
  EXPECT_EQ(update, (RECT{18, -82, 42, -58}));
  EXPECT_FALSE(view.GetUpdateErase());
  view.InvalidateLogRect(CRect(INT32_MIN, 0, INT32_MAX, 0), 1);
  view.GetUpdateRect(update);
  EXPECT_EQ(update, (RECT{INT32_MIN, -82, INT32_MAX, 2}));
  EXPECT_TRUE(view.GetUpdateErase());
}

class NotingBar : public GPToolBar {
 public:
  using GPToolBar::GPToolBar;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
  {
    m_nEdges += message == WM_NCPAINT;
    return GPToolBar::WindowProc(message, wParam, lParam);
  }
  int m_nEdges = 0;
};

TEST_F(Windows, SetAToolBarUp)
{
  MainFrame & main = OpenMainWindow();
  for (int const dockable : {0, 1}) {
    GPToolBar tools(dockable);
    EXPECT_EQ(tools.CreateCustomToolBar(&main, 128), 1);
    EXPECT_EQ(tools.GetParent(), &main);
    EXPECT_EQ(tools.GetDlgCtrlID(), 0xE800);
    EXPECT_EQ(tools.GetBarStyle(), 0x2834u);
    EXPECT_EQ(tools.GetStyle(), dockable ? 0x50000800u : 0x50000000u);
    EXPECT_EQ(tools.GetDockSides(), dockable ? 0xF000u : 0u);
    EXPECT_EQ(main.GetDockSides(), dockable ? 0xF000u : 0u);
    EXPECT_EQ(tools.GetDockingFrame(), dockable ? &main : nullptr);
    EXPECT_EQ(tools.GetCount(), 3);
    EXPECT_EQ(tools.GetItemID(2), 0xE103u);
  }
  GPToolBar without(1);
  EXPECT_EQ(without.CreateCustomToolBar(nullptr, 128), 0);
  EXPECT_EQ(without.CreateCustomToolBar(&main, 129), 0);
  EXPECT_EQ(without.GetSafeHwnd(), nullptr);
  EXPECT_EQ(without.CreateCustomToolBar(&main, 128), 1);
  EXPECT_EQ(without.CreateCustomToolBar(&main, 129), 0) << "it has a window";
  EXPECT_EQ(without.GetBarStyle(), 0x2834u);
  EXPECT_EQ(without.GetDockingFrame(), &main);
}

TEST_F(Windows, RepaintWhatAMovedToolBarCovered)
{
  MainFrame & main = OpenMainWindow();
  main.MoveWindow(100, 50, 600, 400);
  NotingBar tools(0);
  ASSERT_EQ(tools.CreateCustomToolBar(&main, 128), 1);
  tools.SetWindowPos(nullptr, 0, 0, 200, 30, SWP_NOMOVE);
  CRect update;
  EXPECT_FALSE(main.GetUpdateRect(update));
  EXPECT_EQ(tools.m_nEdges, 0);
  tools.SetWindowPos(nullptr, 20, 10, 0, 0, SWP_NOSIZE);
  EXPECT_TRUE(main.GetUpdateRect(update));
  EXPECT_EQ(update, (RECT{0, 0, 200, 30}));
  EXPECT_TRUE(main.GetUpdateErase());
  EXPECT_EQ(tools.m_nEdges, 1);
  CRect place;
  tools.GetWindowRect(place);
  EXPECT_EQ(place, (RECT{120, 60, 320, 90}));
}

LONGLONG g_nNow = 0;  // milliseconds
int g_nTicks = 0;

void tick(HWND, unsigned int, unsigned int, unsigned long)
{
  ++g_nTicks;
}

TEST_F(Windows, MeterTimeAsLongAsTheMeterLives)
{
  zp::HostCalls const kept = zp::GetHostCalls();
  g_nNow = 1000;
  g_nTicks = 0;
  zp::GetHostCalls().SteadyClock = [] { return g_nNow * 1'000'000; };
  CWnd window;
  window.Create("w");
  unsigned int const before = GetNextTimerID();
  {
    GPMeter const forWindow(&window, &tick, 50);
    GPMeter forNone(nullptr, &tick, 50);
    EXPECT_EQ(GPMeter(&window, &tick, 50).GetMeterID(), before + 3);
    EXPECT_TRUE(KillTimer(nullptr, forNone.GetMeterID())) << "the id is the platform's";
    g_nNow += 50;
    ProcessMessages();
    EXPECT_EQ(g_nTicks, 1);
  }
  g_nNow += 500;
  ProcessMessages();
  EXPECT_EQ(g_nTicks, 1);
  zp::GetHostCalls() = kept;
}

class ToolDialog : public CDialog {
 public:
  ToolDialog() : CDialog(323) {}
};

TEST_F(Windows, KeepTheirPlaceInTheSettings)
{
  CWnd window;
  ToolDialog dialog;
  CPropertySheet sheet;
  RECT const start{1, 2, 201, 102};
  CString text;
  std::tuple<CWnd &, char const *> const kinds[] = {{window, "1, 2, 201, 102"}, {dialog, "1, 2"}, {sheet, "1, 2"}};
  for (auto const & [target, number] : kinds) {
    target.Create("w");
    target.MoveWindow(&start);
    CWindowPlacement().Save("Frame", &target);
    GetSysString(text, "WindowPlacement", "Frame", CString());
    EXPECT_EQ(text, number);
  }
  struct Row {
    CWnd & window;
    char const * value;
    RECT place;
  } const rows[] = {
      {window, "10, 20, 300, 400", {10, 20, 300, 400}},
      {dialog, "10, 20", {10, 20, 210, 120}},
      {sheet, "-5,+7", {-5, 7, 195, 107}},
      {window, "", start},
      {window, "10, 20", {10, 20, 201, 102}},
      {window, " 10 , 20, 3, 4", {10, 2, 201, 102}},
      {window, "x", start},
      {window, "99999999999, 5, 6, 7", start},
      {dialog, "10; 20", {10, 2, 210, 102}},
      {dialog, "2147483647, 0", {INT32_MAX, 0, INT32_MAX, 100}},
  };
  for (Row const & row : rows) {
    row.window.MoveWindow(&start);
    row.window.ShowWindow(SW_SHOWMINIMIZED);
    SetSysString("WindowPlacement", "Frame", row.value);
    CWindowPlacement().Restore("Frame", &row.window);
    WINDOWPLACEMENT now;
    ASSERT_TRUE(row.window.GetWindowPlacement(&now));
    EXPECT_EQ(now.rcNormalPosition, row.place) << row.value;
    EXPECT_EQ(now.showCmd, UINT{SW_SHOWMINIMIZED}) << row.value;
  }
  SetSysString("WindowPlacement", "Other", "1");
  CWindowPlacement().Save("Frame", nullptr);
  CWindowPlacement().Save(nullptr, &window);
  GetSysString(text, "WindowPlacement", "Other", CString());
  EXPECT_EQ(text, "1");
  WINDOWPLACEMENT other{};
  EXPECT_FALSE(window.SetWindowPlacement(&other)) << "of another length";
}

}  // namespace
