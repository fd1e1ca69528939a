// Signals that end the program, held back while a step mustn't be cut.
#pragma once

#include <array>
#include <csignal>

// Those that a person, a terminal that goes or a system that stops sends.
inline constexpr std::array endingSignals = {SIGINT, SIGTERM, SIGHUP};

// Holds them back for as long as it lives; the program asks between steps. One that is ignored stays so. Guards are nested, and
// used by one thread at a time.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(InterruptGuard const &) = delete;
  InterruptGuard & operator=(InterruptGuard const &) = delete;

  static bool IsInterrupted() { return GetSignal() != 0; }
  static int GetSignal();                         // the first of those that came, or 0
  static void Forget(void (*again)(int signal));  // for a process that goes on: each one that came is given to again

 private:
  static void Note(int signal);

  static volatile std::sig_atomic_t m_bCame[endingSignals.size()];

  std::array<struct sigaction, endingSignals.size()> m_Former;
};
