// The gate on includes: run on the source tree, it tells every include that the house's rules forbid and ends with 1 if there is
// one. No host header outside the rooms of platform/ that are made of them, none of the standard library's that goes past the
// table of host calls, no folder that includes another folder's private header, none that knows a folder of a layer above its
// own, no circle of files or of folders.

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

// The layers, the lowest first: a folder knows those below it, and those beside it as long as that makes no circle. One that has
// nothing in it yet may be absent.
struct Folder {
  char const * name;
  int layer;
};
constexpr std::array layers = {Folder{"platform", 0}, Folder{"config", 1},  Folder{"messages", 2},    Folder{"foundation", 3},
                               Folder{"store", 4},    Folder{"numeric", 4}, Folder{"text", 5},        Folder{"data", 5},
                               Folder{"drawing", 6},  Folder{"system", 6},  Folder{"spreadsheet", 7}, Folder{"views", 7},
                               Folder{"tools", 8}};
constexpr int headerLayer = -1;

// Public headers that belong to another folder than the one of their name.
struct Home {
  char const * header;
  char const * folder;
};
constexpr std::array homes = {Home{"well_known_names.h", "config"}, Home{"job_folders.h", "config"}};

// Includes that go up, each with its reason.
struct Exception {
  char const * file;
  char const * folder;
};
constexpr std::array exceptions = {
    // Warnings are written and cleared through the file class, whose own problems are warnings.
    Exception{"messages/warnings.cpp", "store"},
};

int layerOf(std::string const & folder)
{
  for (Folder const & row : layers)
    if (folder == row.name) return row.layer;
  return headerLayer;
}

// The folder that a file of the tree belongs to: for a public header the one whose face it is.
std::string folderOf(std::string const & file)
{
  std::string const first = file.substr(0, file.find('/'));
  if (first != "include") return first;
  std::string const rest = file.substr(first.size() + 1);
  for (Home const & home : homes)
    if (rest == home.header) return home.folder;
  return rest.substr(0, rest.find_first_of("/."));
}

bool isExcepted(std::string const & file, std::string const & folder)
{
  return std::any_of(exceptions.begin(), exceptions.end(),
                     [&](Exception const & row) { return file == row.file && folder == row.folder; });
}

// Headers from outside the tree that aren't the host's: those of the C++ standard library, which have neither a folder nor an
// extension, and the compiler's names of instructions. Programs use libraries too, and there only what is known as the host's is.
bool isHostHeader(std::string const & name, bool isProgram)
{
  static std::set<std::string> const instructions = {"emmintrin.h", "immintrin.h"};
  static std::set<std::string> const hosts = {"unistd.h",  "fcntl.h",  "dirent.h",   "pwd.h",     "dlfcn.h",  "poll.h",
                                              "pthread.h", "locale.h", "langinfo.h", "termios.h", "signal.h", "strings.h",
                                              "libgen.h",  "link.h",   "glob.h",     "iconv.h"};
  static std::set<std::string> const folders = {"sys", "linux", "asm", "arpa", "net", "netinet", "bits"};
  if (isProgram) return hosts.count(name) != 0 || folders.count(name.substr(0, name.find('/'))) != 0;
  return name.find_first_of("./") != std::string::npos && instructions.count(name) == 0;
}

// Headers of the standard library that open files, start threads and the like of their own: the library asks zp::HostCalls.
bool goesPastHostCalls(std::string const & name)
{
  static std::set<std::string> const names = {"filesystem", "fstream", "iostream", "thread", "future", "random", "csignal"};
  return names.count(name) != 0;
}

// The rooms of platform/ that know the host: its calls, and its locales.
bool mayKnowHost(std::string const & file)
{
  constexpr std::array rooms = {"platform/host_calls/", "platform/time/", "platform/facts/locale_facts.cpp",
                                "platform/string/number_text.cpp"};
  return std::any_of(rooms.begin(), rooms.end(), [&](char const * room) { return file.rfind(room, 0) == 0; });
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
  if (include.quoted && fs::exists(from.parent_path() / include.name)) {
    return fs::relative(fs::weakly_canonical(from.parent_path() / include.name), root).generic_string();
  }
  return fs::exists(root / include.name) && include.name.find('/') != std::string::npos
             ? fs::relative(fs::weakly_canonical(root / include.name), root).generic_string()
             : "";
}

class Gate {
 public:
  explicit Gate(fs::path root) : m_Root(std::move(root)) {}

  int Run()
  {
    LookInto("include");
    for (Folder const & folder : layers) LookInto(folder.name);
    for (auto const & [file, targets] : m_Graph) m_Files.Walk(file, m_Graph, [this](auto const & path) { RefuseCircle(path); });
    for (auto const & [folder, known] : m_Folders)
      m_Rooms.Walk(folder, m_Folders, [this](auto const & path) { RefuseCircle(path); });
    std::printf("%zu files looked at, %d includes refused\n", m_Graph.size(), m_nRefused);
    return m_nRefused == 0 && !m_Graph.empty() ? 0 : 1;
  }

 private:
  void Refuse(std::string const & file, std::string const & why)
  {
    std::printf("%s: %s\n", file.c_str(), why.c_str());
    ++m_nRefused;
  }

  void RefuseCircle(std::vector<std::string> const & path)
  {
    std::string circle = "a circle of includes:";
    for (std::string const & step : path) circle += " " + step;
    Refuse(path.front(), circle);
  }

  void LookInto(std::string const & folder)
  {
    if (!fs::exists(m_Root / folder)) return;
    for (auto const & entry : fs::recursive_directory_iterator(m_Root / folder))
      if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp") Look(entry.path(), folder);
  }

  void Look(fs::path const & path, std::string const & folder)
  {
    std::string const file = fs::relative(path, m_Root).generic_string();
    std::vector<std::string> & targets = m_Graph[file];
    for (Include const & include : includesOf(path)) {
      if (folder != "tools" && goesPastHostCalls(include.name)) Refuse(file, "past the host calls by " + include.name);
      std::string const target = targetOf(m_Root, path, include);
      if (target.empty()) {
        bool const isHosts = include.quoted || isHostHeader(include.name, folder == "tools");
        if (isHosts && !mayKnowHost(file)) Refuse(file, "host header " + include.name);
        continue;
      }
      targets.push_back(target);
      std::string const owner = target.substr(0, target.find('/'));
      if (owner != "include" && owner != folder) Refuse(file, "another folder's private header " + target);
      if (folder == "include" && owner != "include") Refuse(file, "a public header can't rest on " + target);
      LookAtLayers(file, target);
    }
  }

  void LookAtLayers(std::string const & file, std::string const & target)
  {
    std::string const from = folderOf(file);
    std::string const to = folderOf(target);
    if (from == to || file == "include/platform.h" || isExcepted(file, to)) return;
    if (layerOf(from) == headerLayer || layerOf(to) == headerLayer)
      Refuse(file, "no layer is known for " + from + " or " + to);
    else if (layerOf(to) > layerOf(from))
      Refuse(file, "goes up from " + from + " to " + target);
    std::vector<std::string> & known = m_Folders[from];
    if (std::find(known.begin(), known.end(), to) == known.end()) known.push_back(to);
  }

  using Graph = std::map<std::string, std::vector<std::string>>;

  // A walk through a graph that gives each circle once.
  class Walker {
   public:
    template <class Tell>
    void Walk(std::string const & from, Graph const & graph, Tell const & tell)
    {
      if (m_Done.count(from) != 0) return;
      if (auto const at = std::find(m_Path.begin(), m_Path.end(), from); at != m_Path.end()) {
        tell(std::vector<std::string>(at, m_Path.end()));
        return;
      }
      m_Path.push_back(from);
      if (auto const next = graph.find(from); next != graph.end())
        for (std::string const & target : next->second) Walk(target, graph, tell);
      m_Path.pop_back();
      m_Done.insert(from);
    }

   private:
    std::set<std::string> m_Done;
    std::vector<std::string> m_Path;
  };

  fs::path m_Root;
  Graph m_Graph;    // files
  Graph m_Folders;  // and folders
  Walker m_Files;
  Walker m_Rooms;
  int m_nRefused = 0;
};

}  // namespace

int main(int argc, char ** argv)
{
  return argc == 2 ? Gate(fs::canonical(argv[1])).Run() : 1;
}
