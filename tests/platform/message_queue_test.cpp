// The thread's queue and its timers, under a clock that the test moves.

#include <gtest/gtest.h>

#include <thread>

#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/time.h>
#include <zpbase/platform/windows.h>

namespace {

LONGLONG g_nNow = 0;
std::vector<unsigned int> g_Fired;

void fired(HWND, unsigned int, unsigned int id, unsigned long)
{
  g_Fired.push_back(id);
}

class MessageQueueTest : public testing::Test {
 protected:
  MessageQueueTest() : m_Kept(zp::GetHostCalls())
  {
    g_nNow = 1000;
    g_Fired.clear();
    zp::GetHostCalls().SteadyClock = [] { return g_nNow * 1'000'000; };
  }
  ~MessageQueueTest() override { zp::GetHostCalls() = m_Kept; }

  // Delivers what is there now; gives the ids of the timers that fired.
  std::vector<unsigned int> Pump()
  {
    g_Fired.clear();
    for (MSG message; PeekMessageA(&message, PM_REMOVE);) DispatchMessageA(&message);
    return g_Fired;
  }

  zp::HostCalls m_Kept;
};

TEST_F(MessageQueueTest, GivesPostsThenTheQuitThenTimers)
{
  UINT const timer = SetTimer(nullptr, 0, 20, &fired);
  g_nNow += 20;
  PostQuitMessage(3);
  EXPECT_TRUE(PostMessageA(nullptr, WM_USER, 1, -1));
  MSG message;
  ASSERT_TRUE(PeekMessageA(&message, PM_NOREMOVE));
  EXPECT_TRUE(GetMessageA(&message));
  EXPECT_EQ(message.message, UINT{WM_USER});
  EXPECT_EQ(message.lParam, -1);
  EXPECT_EQ(message.time, 1020u);
  EXPECT_FALSE(GetMessageA(&message));
  EXPECT_TRUE(GetMessageA(&message));
  EXPECT_EQ(message.message, UINT{WM_TIMER});
  EXPECT_EQ(message.wParam, timer);
  EXPECT_TRUE(KillTimer(nullptr, timer));
  EXPECT_FALSE(KillTimer(nullptr, timer));
}

TEST_F(MessageQueueTest, FiresTimersWhenTheyAreDueAndMissedOnesOnce)
{
  CWnd window;
  window.Create("w");
  HWND const handle = window.GetSafeHwnd();
  EXPECT_EQ(SetTimer(handle, 5, 100, &fired), 5u);
  EXPECT_EQ(SetTimer(handle, 6, 0, &fired), 6u);
  g_nNow += 9;
  EXPECT_TRUE(Pump().empty());
  g_nNow += 1;
  EXPECT_EQ(Pump(), (std::vector<unsigned int>{6}));
  g_nNow += 350;
  EXPECT_EQ(Pump(), (std::vector<unsigned int>{6, 5}));
  SetTimer(handle, 5, 10, &fired);
  KillTimer(handle, 6);
  g_nNow += 10;
  EXPECT_EQ(Pump(), (std::vector<unsigned int>{5}));
  window.DestroyWindow();
  g_nNow += 100;
  EXPECT_TRUE(Pump().empty());
}

TEST(Windows, StandOnlyBehindParentsThatHaveAWindow)
{
  CWnd child;
  {
    CWnd parent;
    EXPECT_FALSE(child.Create("child", WS_CHILD, &parent, 1));
    EXPECT_EQ(child.GetSafeHwnd(), nullptr);
    EXPECT_TRUE(parent.Create("parent"));
    EXPECT_TRUE(child.Create("child", WS_CHILD, &parent, 1));
  }
  EXPECT_EQ(child.GetSafeHwnd(), nullptr) << "gone with its parent";
  EXPECT_FALSE(child.DestroyWindow());
}

TEST_F(MessageQueueTest, TakesPostsFromOtherThreadsAndForgetsWindowsThatAreGone)
{
  struct Window : CWnd {
    LRESULT WindowProc(UINT, WPARAM wParam, LPARAM) override { return m_nSum += static_cast<LRESULT>(wParam); }
    LRESULT m_nSum = 0;
  } window;
  window.Create("w");
  HWND const handle = window.GetSafeHwnd();
  auto const postAll = [handle] {
    for (int i = 0; i < 1000; ++i) PostMessageA(handle, WM_USER, 1, 0);
  };
  std::thread first(postAll);
  std::thread second(postAll);
  first.join();
  second.join();
  Pump();
  EXPECT_EQ(window.m_nSum, 2000);

  window.PostMessage(WM_USER, 1);
  window.DestroyWindow();
  MSG message;
  EXPECT_FALSE(PeekMessageA(&message, PM_NOREMOVE));
  EXPECT_FALSE(PostMessageA(handle, WM_USER, 1, 0));
  EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
}

}  // namespace
