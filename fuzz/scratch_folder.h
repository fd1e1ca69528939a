// Where a fuzz target keeps its files: a folder of the run's own, in memory where there is one, gone when the process ends.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

class ScratchFolder {
 public:
  ScratchFolder() : m_strPath((Base() / "zpfuzz-XXXXXX").string())
  {
    if (mkdtemp(m_strPath.data()) == nullptr) std::abort();
  }
  ScratchFolder(ScratchFolder const &) = delete;
  ScratchFolder & operator=(ScratchFolder const &) = delete;
  ~ScratchFolder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(m_strPath, ignored);
  }

  std::string const & GetPath() const { return m_strPath; }

 private:
  static std::filesystem::path Base()
  {
    return access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
  }

  std::string m_strPath;
};

// The folder of this process.
inline std::string const & scratchFolder()
{
  static ScratchFolder const folder;
  return folder.GetPath();
}
