// The time for which something that another program may hold is tried again.
#pragma once

#include <zpbase/platform/host_calls.h>

class Patience {
 public:
  bool IsOver() const { return zp::GetHostCalls().SteadyClock() >= m_nEnd; }

  // Between two tries.
  static void Pause()
  {
    constexpr int milliseconds = 2;
    zp::GetHostCalls().Pause(milliseconds);
  }

 private:
  static constexpr LONGLONG nanos = 2'000'000'000;

  LONGLONG m_nEnd = zp::GetHostCalls().SteadyClock() + nanos;
};
