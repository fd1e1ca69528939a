// The program zp.

#include <csignal>

#include <zpbase/platform/host_calls.h>

#include "tools/command_line.h"
#include "tools/interrupt_guard.h"
#include "tools/program.h"

namespace {

// A standard stream that was closed gets a descriptor that can't be used either, so that no file gets its number and what is told
// doesn't go into a store.
void holdStandardStreams()
{
  constexpr int lastStandard = 2;
  zp::HostCalls const & host = zp::GetHostCalls();
  char const * const nothing = "/dev/null";
  int file = host.Open(nothing, zp::hostWrite, 0);
  if (file > 0) {
    host.Close(file);
    file = 0;
  }
  while (file >= 0 && file <= lastStandard) file = host.Open(nothing, zp::hostRead, 0);
  if (file > lastStandard) host.Close(file);
}

// As the signal would have that was held back, so that a shell's loop ends too.
void endBySignal()
{
  std::signal(InterruptGuard::GetSignal(), SIG_DFL);
  std::raise(InterruptGuard::GetSignal());
}

}  // namespace

int main(int argc, char ** argv)
{
  holdStandardStreams();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may grow no more is an error like a full disk
  int const status = RunCommandLine(argc, argv);
  if (status == exitInterrupted) endBySignal();
  return status;
}
