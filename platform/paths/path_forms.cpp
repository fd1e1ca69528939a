// Translates paths between the inside form and the host's, and finds the program's file and the user's configuration folder.

#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>

namespace {

constexpr char const * programLink = "/proc/self/exe";

bool startsWithDrive(std::string_view path)
{
  if (path.size() < 2 || path[1] != ':') return false;
  return (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
}

bool isSeparator(char c)
{
  return c == '\\' || c == '/';
}

std::string resolved(char const * hostPath)
{
  std::unique_ptr<char, decltype(&std::free)> const full(realpath(hostPath, nullptr), &std::free);
  return full ? full.get() : hostPath;
}

std::string programFile()
{
  char target[PATH_MAX];
  ssize_t const length = readlink(programLink, target, sizeof target);
  return length > 0 ? std::string(target, static_cast<size_t>(length)) : std::string();
}

std::string moduleFile(HINSTANCE module)
{
  if (module == nullptr) return programFile();
  Dl_info found;
  if (dladdr(module, &found) == 0 || found.dli_fname == nullptr) return {};
  return resolved(found.dli_fname);
}

}  // namespace

bool ToHostPath(std::string_view path, std::string & hostPath)
{
  hostPath.clear();
  if (path.find('\0') != std::string_view::npos) return false;
  if (path.starts_with('/')) {
    hostPath = path;
    return true;
  }
  bool const hasDrive = startsWithDrive(path);
  if (hasDrive) {
    if (path[0] != 'C' && path[0] != 'c') return false;
    path.remove_prefix(2);
  } else if (path.starts_with('\\') && path.size() > 1 && isSeparator(path[1])) {
    return false;
  }
  hostPath = hasDrive && path.empty() ? "." : path;
  std::replace(hostPath.begin(), hostPath.end(), '\\', '/');
  return true;
}

CString FromHostPath(std::string_view hostPath)
{
  std::string path(hostPath);
  std::replace(path.begin(), path.end(), '/', '\\');
  if (hostPath.starts_with('/')) {
    path.insert(0, "C:");
  } else if (startsWithDrive(path)) {
    path.insert(0, ".\\");  // a name whose second character is a colon is no drive
  }
  return CString(std::move(path));
}

DWORD GetModuleFileName(HINSTANCE module, char * path, DWORD size)
{
  std::string const file = moduleFile(module);
  if (file.empty() || size == 0) return 0;
  CString const inside = FromHostPath(file);
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
