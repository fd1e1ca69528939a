// zp view: the same report plainly, as a page for browsers, and on a terminal.

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include <zpbase/platform/file.h>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tools/view/report_pages.h"

namespace {

// Two pages; a tab, characters of the code page, controls that would steer a terminal, an empty line.
constexpr char const * reportText =
    "Stream\tT/K\r\nFeed <1>\t298.15 \xE4\xB0\r\n\fSecond page\r\nbell\x07 \x1B[31mred \x7F\x81\r\n\r\nlast\r\n";

bool hasProgram(char const * name)
{
  return std::system((std::string("command -v ") + name + " >/dev/null").c_str()) == 0;
}

std::string runShell(TempFolder const & folder, std::string const & script)
{
  folder.Write("script", script);
  std::string const command = "cd '" + folder.Path().string() + "' && sh ./script >shell_out 2>shell_err";
  EXPECT_EQ(std::system(command.c_str()), 0) << folder.Read("shell_err");
  return folder.Read("shell_out");
}

size_t countOf(std::string const & text, std::string const & part)
{
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace

TEST(ViewTool, PrintsPlainlyIntoAPipe)
{
  TempFolder const folder;
  folder.Write("report.txt", reportText);
  folder.Write("empty.txt", "");
  folder.Write("led.txt", "\fonly page");
  folder.Write("marked.txt",
               "\xEF\xBB\xBF"
               "20 \xC2\xB0\r\n");
  folder.Write("unix.txt", "one\nzw\xC3\xB6lf\n\nthree");
  struct Row {
    char const * file;
    char const * out;
  };
  constexpr Row rows[] = {
      {"report.txt",
       "Stream  T/K\nFeed <1>        298.15 \u00E4\u00B0\n\fSecond page\nbell\u2407 \u241B[31mred \u2421\uFFFD\n\nlast\n"},
      {"empty.txt", ""},
      {"led.txt", "only page\n"},
      {"marked.txt", "20 \u00B0\n"},
      {"unix.txt", "one\nzw\u00F6lf\n\nthree\n"},
  };
  for (Row const & row : rows) {
    ProgramRun const run = RunZp(folder.Path(), std::string("view ") + row.file);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, row.out) << row.file;
  }
}

TEST(ViewTool, TellsWhatItCantShow)
{
  TempFolder const folder;
  folder.Write("held.txt", "x");
  CFile holder;
  ASSERT_TRUE(holder.Open(folder.Name("held.txt"), CFile::modeReadWrite | CFile::shareExclusive));
  struct Row {
    char const * file;
    char const * words;
  };
  constexpr Row rows[] = {
      {"missing.txt", "missing.txt: does not exist"}, {".", "is no file"}, {"held.txt", "in use by another program"}};
  for (Row const & row : rows) {
    ProgramRun const run = RunZp(folder.Path(), std::string("view ") + row.file);
    EXPECT_EQ(run.status, 1) << row.file;
    EXPECT_EQ(run.out, "") << row.file;
    EXPECT_NE(run.err.find(row.words), std::string::npos) << run.err;
  }
}

TEST(ViewTool, WritesAPageThatABrowserReads)
{
  TempFolder const folder;
  folder.Write("report.txt", reportText);
  ProgramRun const run = RunZp(folder.Path(), "view report.txt --html page.html");
  ASSERT_EQ(run.status, 0) << run.err;
  std::string const page = folder.Read("page.html");
  EXPECT_EQ(RunZp(folder.Path(), "view report.txt --html ./report.txt").status, 2) << "the report would be gone";
  EXPECT_EQ(folder.Read("report.txt"), reportText);
  EXPECT_EQ(countOf(page, "<section"), 2U);
  EXPECT_NE(page.find("<pre>\nStream  T/K\nFeed &lt;1&gt;        298.15 \u00E4\u00B0\n</pre>"), std::string::npos) << page;
  EXPECT_NE(page.find("break-after: page"), std::string::npos);
  if (!hasProgram("chromium")) GTEST_SKIP() << "no chromium here";
  std::string const seen =
      runShell(folder,
               "chromium --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking "
               "--disable-component-update --disable-sync --user-data-dir=profile --dump-dom page.html");
  EXPECT_EQ(countOf(seen, "<section"), 2U) << seen;
  EXPECT_NE(seen.find("bell\u2407 \u241B[31mred"), std::string::npos) << seen;
}

TEST(ViewTool, ShowsAReportOnTheTerminal)
{
  EXPECT_EQ(ShownText("a terminal\twithout \xE4, \xB0\x7F", ShownIn::ascii), "a terminal.without ?, ?.");
  if (!hasProgram("tmux")) GTEST_SKIP() << "no tmux here";
  TempFolder const folder;
  folder.Write("report.txt", reportText);
  std::string const tmux = "tmux -u -L '" + folder.Path().filename().string() + "'";
  std::string const seen =
      runShell(folder, "export LC_ALL=C.UTF-8\nt() { " + tmux +
                           " \"$@\"; }\n"
                           "see() { sleep 0.3; t capture-pane -p; echo =; }\n"
                           "t new-session -d -x 60 -y 9 \"'" +
                           ZpProgram() +
                           "' view report.txt\"\n"
                           "sleep 0.5\nsee\n"
                           "t send-keys /; t send-keys x Escape; sleep 0.2; t send-keys /; t send-keys REDX BSpace Enter; see\n"
                           "t send-keys /; t send-keys red Enter; see\n"
                           "t send-keys l Right; see\n"
                           "t resize-window -x 30 -y 4; see\n"
                           "t send-keys q; sleep 0.3; t kill-server 2>/dev/null; true\n");
  EXPECT_EQ(
      seen.rfind("Stream  T/K\nFeed <1>        298.15 \u00E4\u00B0\n---- page 2 ----\nSecond page\nbell\u2407 \u241B[31mred", 0),
      0U)
      << seen;
  EXPECT_NE(seen.find("line 1 of 6, page 1 of 2"), std::string::npos) << seen;
  EXPECT_NE(seen.find("not found"), std::string::npos) << seen;
  EXPECT_NE(seen.find("=\nbell\u2407 \u241B[31mred \u2421\uFFFD\n\nlast\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find("=\n      4 31mred"), std::string::npos) << seen;
  EXPECT_NE(seen.find("column 9"), std::string::npos) << seen;
}
