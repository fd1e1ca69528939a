// Commands of zp in the test's own process.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/command_line.h"

// What is written to standard output and standard error while it lives goes to files of its own.
class Silence {
 public:
  Silence();
  ~Silence();
  Silence(Silence const &) = delete;
  Silence & operator=(Silence const &) = delete;

  // What was written so far to descriptor 1 or 2.
  static std::string Written(int descriptor);

 private:
  std::array<int, 2> m_Kept;
};

// The exit status. arm makes something that lives as long as the command does.
template <class Arm>
int RunSilently(std::vector<std::string> const & arguments, Arm const & arm)
{
  Silence const silence;
  std::vector<char const *> texts = {"zp"};
  for (std::string const & argument : arguments) texts.push_back(argument.c_str());
  [[maybe_unused]] auto const armed = arm();
  return RunCommandLine(static_cast<int>(texts.size()), texts.data());
}

inline int RunSilently(std::vector<std::string> const & arguments)
{
  return RunSilently(arguments, [] { return 0; });
}
