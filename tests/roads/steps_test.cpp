// What has to be in step when the house grows: the steps that docs/architecture.md tells, each found missing here.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <zpbase/data.h>
#include <zpbase/store.h>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace fs = std::filesystem;

namespace {

fs::path const source = ZP_SOURCE_DIR;

std::string contentOf(fs::path const & file)
{
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> matches(std::string const & text, std::string const & pattern)
{
  std::vector<std::string> found;
  std::regex const expression(pattern);
  for (std::sregex_iterator each(text.begin(), text.end(), expression), end; each != end; ++each) found.push_back((*each)[1]);
  return found;
}

std::vector<fs::path> filesIn(fs::path const & folder, std::string const & extension)
{
  std::vector<fs::path> files;
  for (auto const & entry : fs::recursive_directory_iterator(folder))
    if (entry.path().extension() == extension) files.push_back(entry.path());
  return files;
}

std::vector<std::string> persistentClassesOf(std::string const & folder)
{
  std::vector<std::string> names;
  for (fs::path const & file : filesIn(source / folder, ".cpp"))
    for (std::string const & name : matches(contentOf(file), "IMPLEMENT_SERIAL\\((\\w+),")) names.push_back(name);
  return names;
}

// True for a path of files of the tree, whose last part may have stars: from the root, or as includes and programs are called.
bool isThere(fs::path const & path)
{
  std::string const name = path.filename().string();
  if (name.find('*') == std::string::npos)
    return fs::exists(source / path) || fs::exists(source / "include" / path) || fs::exists(source / (path.string() + ".cpp"));
  if (!fs::is_directory(source / path.parent_path())) return false;
  std::regex const expression(std::regex_replace(std::regex_replace(name, std::regex("\\."), "\\."), std::regex("\\*"), ".*"));
  for (auto const & entry : fs::directory_iterator(source / path.parent_path()))
    if (std::regex_match(entry.path().filename().string(), expression)) return true;
  return false;
}

// True if a page shows the command at work, or the family's own page has a row for it.
bool isToldCommand(std::string const & family, std::string const & command)
{
  for (fs::path const & page : filesIn(source / "docs", ".md")) {
    std::string const text = contentOf(page);
    bool const hasRow = text.rfind("# " + family, 0) == 0 && text.find("| `" + command + "` |") != std::string::npos;
    if (hasRow || text.find(family + " " + command) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

TEST(Steps, EachPersistentClassIsShownByTheProgram)
{
  TempFolder const folder;
  std::vector<std::string> names;
  for (char const * const each : {"foundation", "numeric", "data"})
    for (std::string const & name : persistentClassesOf(each)) names.push_back(name);
  ASSERT_GT(names.size(), 15u);
  GPDataFile store(folder.Name("a.SI"), folder.Name("a.SR"), CFile::modeReadWrite, nullptr);
  for (size_t i = 0; i < names.size(); ++i) {
    CRuntimeClass const * const found = CRuntimeClass::FromName(names[i].c_str(), names[i].size());
    ASSERT_NE(found, nullptr) << names[i];
    std::unique_ptr<CObject> const object(found->CreateObject());
    ASSERT_EQ(store.StoreObj(object.get(), static_cast<int>(i)), 1) << names[i];
  }
  store.Close();
  for (size_t i = 0; i < names.size(); ++i) {
    ProgramRun const run = RunZp(folder.Path(), "store show a.SI " + std::to_string(i) + " --json");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("\"object\""), std::string::npos) << names[i] << " has no form in tools/records: " << run.out;
  }
}

TEST(Steps, EachDataItemIsToldAndHasItsBytesTried)
{
  std::string const page = contentOf(source / "docs/records.md");
  std::string const bytes = contentOf(source / "tests/data/items_test.cpp");
  for (std::string const & name : persistentClassesOf("data")) {
    EXPECT_NE(page.find("`" + name + "`"), std::string::npos) << "docs/records.md doesn't tell of " << name;
    CRuntimeClass const * const found = CRuntimeClass::FromName(name.c_str(), name.size());
    ASSERT_NE(found, nullptr) << name;
    if (!found->IsDerivedFrom(RUNTIME_CLASS(GPData))) continue;
    EXPECT_NE(bytes.find("std::make_shared<" + name + ">("), std::string::npos) << "no row of bytes for " << name;
  }
}

TEST(Steps, EachCommandIsInTheProgramAndTold)
{
  std::string const readme = contentOf(source / "README.md");
  int families = 0;
  for (auto const & folder : fs::directory_iterator(source / "tools")) {
    if (!fs::exists(folder.path() / "family.cpp")) continue;
    ++families;
    std::vector<std::string> const names = matches(contentOf(folder.path() / "family.cpp"), "app\\.add_subcommand\\(\"(\\w+)\"");
    ASSERT_EQ(names.size(), 1u) << folder.path();
    std::string const family = "zp " + names.front();
    ProgramRun const help = RunZp(fs::temp_directory_path(), family.substr(3) + " --help");
    EXPECT_EQ(help.status, 0) << help.err;
    EXPECT_NE(help.out.find("Usage: " + family), std::string::npos) << family << " isn't in tools/main.cpp's table";
    EXPECT_NE(readme.find("`" + family + "`"), std::string::npos) << "README.md doesn't tell of " << family;
    std::vector<std::string> const commands = matches(help.out, "\n  ([a-z]+)  ");
    for (std::string const & command : commands)
      EXPECT_TRUE(isToldCommand(family, command)) << "no page tells of " << family << " " << command;
  }
  EXPECT_GE(families, 3);
}

TEST(Steps, ThePictureHasTheLayersOfTheGate)
{
  std::string const gate = contentOf(source / "tests/gates/check_includes.cpp");
  std::string const page = contentOf(source / "docs/architecture.md");
  std::vector<std::string> const folders = matches(gate, "Folder\\{\"(\\w+)\", \\d+\\}");
  std::vector<std::string> const layers = matches(gate, "Folder\\{\"\\w+\", (\\d+)\\}");
  ASSERT_GT(folders.size(), 10u);
  for (size_t i = 0; i < folders.size(); ++i) {
    std::regex const row("\n +" + layers[i] + " +(\\w+ +)?" + folders[i] + "( |\n)");
    EXPECT_TRUE(std::regex_search(page, row)) << folders[i] << " isn't in layer " << layers[i] << " of docs/architecture.md";
  }
}

TEST(Steps, ThePagesNameFilesThatAreThere)
{
  std::vector<fs::path> pages = filesIn(source / "docs", ".md");
  for (char const * const page : {"README.md", "CONTRIBUTING.md", "platform/README.md"}) pages.push_back(source / page);
  std::set<std::string> tops;
  for (auto const & entry : fs::directory_iterator(source))
    if (entry.is_directory() && entry.path().filename() != "build") tops.insert(entry.path().filename().string());
  for (fs::path const & page : pages) {
    std::string const text = contentOf(page);
    for (std::string const & name : matches(text, "`([a-z_]+/[\\w./*-]*)`")) {
      bool const isOurs = tops.count(name.substr(0, name.find('/'))) != 0;
      EXPECT_TRUE(!isOurs || isThere(name)) << page.filename() << " names " << name;
    }
    for (std::string const & link : matches(text, "\\]\\(([^)#:]+)(?:#[^)]*)?\\)"))
      EXPECT_TRUE(fs::exists(page.parent_path() / link)) << page.filename() << " leads to " << link;
  }
}
