#include "tests/support/OwnProcess.h"

#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/TempFolder.h"

PlainLocale::PlainLocale()
{
  static locale_t const plain = newlocale(LC_ALL_MASK, "C", nullptr);
  m_Former = uselocale(plain);
}

namespace {

// A locale's source with the plain tables of letters and of their order, which take localedef most of its time.
std::string localeSource(std::string const & locale)
{
  std::string source = "comment_char %\nescape_char /\n";
  for (char const * const category : {"CTYPE", "COLLATE", "TIME", "NUMERIC", "MONETARY", "MESSAGES", "PAPER", "NAME", "ADDRESS",
                                      "TELEPHONE", "MEASUREMENT", "IDENTIFICATION"}) {
    bool const isPlain = category == std::string_view("CTYPE") || category == std::string_view("COLLATE");
    std::string const name = std::string("LC_") + category;
    source += name + "\ncopy \"" + (isPlain ? "POSIX" : locale) + "\"\nEND " + name + "\n";
  }
  return source;
}

bool buildLocale(std::string const & source, std::string const & codeset, std::string const & built)
{
  return system(("localedef -i " + source + " -f " + codeset + " " + built + " >/dev/null 2>&1").c_str()) == 0;
}

}  // namespace

void RunInLocale(std::string const & source, std::string const & codeset, std::function<void()> const & test)
{
  TempFolder const folder;
  bool const isThere = source == "C";
  std::string const name = isThere ? source : source + "." + codeset;
  std::string const built = (folder.Path() / name).string();
  std::string const input = (folder.Path() / "source").string();
  folder.Write("source", localeSource(source));
  // localedef 2.36 breaks off at the shorter one of ko_KR.
  if (!isThere && !buildLocale(input, codeset, built) && !buildLocale(source, codeset, built))
    GTEST_SKIP() << "the host can't build the locale " << name;
  fflush(stdout);
  pid_t const child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    setenv("LOCPATH", folder.Path().c_str(), 1);
    setenv("LC_ALL", name.c_str(), 1);
    test();
    fflush(stdout);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "in the locale " << name;
}
