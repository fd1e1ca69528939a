// Walking folders, each once.

#include "tools/inspect/folder_walk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

std::vector<std::string> namesIn(std::string const & folder)
{
  zp::HostCalls const & host = zp::GetHostCalls();
  void * const open = host.OpenFolder(folder.c_str());
  if (open == nullptr) throw Failure(fmt::format("{}: the folder can't be read: {}", folder, std::strerror(errno)));
  std::vector<std::string> names;
  try {
    while (char const * const name = host.NextEntry(open)) {
      if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) names.emplace_back(name);
    }
  } catch (std::bad_alloc const &) {
    host.CloseFolder(open);
    throw;
  }
  host.CloseFolder(open);
  std::ranges::sort(names);
  return names;
}

}  // namespace

bool FolderWalk::IsNew(std::string const & folder)
{
  auto const status = StatusOf(folder);
  return status && m_Walked.emplace(status->device, status->file).second;
}

void FolderWalk::Walk(std::string const & folder)
{
  std::vector<std::string> waiting = {folder};  // the next one at the end
  while (!waiting.empty()) {
    std::string const name = std::move(waiting.back());
    waiting.pop_back();
    try {
      if (!IsFolder(name)) {
        m_pfnTake(name);
        continue;
      }
      if (!IsNew(name)) continue;
      std::vector<std::string> const entries = namesIn(name);
      std::string const prefix = name.ends_with('/') ? name : name + "/";
      for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) waiting.push_back(prefix + *entry);
    } catch (Failure const & failure) {
      Tell(failure.what());
      ++m_nUnread;
    }
  }
}
