// The gate on includes: run on the source tree, it tells every include that the house's rules forbid and ends with 1 if there is
// one. No host header outside platform/, no folder that includes another folder's private header, no cycle.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// The folders of the library; one that has nothing in it yet may be absent.
constexpr std::array g_Folders = {"foundation", "store", "data",        "numeric", "text",     "config", "messages",
                                  "drawing",    "views", "spreadsheet", "system",  "platform", "include"};

// Headers of the host beyond the C++ standard library: directories of them, and single ones.
bool isHostHeader(std::string const & name)
{
  static std::set<std::string> const single = {
      "unistd.h", "fcntl.h",   "dirent.h", "pwd.h",    "dlfcn.h", "poll.h",   "pthread.h", "locale.h", "langinfo.h", "termios.h",
      "signal.h", "strings.h", "time.h",   "stdlib.h", "stdio.h", "string.h", "errno.h",   "libgen.h", "link.h",     "wchar.h"};
  static std::set<std::string> const folders = {"sys", "linux", "asm", "arpa", "netinet", "bits"};
  size_t const slash = name.find('/');
  return slash == std::string::npos ? single.count(name) != 0 : folders.count(name.substr(0, slash)) != 0;
}

struct Include {
  std::string name;
  bool quoted;
};

std::vector<Include> includesOf(fs::path const & file)
{
  static std::regex const pattern(R"rx(^\s*#\s*include\s*([<"])([^>"]+)[>"])rx");
  std::vector<Include> found;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);)
    if (std::smatch match; std::regex_search(line, match, pattern)) found.push_back({match[2], match[1] == "\""});
  return found;
}

// The file of the tree that an include leads to, relative to the root, or nothing for one from outside.
std::string targetOf(fs::path const & root, fs::path const & from, Include const & include)
{
  if (include.name.rfind("zpbase/", 0) == 0) return "include/" + include.name.substr(7);
  if (!include.quoted) return "";
  for (fs::path const & base : {from.parent_path(), root})
    if (fs::exists(base / include.name)) return fs::relative(fs::weakly_canonical(base / include.name), root).generic_string();
  return "";
}

class Gate {
 public:
  explicit Gate(fs::path root) : m_Root(std::move(root)) {}

  int Run()
  {
    for (char const * const folder : g_Folders) {
      if (!fs::exists(m_Root / folder)) continue;
      for (auto const & entry : fs::recursive_directory_iterator(m_Root / folder))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp") Look(entry.path(), folder);
    }
    for (auto const & [file, targets] : m_Graph) Walk(file);
    std::printf("%zu files looked at, %d includes refused\n", m_Graph.size(), m_nRefused);
    return m_nRefused == 0 && !m_Graph.empty() ? 0 : 1;
  }

 private:
  void Refuse(std::string const & file, std::string const & why)
  {
    std::printf("%s: %s\n", file.c_str(), why.c_str());
    ++m_nRefused;
  }

  void Look(fs::path const & path, std::string const & folder)
  {
    std::string const file = fs::relative(path, m_Root).generic_string();
    std::vector<std::string> & targets = m_Graph[file];
    for (Include const & include : includesOf(path)) {
      if (!include.quoted && folder != "platform" && isHostHeader(include.name)) Refuse(file, "host header " + include.name);
      std::string const target = targetOf(m_Root, path, include);
      if (target.empty()) continue;
      targets.push_back(target);
      std::string const owner = target.substr(0, target.find('/'));
      if (owner != "include" && owner != folder) Refuse(file, "another folder's private header " + target);
      if (folder == "include" && owner != "include") Refuse(file, "a public header can't rest on " + target);
    }
  }

  void Walk(std::string const & file)
  {
    if (m_Done.count(file) != 0) return;
    if (auto const at = std::find(m_Path.begin(), m_Path.end(), file); at != m_Path.end()) {
      std::string cycle = "a cycle of includes:";
      for (auto step = at; step != m_Path.end(); ++step) cycle += " " + *step;
      Refuse(file, cycle);
      return;
    }
    m_Path.push_back(file);
    for (std::string const & target : m_Graph[file]) Walk(target);
    m_Path.pop_back();
    m_Done.insert(file);
  }

  fs::path m_Root;
  std::map<std::string, std::vector<std::string>> m_Graph;
  std::set<std::string> m_Done;
  std::vector<std::string> m_Path;
  int m_nRefused = 0;
};

}  // namespace

int main(int argc, char ** argv)
{
  return argc == 2 ? Gate(fs::canonical(argv[1])).Run() : 1;
}
