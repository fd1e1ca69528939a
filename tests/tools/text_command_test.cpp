// zp text on files of different make: what it prints, what it reports, and its exit status.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>

#include "tests/support/TempFolder.h"

namespace {

struct Outcome {
  int status;
  std::string output;
};

// Runs zp on the file; both its outputs are taken, the folder's name is left out.
Outcome runText(TempFolder const & folder, std::string const & arguments)
{
  std::string const command = "cd '" + folder.Path().string() + "' && '" ZP_BINARY_DIR "/tools/zp' text " + arguments + " 2>&1";
  std::FILE * const pipe = popen(command.c_str(), "r");
  Outcome outcome;
  char piece[4096];
  for (size_t count; (count = std::fread(piece, 1, sizeof piece, pipe)) > 0;) outcome.output.append(piece, count);
  int const ended = pclose(pipe);
  outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
  return outcome;
}

TEST(TextCommand, SaysWhatItFinds)
{
  struct Row {
    char const * bytes;
    char const * arguments;
    int status;
    char const * output;
  };
  Row const rows[] = {
      {"1,2\r\n3,,4e3\r\n", "numbers f", 0, "1,2\n3,,4000\n"},
      {"1  .5 \r\n\r\n-3 0x10\r\n", "numbers f", 1, "1,0.5\nf: line 3, column 4: \"0x10\" is no number\n"},
      {"T p\r\n1 2\r\n", "numbers --skip 1 f", 0, "1,2\n"},
      {"a b\r\n", "numbers f", 1,
       "f: line 1, column 1: \"a\" is no number\nzp: f: no line is numeric; zp text lines shows why\n"},
      {"1  22\r\n10 2\r\n", "columns f", 0,
       "delimiter: blank\nvalues on a line: 2 at most\ncolumn 1: characters 1 to 2\ncolumn 2: characters 4 to 5\n"},
      {"1\t2\r\n1234\r\n", "columns --json f", 0, "{\n  \"columns\": [],\n  \"delimiter\": \"tab\",\n  \"mostValues\": 2\n}\n"},
      {"1\r\n\r\nx\r\ny\r\n", "lines --report 1 f", 1,
       "4 lines: 1 numeric, 1 blank, 2 not numeric; the longest has 1 characters\nf: line 3, column 1: \"x\" is no number\n"
       "f: 2 such lines in all; --report N shows more\n"},
      {"1 2\n3 4\n", "lines f", 1, "zp: f: its lines end in LF alone, where CR LF is expected; convert a copy, as by unix2dos\n"},
      {"", "lines none", 1, "zp: none: there is no such file; check the name\n"},
      {"", "lines", 2, "zp: FILE is required; see zp text lines --help\n"},
  };
  for (Row const & row : rows) {
    TempFolder const folder;
    folder.Write("f", row.bytes);
    Outcome const outcome = runText(folder, row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments << '\n' << outcome.output;
    EXPECT_EQ(outcome.output, row.output) << row.arguments;
  }
}

}  // namespace
