// Run control: flags, what a poll does, and how a paused run goes on.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include <zpbase/messages.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/time.h>
#include <zpbase/platform/windows.h>

namespace {

constexpr UINT clearPause = WM_USER + 1;

class Thread : public CWinThread {
 public:
  BOOL OnIdle(LONG count) override
  {
    m_Idle.push_back(count);
    if (m_Idle.size() == m_nUntilAbort) SetAbortFlag(1);
    return FALSE;
  }

  std::vector<LONG> m_Idle;
  size_t m_nUntilAbort = 0;
};

class Window : public CWnd {
 public:
  Window() { Create("run"); }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM) override
  {
    if (message != WM_CREATE) m_Seen.push_back(wParam);
    if (message == clearPause) ClearPauseFlag();
    return 0;
  }

  std::vector<WPARAM> m_Seen;
};

class RunControl : public testing::Test {
 protected:
  ~RunControl() override
  {
    ClearAbortFlag();
    ClearPauseFlag();
  }

  Thread m_Thread;
  Window m_Window;
};

TEST_F(RunControl, FlagsGiveTheirFormerValue)
{
  EXPECT_EQ(SetAbortFlag(1), 0);
  EXPECT_EQ(SetAbortFlag(2), 1);
  EXPECT_EQ(GetAbortFlag(), 2);
  EXPECT_EQ(SetPauseFlag(3), 0);
  EXPECT_EQ(SetPauseFlag(0), 3);
  unsigned int const first = GetNextTimerID();
  EXPECT_EQ(GetNextTimerID(), first + 1);
}

TEST_F(RunControl, PollsOnceUnlessTheRunIsHeld)
{
  m_Window.PostMessage(WM_USER, 1);
  m_Window.PostMessage(WM_USER, 2);
  EXPECT_EQ(AbortRun(), 0);
  EXPECT_EQ(m_Window.m_Seen, (std::vector<WPARAM>{1, 2}));
  EXPECT_EQ(m_Thread.m_Idle, (std::vector<LONG>{0, 1}));

  SetPauseFlag(1);
  SetAbortFlag(5);
  EXPECT_EQ(AbortRun(), 5);
  EXPECT_EQ(m_Thread.m_Idle.size(), 4u);
}

TEST_F(RunControl, HoldsAPausedRunUntilItIsAbortedOrFreed)
{
  SetPauseFlag(1);
  m_Thread.m_nUntilAbort = 5;
  EXPECT_EQ(AbortRun(), 1);
  EXPECT_EQ(m_Thread.m_Idle.size(), 6u);

  ClearAbortFlag();
  std::thread other([handle = m_Window.GetSafeHwnd()] { PostMessageA(handle, clearPause, 0, 0); });
  EXPECT_EQ(AbortRun(), 0);
  EXPECT_EQ(GetPauseFlag(), 0);
  other.join();
}

TEST_F(RunControl, PostsTheQuitAgainAndGoesOn)
{
  PostQuitMessage(7);
  m_Window.PostMessage(WM_USER, 1);
  EXPECT_EQ(AbortRun(), 0);
  EXPECT_EQ(m_Window.m_Seen.size(), 1u);
  EXPECT_TRUE(m_Thread.m_Idle.empty());
  MSG message;
  EXPECT_FALSE(GetMessageA(&message));
  EXPECT_EQ(message.wParam, 7u);
  EXPECT_FALSE(PeekMessageA(&message, PM_NOREMOVE));
}

// Rests 10 ms between rounds, and counts them.
class CountingThread : public CWinThread {
 public:
  BOOL PumpMessage() override
  {
    if (++m_nRounds == 6) SetAbortFlag(1);
    return CWinThread::PumpMessage();
  }

  int m_nRounds = 0;
};

TEST_F(RunControl, RestsBetweenRoundsThoughATimerIsDueBehindAQuit)
{
  CountingThread thread;
  zp::HostCalls const kept = zp::GetHostCalls();
  static LONGLONG now = 0;
  zp::GetHostCalls().SteadyClock = [] { return now * 1'000'000; };
  SetTimer(m_Window.GetSafeHwnd(), 1, 10, nullptr);
  now = 10;
  PostQuitMessage(7);
  SetPauseFlag(1);
  auto const begin = std::chrono::steady_clock::now();
  EXPECT_EQ(AbortRun(), 1);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
  EXPECT_TRUE(m_Window.m_Seen.empty());
  zp::WaitForMessage(-1);  // doesn't wait for what can't come
  MSG message;
  EXPECT_FALSE(GetMessageA(&message));
  EXPECT_TRUE(GetMessageA(&message)) << "the timer, once the quit is gone";
  KillTimer(m_Window.GetSafeHwnd(), 1);
  zp::GetHostCalls() = kept;
}

TEST(RunControlWithoutAThreadObject, DeliversTheMessagesAllTheSame)
{
  Window window;
  window.PostMessage(WM_USER, 9);
  EXPECT_EQ(AbortRun(), 0);
  EXPECT_EQ(window.m_Seen, (std::vector<WPARAM>{9}));
}

}  // namespace
