// Whole conversations with zp, as people have them in a shell: each file of tests/tools/transcripts tells commands and, below
// each, all that it says (standard output and error, and a status that isn't 0). After a change that is meant,
// ZP_REWRITE_TRANSCRIPTS=1 writes them anew; what has changed is then read before it is committed.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view commandMark = "$ ";

std::vector<std::string> TranscriptNames()
{
  std::vector<std::string> names;
  for (auto const & entry : fs::directory_iterator(fs::path(ZP_SOURCE_DIR) / "tests/tools/transcripts"))
    names.push_back(entry.path().stem().string());
  std::sort(names.begin(), names.end());
  return names;
}

class Transcripts : public testing::TestWithParam<std::string> {
 protected:
  Transcripts()
  {
    for (char const * const each : {"examples", "fuzz/seeds", "tests/metafiles"})
      fs::create_directory_symlink(fs::path(ZP_SOURCE_DIR) / each, m_Folder.Path() / fs::path(each).filename());
  }

  // What the command says, with its status if that isn't 0. The user's own settings and the width of a terminal stay out of it.
  std::string SaidBy(std::string const & command) const
  {
    TempFolder const said;
    said.Write("command", command);
    std::string const call = "cd '" + m_Folder.Path().string() + "' && PATH='" + fs::path(ZpProgram()).parent_path().string() +
                             "':\"$PATH\" XDG_CONFIG_HOME=. COLUMNS=80 TZ=UTC LSAN_OPTIONS=print_suppressions=0 sh '" +
                             said.Path().string() + "/command' >'" + said.Path().string() + "/said' 2>&1 </dev/null; echo $? >'" +
                             said.Path().string() + "/status'";
    if (std::system(call.c_str()) != 0) return "the shell failed\n";
    std::string text = said.Read("said");
    std::string const folder = m_Folder.Path().string();
    for (size_t at = 0; (at = text.find(folder, at)) != std::string::npos;) text.replace(at, folder.size(), "FOLDER");
    if (!text.empty() && text.back() != '\n') text += "\n[no line end]\n";
    std::string const status = said.Read("status");
    return status == "0\n" ? text : text + "[" + status.substr(0, status.size() - 1) + "]\n";
  }

  TempFolder const m_Folder;
};

}  // namespace

TEST_P(Transcripts, SayWhatTheySaid)
{
  fs::path const file = fs::path(ZP_SOURCE_DIR) / "tests/tools/transcripts" / (GetParam() + ".txt");
  std::ifstream in(file);
  std::string told, said;
  for (std::string line; std::getline(in, line);) {
    told += line + "\n";
    if (line.rfind(commandMark, 0) == 0) said += line + "\n" + SaidBy(line.substr(commandMark.size()));
  }
  in.close();
  ASSERT_FALSE(said.empty());
  if (std::getenv("ZP_REWRITE_TRANSCRIPTS") != nullptr) std::ofstream(file) << said;
  EXPECT_EQ(said, told);
}

INSTANTIATE_TEST_SUITE_P(Tools, Transcripts, testing::ValuesIn(TranscriptNames()), [](auto const & each) { return each.param; });
