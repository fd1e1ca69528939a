// The progress bar.

#include "tools/progress.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>
#include <zpbase/platform/terminal.h>

#include "tools/interrupt_guard.h"

namespace {

constexpr auto firstDelay = std::chrono::seconds(1);
constexpr auto redrawDelay = std::chrono::milliseconds(100);
constexpr unsigned long long barWidth = 40;

bool g_bForbidden = false;

}  // namespace

void Progress::Forbid()
{
  g_bForbidden = true;
}

Progress::Progress(std::string label, unsigned long long total)
    : m_strLabel(std::move(label)),
      m_nTotal(total),
      m_bTerminal(!g_bForbidden && IsTerminal(2)),
      m_Next(std::chrono::steady_clock::now() + firstDelay)
{
}

Progress::~Progress()
{
  if (m_bDrawn) std::fputs("\r\033[K", stderr);
}

void Progress::Reach(unsigned long long done)
{
  if (!m_bTerminal || std::chrono::steady_clock::now() < m_Next) return;
  m_Next = std::chrono::steady_clock::now() + redrawDelay;
  Draw(done);
}

void Progress::Draw(unsigned long long done)
{
  unsigned long long const total = std::max(m_nTotal, 1ULL);
  unsigned long long const share = std::min(done, total) * 100 / total;
  unsigned long long const filled = share * barWidth / 100;
  std::fputs(fmt::format("\r\033[K{} [{:<{}}] {:3}%", m_strLabel, std::string(filled, '#'), barWidth, share).c_str(), stderr);
  std::fflush(stderr);
  m_bDrawn = true;
}

bool ForEachStep(char const * label, size_t count, std::function<void(size_t)> const & step)
{
  Progress progress(label, count);
  for (size_t i = 0; i < count; ++i) {
    if (InterruptGuard::IsInterrupted()) return false;
    step(i);
    progress.Reach(i);
  }
  return true;
}
