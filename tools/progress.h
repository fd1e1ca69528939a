// A bar on standard error for work that lasts over a second, when that is a terminal.
#pragma once

#include <chrono>
#include <functional>
#include <string>

class Progress {
 public:
  Progress(std::string label, unsigned long long total);
  ~Progress();  // clears the line
  Progress(Progress const &) = delete;
  Progress & operator=(Progress const &) = delete;

  static void Forbid();  // no bar from now on, for a process whose terminal is another's

  void Reach(unsigned long long done);

 private:
  void Draw(unsigned long long done);

  std::string m_strLabel;
  unsigned long long m_nTotal;
  bool m_bTerminal;
  bool m_bDrawn = false;
  std::chrono::steady_clock::time_point m_Next;
};

// Runs step for each of count numbers with a progress bar, ending early after Ctrl-C: true if it came to the end.
bool ForEachStep(char const * label, size_t count, std::function<void(size_t)> const & step);
