// One message queue a thread: posting from anywhere, peeking, waiting and delivering, and the thread's timers.

#include "platform/messages/message_queue_internal.h"

#include <algorithm>
#include <chrono>

#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/windows.h>

#include "platform/windows/key_state_internal.h"
#include "platform/windows/window_table_internal.h"

namespace {

constexpr UINT minInterval = 10;  // milliseconds

LONGLONG now()
{
  constexpr LONGLONG nanosPerMillisecond = 1'000'000;
  return zp::GetHostCalls().SteadyClock() / nanosPerMillisecond;
}

}  // namespace

namespace zp {

std::shared_ptr<MessageQueue> const & GetThreadQueue()
{
  thread_local auto const queue = std::make_shared<MessageQueue>();
  return queue;
}

void MessageQueue::Post(MSG const & message)
{
  {
    std::lock_guard const lock(m_Mutex);
    m_Messages.push_back(message);
  }
  m_Posted.notify_one();
}

void MessageQueue::PostQuit(int exitCode)
{
  std::lock_guard const lock(m_Mutex);
  m_Quit = exitCode;
}

std::optional<MSG> MessageQueue::Next(bool remove)
{
  {
    std::lock_guard const lock(m_Mutex);
    if (!m_Messages.empty()) {
      MSG const message = m_Messages.front();
      if (remove) m_Messages.pop_front();
      return message;
    }
    if (m_Quit) {
      MSG const quit{.message = WM_QUIT, .wParam = static_cast<WPARAM>(*m_Quit), .time = static_cast<DWORD>(now())};
      if (remove) m_Quit.reset();
      return quit;
    }
  }
  return NextTimer(remove);
}

MessageQueue::Timer * MessageQueue::FindDue(LONGLONG time)
{
  auto const first =
      std::min_element(m_Timers.begin(), m_Timers.end(), [](Timer const & a, Timer const & b) { return a.due < b.due; });
  return first != m_Timers.end() && first->due <= time ? &*first : nullptr;
}

std::optional<MSG> MessageQueue::NextTimer(bool remove)
{
  LONGLONG const time = now();
  Timer * const timer = FindDue(time);
  if (timer == nullptr) return std::nullopt;
  if (remove) timer->due = time + timer->interval;
  return MSG{.hwnd = timer->window, .message = WM_TIMER, .wParam = timer->id, .time = static_cast<DWORD>(time)};
}

LONGLONG MessageQueue::UntilDue(LONGLONG time) const
{
  LONGLONG until = -1;
  for (Timer const & timer : m_Timers) {
    LONGLONG const left = std::max<LONGLONG>(timer.due - time, 0);
    if (until < 0 || left < until) until = left;
  }
  return until;
}

void MessageQueue::Wait(int milliseconds)
{
  std::unique_lock lock(m_Mutex);
  if (m_Quit && milliseconds < 0) return;
  LONGLONG const due = m_Quit ? -1 : UntilDue(now());
  LONGLONG const most = milliseconds < 0 || (due >= 0 && due < milliseconds) ? due : milliseconds;
  auto const arrived = [this] { return !m_Messages.empty(); };
  if (most < 0)
    m_Posted.wait(lock, arrived);
  else
    m_Posted.wait_for(lock, std::chrono::milliseconds(most), arrived);
}

UINT MessageQueue::StartTimer(HWND window, UINT id, UINT interval, TIMERPROC callback)
{
  if (window == nullptr) id = ++m_nLastThreadTimer;
  StopTimer(window, id);
  interval = std::max(interval, minInterval);
  m_Timers.push_back({window, id, interval, callback, now() + interval});
  return id;
}

bool MessageQueue::StopTimer(HWND window, UINT id)
{
  return std::erase_if(m_Timers, [&](Timer const & timer) { return timer.window == window && timer.id == id; }) != 0;
}

TIMERPROC MessageQueue::FindTimer(HWND window, UINT id) const
{
  auto const found = std::find_if(m_Timers.begin(), m_Timers.end(),
                                  [&](Timer const & timer) { return timer.window == window && timer.id == id; });
  return found != m_Timers.end() ? found->callback : nullptr;
}

void MessageQueue::ForgetWindow(HWND window)
{
  std::erase_if(m_Timers, [window](Timer const & timer) { return timer.window == window; });
  std::lock_guard const lock(m_Mutex);
  std::erase_if(m_Messages, [window](MSG const & message) { return message.hwnd == window; });
}

void WaitForMessage(int milliseconds)
{
  GetThreadQueue()->Wait(milliseconds);
}

}  // namespace zp

BOOL PeekMessageA(MSG * message, UINT remove)
{
  auto const next = zp::GetThreadQueue()->Next(remove == PM_REMOVE);
  if (!next) return FALSE;
  if (remove == PM_REMOVE) zp::NoteKey(*next);
  *message = *next;
  return TRUE;
}

BOOL GetMessageA(MSG * message)
{
  while (!PeekMessageA(message, PM_REMOVE)) zp::GetThreadQueue()->Wait(-1);
  return message->message != WM_QUIT;
}

LRESULT DispatchMessageA(MSG const * message)
{
  if (message->message == WM_TIMER) {
    auto const id = static_cast<UINT>(message->wParam);
    if (TIMERPROC const callback = zp::GetThreadQueue()->FindTimer(message->hwnd, id); callback != nullptr) {
      callback(message->hwnd, WM_TIMER, id, message->time);
      return 0;
    }
  }
  CWnd * const window = CWnd::FromHandle(message->hwnd);
  return window != nullptr ? window->WindowProc(message->message, message->wParam, message->lParam) : 0;
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
  auto const queue = window != nullptr ? zp::FindWindowQueue(window) : zp::GetThreadQueue();
  if (!queue) return FALSE;
  queue->Post({window, message, wParam, lParam, static_cast<DWORD>(now())});
  return TRUE;
}

void PostQuitMessage(int exitCode)
{
  zp::GetThreadQueue()->PostQuit(exitCode);
}

UINT SetTimer(HWND window, UINT id, UINT interval, TIMERPROC callback)
{
  return zp::GetThreadQueue()->StartTimer(window, id, interval, callback);
}

BOOL KillTimer(HWND window, UINT id)
{
  return zp::GetThreadQueue()->StopTimer(window, id);
}
