// The clocks of the host.

#include <zpbase/platform/time.h>

#include <chrono>

namespace {

LONGLONG wallSeconds()
{
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()).time_since_epoch().count();
}

LONGLONG steadyMilliseconds()
{
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::steady_clock::now()).time_since_epoch().count();
}

}  // namespace

zp::ClockCalls & zp::GetClockCalls()
{
  static ClockCalls calls{&wallSeconds, &steadyMilliseconds};
  return calls;
}
