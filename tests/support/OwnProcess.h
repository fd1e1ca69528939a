// Tests that need what a process can't change back, such as another locale, in a process of their own.

#pragma once

#include <locale.h>

#include <functional>
#include <string>

// Runs test in a child process under a locale that is built for it, such as "de_DE" in "UTF-8", from the host's sources, or the C
// locale; its failures are those of the calling test. Skips the test where the locale can't be built.
void RunInLocale(std::string const & source, std::string const & codeset, std::function<void()> const & test);

// The host's own functions follow the C locale while it lives, for those that results are compared with.
class PlainLocale {
 public:
  PlainLocale();
  ~PlainLocale() { uselocale(m_Former); }
  PlainLocale(PlainLocale const &) = delete;
  PlainLocale & operator=(PlainLocale const &) = delete;

 private:
  locale_t m_Former;
};
