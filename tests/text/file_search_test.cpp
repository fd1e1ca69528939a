// The simulator's own search for a file.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include <zpbase/config.h>
#include <zpbase/text.h>

#include "tests/support/TempFolder.h"

namespace {

// The job's directories and the search path, set for one test.
class FileSearchTest : public testing::Test {
 protected:
  void SetUp() override
  {
    for (auto const & [prefix, name] : {std::pair(job_path, "job"), {workfile_path, "work"}, {poolfile_path, "pool"}}) {
      std::filesystem::create_directory(m_Folder.Path() / name);
      std::strcpy(prefix, m_Folder.Name(name) + "\\");
    }
    std::filesystem::create_directory(m_Folder.Path() / "bin");
    setenv("PATH", (m_Folder.Path() / "bin").c_str(), 1);
  }
  void TearDown() override
  {
    for (char * prefix : {job_path, workfile_path, poolfile_path}) prefix[0] = 0;
    setenv("PATH", m_strOldPath.c_str(), 1);
  }

  // Where the name is found below the folder.
  std::string Find(char const * name)
  {
    CString found("old");
    int const result = FindZephlowFile(found, name);
    EXPECT_EQ(result, !found.IsEmpty()) << name;
    return found.IsEmpty() ? "" : found.Mid(m_Folder.Name("").GetLength()).GetString();
  }

  TempFolder m_Folder;
  std::string m_strOldPath = std::getenv("PATH");
};

TEST_F(FileSearchTest, ANameWithAnExtensionIsSoughtInJobWorkSystemAndSearchPath)
{
  m_Folder.Write("bin/x.dat", "");
  EXPECT_EQ(Find("x.dat"), "bin\\x.dat");
  m_Folder.Write("pool/x.dat", "");
  EXPECT_EQ(Find("x.dat"), "bin\\x.dat");
  m_Folder.Write("work/x.dat", "");
  EXPECT_EQ(Find("x.dat"), "work\\x.dat");
  m_Folder.Write("job/x.dat", "");
  EXPECT_EQ(Find("x.dat"), "job\\x.dat");
  EXPECT_EQ(Find(m_Folder.Name("bin\\x.dat")), "bin\\x.dat");
  EXPECT_EQ(Find(m_Folder.Name("bin\\y.dat")), "");
  EXPECT_EQ(Find("y.dat"), "");
}

TEST_F(FileSearchTest, ANameWithoutOneIsAUserThenAPoolFile)
{
  m_Folder.Write("bin/x.UF", "");
  m_Folder.Write("job/x.PF", "");
  m_Folder.Write("job/x", "");
  EXPECT_EQ(Find("x"), "");
  m_Folder.Write("pool/x.PF", "");
  EXPECT_EQ(Find("x"), "pool\\x.PF");
  m_Folder.Write("work/x.UF", "");
  EXPECT_EQ(Find("x"), "work\\x.UF");
  m_Folder.Write("bin/z.UF", "");
  EXPECT_EQ(Find(m_Folder.Name("bin\\z")), "bin\\z.UF");
}

// Files beside the program, where the system's own lie, for as long as a test runs.
class SystemFiles {
 public:
  explicit SystemFiles(std::string const & name) : m_strName(name + std::to_string(getpid())) {}
  ~SystemFiles()
  {
    for (std::filesystem::path const & file : m_Made) std::filesystem::remove(file);
  }

  void Make(std::string const & extension)
  {
    m_Made.push_back(std::filesystem::read_symlink("/proc/self/exe").parent_path() / (m_strName + extension));
    std::ofstream const file(m_Made.back());
  }
  std::string const & Name() const { return m_strName; }
  CString Find(char const * extension = "") const
  {
    CString found;
    FindZephlowFile(found, (m_strName + extension).c_str());
    return found;
  }

 private:
  std::string m_strName;
  std::vector<std::filesystem::path> m_Made;
};

TEST_F(FileSearchTest, TheSystemDirectoryStandsBehindWorkAndBehindPool)
{
  SystemFiles files("zp-search-");
  CString const beside = GetSystemPathPrefix() + files.Name().c_str();
  files.Make(".SF");
  EXPECT_EQ(files.Find(), beside + ".SF");
  m_Folder.Write("pool/" + files.Name() + ".PF", "");
  EXPECT_EQ(files.Find(), poolfile_path + CString(files.Name().c_str()) + ".PF");
  files.Make(".UF");
  EXPECT_EQ(files.Find(), beside + ".UF");
  m_Folder.Write("bin/" + files.Name() + ".dat", "");
  files.Make(".dat");
  EXPECT_EQ(files.Find(".dat"), beside + ".dat");
  m_Folder.Write("work/" + files.Name() + ".dat", "");
  EXPECT_EQ(files.Find(".dat"), workfile_path + CString(files.Name().c_str()) + ".dat");
}

}  // namespace
