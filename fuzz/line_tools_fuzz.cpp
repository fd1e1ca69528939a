// Any bytes as a text file under zp text and zp view; the first byte chooses the options. What is printed has no control
// characters, and the numbers of a file of nothing else, read once more, are the same.

#include <algorithm>
#include <cstdint>

#include "fuzz/zp_commands.h"

namespace {

bool isPlain(std::string_view text, std::string_view allowed)
{
  return std::all_of(text.begin(), text.end(), [&](char c) {
    return (static_cast<unsigned char>(c) >= ' ' && c != '\x7F') || allowed.find(c) != std::string_view::npos;
  });
}

// A line of one missing value can't be told from a blank one.
std::string withoutBlankLines(std::string const & csv)
{
  std::string kept;
  for (char const c : csv)
    if (c != '\n' || (!kept.empty() && kept.back() != '\n')) kept += c;
  return kept;
}

void text(unsigned int choice)
{
  std::vector<std::string> options = {pathOf("in")};
  constexpr char const * delimiters[] = {"", "comma", "tab", "semicolon", "blank", ":", "'", ""};
  std::string const delimiter = delimiters[choice & 7];
  if (!delimiter.empty()) options.insert(options.end(), {"--delimiter", delimiter});
  if (choice & 8) options.emplace_back("--decimal-comma");
  if (choice & 16) options.insert(options.end(), {"--comment", "#"});
  if (choice & 32) options.insert(options.end(), {"--skip", "2"});
  auto const run = [&](std::string const & command, std::string const & last) {
    std::vector<std::string> words = {"text", command};
    words.insert(words.end(), options.begin(), options.end());
    if (!last.empty()) words.push_back(last);
    int const status = runCommand(AddTextCommands, words);
    require(isPlain(readFile("out"), "\n"));
    return status;
  };
  std::string const json = choice & 64 ? "--json" : "";
  int const lines = run("lines", json);
  std::string const told = readFile("out");
  bool const areNumbers =
      json.empty()
          ? told.find("\nhead in line ") == std::string::npos && told.find("\ntexts in ") == std::string::npos
          : told.find("\"head_line\": 0,") != std::string::npos && told.find("\"text_columns\": []") != std::string::npos;
  run("columns", json);
  int const numbers = run("numbers", "");
  require(lines == numbers);
  std::string const csv = readFile("out");
  if (!areNumbers || csv.find(',') == std::string::npos) return;
  writeFile("csv", csv);
  options = {pathOf("csv"), "--delimiter", "comma"};
  run("numbers", "");
  require(withoutBlankLines(readFile("out")) == withoutBlankLines(csv));
}

void view()
{
  int const status = runCommand(AddViewCommands, {"view", pathOf("in")});
  std::string const shown = readFile("out");
  require(isPlain(shown, "\n\f"));
  require(runCommand(AddViewCommands, {"view", pathOf("in"), "--html", "-"}) == status);
  std::string const page = readFile("out");
  require(isPlain(page, "\n"));
  if (status != exitDone) return;
  constexpr std::string_view section = "<section";
  long sections = 0;
  for (size_t at = 0; (at = page.find(section, at)) != std::string::npos; at += section.size()) ++sections;
  require(sections == std::count(shown.begin(), shown.end(), '\f') + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  if (size == 0) return 0;
  writeFile("in", {reinterpret_cast<char const *>(data) + 1, size - 1});
  text(data[0]);
  view();
  return 0;
}
