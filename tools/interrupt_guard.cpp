// The handlers of the ending signals, set and put back whole.

#include "tools/interrupt_guard.h"

volatile std::sig_atomic_t InterruptGuard::m_bCame[endingSignals.size()];

InterruptGuard::InterruptGuard()
{
  struct sigaction noting = {};
  noting.sa_handler = Note;
  noting.sa_flags = SA_RESTART;
  for (size_t i = 0; i < endingSignals.size(); ++i) {
    sigaction(endingSignals[i], nullptr, &m_Former[i]);
    if (m_Former[i].sa_handler != SIG_IGN) sigaction(endingSignals[i], &noting, nullptr);
  }
}

InterruptGuard::~InterruptGuard()
{
  for (size_t i = 0; i < endingSignals.size(); ++i) sigaction(endingSignals[i], &m_Former[i], nullptr);
}

int InterruptGuard::GetSignal()
{
  for (size_t i = 0; i < endingSignals.size(); ++i)
    if (m_bCame[i] != 0) return endingSignals[i];
  return 0;
}

void InterruptGuard::Note(int signal)
{
  for (size_t i = 0; i < endingSignals.size(); ++i)
    if (endingSignals[i] == signal) m_bCame[i] = 1;
}

void InterruptGuard::Forget(void (*again)(int signal))
{
  for (size_t i = 0; i < endingSignals.size(); ++i) {
    if (m_bCame[i] == 0) continue;
    m_bCame[i] = 0;
    again(endingSignals[i]);
  }
}
