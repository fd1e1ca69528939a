// Modules that are loaded while the program runs, and among them the servers that programs name by identifier.

#include <zpbase/platform/automation.h>

#include <cstdlib>
#include <memory>
#include <string>

#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>

#include "platform/automation/servers_internal.h"

namespace {

// The folder of servers, in the host's form; empty if the library doesn't know where it lies.
std::string serverFolder()
{
  char const * const chosen = std::getenv("ZP_SERVERS");
  if (chosen != nullptr && *chosen != '\0') return chosen;
  void const * const here = reinterpret_cast<void const *>(&zp::IsAutomationServer);
  std::unique_ptr<char, decltype(&std::free)> const library(zp::GetHostCalls().ModuleFile(here), &std::free);
  if (!library) return {};
  std::string const file(library.get());
  return file.substr(0, file.rfind('/') + 1) + "zpbase/servers";
}

// Identifiers become names of files: what leads out of the folder, or hides, is none.
bool canBeFileName(std::string_view progId)
{
  return !progId.empty() && progId.front() != '.' && progId.find_first_of("/\\") == std::string_view::npos;
}

}  // namespace

HINSTANCE AfxLoadLibrary(char const * path)
{
  std::string hostPath;
  if (path == nullptr || !ToHostPath(path, hostPath)) return nullptr;
  return static_cast<HINSTANCE>(zp::GetHostCalls().LoadModule(hostPath.c_str()));
}

BOOL AfxFreeLibrary(HINSTANCE module)
{
  return module != nullptr && zp::GetHostCalls().FreeModule(module) == 0;
}

namespace zp {

int LoadAutomationServer(char const * progId)
{
  if (progId == nullptr || !canBeFileName(progId)) return 0;
  if (IsAutomationServer(progId)) return 1;
  std::string const folder = serverFolder();
  HostStatus status;
  std::string const file = folder + '/' + progId + ".so";
  if (folder.empty() || GetHostCalls().GetStatusOf(file.c_str(), status) != 0) return 0;
  if (status.kind != HostStatus::File) return 0;  // the loader would wait for a pipe's writer
  void * const module = GetHostCalls().LoadModule(file.c_str());
  if (module == nullptr) return 0;
  if (IsAutomationServer(progId)) return 1;
  GetHostCalls().FreeModule(module);
  return 0;
}

}  // namespace zp
