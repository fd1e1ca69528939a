// Finds the program's file and the user's configuration folder.

#include <zpbase/platform/known_places.h>

#include <cstdlib>
#include <memory>

#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>

DWORD GetModuleFileName(HINSTANCE module, char * path, DWORD size)
{
  std::unique_ptr<char, decltype(&std::free)> const file(zp::GetHostCalls().ModuleFile(module), &std::free);
  if (!file || size == 0) return 0;
  CString const inside = FromHostPath(file.get());
  std::string_view const text = inside.View().substr(0, size - 1);
  path[text.copy(path, text.size())] = '\0';
  return text.size() < inside.View().size() ? size : static_cast<DWORD>(text.size());
}

std::string GetUserConfigFolder()
{
  char const * const config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return config;
  char const * const home = std::getenv("HOME");
  return home != nullptr && home[0] != '\0' ? std::string(home) + "/.config" : std::string();
}
