// The words of the command line: help, what was perhaps meant, and the pages and completions that are made of the commands.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tools/shown_text.h"

namespace {

std::string const made = ZP_BINARY_DIR "/tools/made/";

std::string contentOf(std::string const & file)
{
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// What a shell command prints, on both streams.
std::string printed(TempFolder const & folder, std::string const & command)
{
  std::string const out = (folder.Path() / "printed").string();
  EXPECT_EQ(std::system(("{ " + command + "; } >'" + out + "' 2>&1").c_str()), 0) << command << '\n' << contentOf(out);
  return contentOf(out);
}

// The words under a heading of a help text, one for each line.
std::vector<std::string> wordsUnder(std::string const & heading, std::string const & help)
{
  std::vector<std::string> words;
  std::istringstream lines(help.substr(std::min(help.size(), help.find(heading))));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line) && line.starts_with("  ")) words.push_back(line.substr(2, line.find(' ', 2) - 2));
  return words;
}

}  // namespace

TEST(Words, NameTheNearestCommand)
{
  struct {
    char const * arguments;
    char const * line;
  } const rows[] = {
      {"stor", "zp: \"stor\" is no command of zp; did you mean \"store\"? see zp --help\n"},
      {"store lst x --json", "zp: \"lst\" is no command of zp store; did you mean \"list\"? see zp store --help\n"},
      {"store ehcck", "zp: \"ehcck\" is no command of zp store; did you mean \"check\"? see zp store --help\n"},
      {"help txet", "zp: \"txet\" is no command of zp; did you mean \"text\"? see zp --help\n"},
      {"hlep", "zp: \"hlep\" is no command of zp; did you mean \"help\"? see zp --help\n"},
      {"--verison", "zp: \"--verison\" is no option of zp; see zp --help\n"},
      {"store check -x=1", "zp: \"-x\" is no option of zp store check; see zp store check --help\n"},
      {"xq", "zp: \"xq\" is no command of zp; see zp --help\n"},
      {"settings", "zp: A subcommand is required; see zp settings --help\n"},
      {"text lines", "zp: FILE is required; see zp text lines --help\n"},
  };
  TempFolder const folder;
  for (auto const & row : rows) {
    ProgramRun const run = RunZp(folder.Path(), row.arguments);
    EXPECT_EQ(run.status, 2) << row.arguments;
    EXPECT_EQ(run.out + run.err, row.line);
  }
  EXPECT_EQ(RunZp(folder.Path(), "-V").out, RunZp(folder.Path(), "--version").out);
  for (std::string const words : {"--version", "--help", "help store", "text lines --help"})
    EXPECT_EQ(WEXITSTATUS(std::system(("'" + ZpProgram() + "' " + words + " >/dev/full 2>&1").c_str())), 1) << words;
}

TEST(Words, HelpEndsWithAnExampleAndStandsOnTheManualPage)
{
  TempFolder const folder;
  std::string const program = RunZp(folder.Path(), "help").out;
  std::vector<std::string> const families = wordsUnder("Subcommands:", program);
  ASSERT_GE(families.size(), 5U);
  for (std::string const & family : families) {
    std::string const page = printed(folder, "LC_ALL=C groff -man -Tascii -P-cbou -wmac '" + made + "zp-" + family + ".1'");
    std::string const familyHelp = RunZp(folder.Path(), "help " + family).out;
    std::vector<std::string> commands = wordsUnder("Subcommands:", familyHelp);
    if (commands.empty()) commands = {""};
    for (std::string const & command : commands) {
      std::string const help = RunZp(folder.Path(), "help " + family + " " + command).out;
      std::string const start = "Example: zp " + family + (command.empty() ? "" : " " + command) + " ";
      EXPECT_NE((help + " ").find(start), std::string::npos) << help;
      EXPECT_NE(page.find(start), std::string::npos) << start;
      for (std::string const & option : wordsUnder("Options:", help)) {
        EXPECT_NE(page.find(option.substr(option.find_last_of(',') + 1)), std::string::npos) << family << ' ' << option;
      }
    }
  }
}

TEST(Words, CompleteInTheShells)
{
  TempFolder const folder;
  EXPECT_EQ(
      printed(folder, "bash -c '. " + made +
                          "zp.bash; for line in \"zp s\" \"zp store l\" \"zp store list --r\" "
                          "\"zp settings set --type \"; do IFS=\" \" read -ra COMP_WORDS <<<\"$line\"; [[ $line = *\" \" ]] && "
                          "COMP_WORDS+=(\"\"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zp; echo \"${COMPREPLY[@]}\"; done'"),
      "store settings sheet\nlist\n--record\ntext integer binary\n");
  if (std::system("command -v fish zsh >/dev/null") != 0) GTEST_SKIP() << "fish and zsh aren't installed";
  EXPECT_EQ(printed(folder, "HOME=. fish -c 'source " + made +
                                "zp.fish; for line in \"zp st\" \"zp help vi\" \"zp store l\" \"zp store list --r\" "
                                "\"zp settings set --type t\"; complete -C $line; end' | cut -f1"),
            "store\nview\nlist\n--record\ntext\n");
  EXPECT_EQ(printed(folder, "zsh -n '" + made + "_zp'"), "");
}

// 0 where no whole character begins.
TEST(Words, KnowHowManyBytesACharacterHas)
{
  for (auto const & [bytes, count] : {std::pair("a", 1U),
                                      {"\xC2\x80", 2U},
                                      {"\xDF\xBF", 2U},
                                      {"\xE0\xA0\x80", 3U},
                                      {"\xEF\xBF\xBD", 3U},
                                      {"\xF0\x90\x80\x80", 4U},
                                      {"\xF4\x8F\xBF\xBF", 4U},
                                      {"\x80", 0U},
                                      {"\xC1\x80", 0U},
                                      {"\xC2", 0U},
                                      {"\xE0\xA0", 0U},
                                      {"\xE0\xA0x", 0U},
                                      {"\xF0\x90\x80", 0U},
                                      {"\xF5\x80\x80\x80", 0U}})
    EXPECT_EQ(CharacterBytes(bytes), count) << bytes;
}
