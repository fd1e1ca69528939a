// The files below a folder.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>

#include <zpbase/platform/host_calls.h>

class FolderWalk {
 public:
  using Take = std::function<void(std::string const & name)>;

  explicit FolderWalk(Take take) : m_pfnTake(std::move(take)) {}

  // Gives take everything below that is no folder, in the order of the names. Links are followed, but no folder is walked twice.
  // A folder that can't be read is told on standard error and counted.
  void Walk(std::string const & folder);

  size_t GetUnread() const { return m_nUnread; }

 private:
  bool IsNew(std::string const & folder);

  Take m_pfnTake;
  std::set<std::pair<uint64_t, uint64_t>> m_Walked;  // device and file of each
  size_t m_nUnread = 0;
};
