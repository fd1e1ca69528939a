// A thread's message queue: posted messages, the quit that follows them, and the timers of the thread.

#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include <zpbase/platform/messages.h>

namespace zp {

class MessageQueue {
 public:
  void Post(MSG const & message);  // from any thread
  void PostQuit(int exitCode);

  // The next message, taken out of the queue if remove is set.
  std::optional<MSG> Next(bool remove);

  // Waits until there is a posted message or a timer is due, at most that long; negative waits as long as it takes. The thread
  // itself posts its quit, so that none can come while it waits. While one is pending no timer has its turn: none ends the wait,
  // and a wait as long as it takes is over at once.
  void Wait(int milliseconds);

  UINT StartTimer(HWND window, UINT id, UINT interval, TIMERPROC callback);
  bool StopTimer(HWND window, UINT id);
  TIMERPROC FindTimer(HWND window, UINT id) const;  // null if it has been stopped or has none

  // A window that is gone gets no more messages.
  void ForgetWindow(HWND window);

 private:
  struct Timer {
    HWND window;
    UINT id;
    UINT interval;  // milliseconds
    TIMERPROC callback;
    LONGLONG due;
  };

  Timer * FindDue(LONGLONG now);
  LONGLONG UntilDue(LONGLONG now) const;  // milliseconds, negative without a timer
  std::optional<MSG> NextTimer(bool remove);

  std::mutex mutable m_Mutex;  // guards the posted messages and the quit; timers are the thread's own
  std::condition_variable m_Posted;
  std::deque<MSG> m_Messages;
  std::optional<int> m_Quit;
  std::vector<Timer> m_Timers;
  UINT m_nLastThreadTimer = 0;
};

// The calling thread's queue.
std::shared_ptr<MessageQueue> const & GetThreadQueue();

}  // namespace zp
