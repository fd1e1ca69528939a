// The host's folders: looking for entries by pattern, making a folder, and the system's own search for a file.

#include <zpbase/platform/folders.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "platform/file/file_internal.h"

struct CloseFolder {
  void operator()(void * folder) const { zp::GetHostCalls().CloseFolder(folder); }
};
using OpenFolder = std::unique_ptr<void, CloseFolder>;

struct FileSearch {
  OpenFolder entries;
};

namespace {

constexpr DWORD attributeDirectory = 0x10;
constexpr unsigned int newFolderMode = 0777;

thread_local DWORD g_nLastError = 0;

BOOL failWith(LONG error)
{
  g_nLastError = static_cast<DWORD>(error);
  return FALSE;
}

// Goes back to the last '*' only, so the time is at most the product of the lengths.
bool fits(std::string_view name, std::string_view pattern)
{
  size_t n = 0;
  size_t p = 0;
  size_t star = std::string_view::npos;
  size_t starName = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      starName = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || zp::ToLower(pattern[p]) == zp::ToLower(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++starName;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

void describe(WIN32_FIND_DATA & found, std::string const & folder, std::string_view name)
{
  found.dwFileAttributes = zp::IsFolder(folder + '/' + std::string(name)) ? attributeDirectory : 0;
  found.cFileName[name.copy(found.cFileName, sizeof found.cFileName - 1)] = '\0';
}

bool isFile(std::string const & hostPath)
{
  zp::HostStatus status;
  return zp::GetHostCalls().GetStatusOf(hostPath.c_str(), status) == 0 && status.kind != zp::HostStatus::Folder;
}

std::string programFolder()
{
  char program[4096];
  std::string hostPath;
  DWORD const length = GetModuleFileName(nullptr, program, sizeof program);
  if (length == 0 || !ToHostPath({program, length}, hostPath)) return {};
  return hostPath.substr(0, hostPath.rfind('/'));
}

std::string currentFolder()
{
  std::unique_ptr<char, decltype(&std::free)> const folder(zp::GetHostCalls().CurrentFolder(), &std::free);
  return folder ? folder.get() : ".";
}

void addFolders(std::vector<std::string> & folders, std::string_view list, char separator)
{
  while (!list.empty()) {
    std::string_view const folder = list.substr(0, list.find(separator));
    if (!folder.empty()) folders.emplace_back(folder);
    list.remove_prefix(folder.size() < list.size() ? folder.size() + 1 : folder.size());
  }
}

std::vector<std::string> searchedFolders(char const * path)
{
  std::vector<std::string> folders;
  if (path == nullptr) {
    folders = {programFolder(), currentFolder()};
    char const * const programs = std::getenv("PATH");
    if (programs != nullptr) addFolders(folders, programs, ':');
    return folders;
  }
  addFolders(folders, path, ';');
  for (std::string & folder : folders) {
    std::string hostPath;
    folder = ToHostPath(folder, hostPath) ? hostPath : std::string();
  }
  return folders;
}

// The host path of the first file of that name, or an empty one.
std::string findFile(std::vector<std::string> const & folders, std::string const & name)
{
  if (name.empty()) return {};
  if (name.front() == '/') return isFile(name) ? name : std::string();
  for (std::string const & folder : folders) {
    if (!folder.empty() && isFile(folder + '/' + name)) return folder + '/' + name;
  }
  return {};
}

}  // namespace

DWORD GetLastError()
{
  return g_nLastError;
}

HANDLE FindFirstFileA(char const * pattern, WIN32_FIND_DATA * found)
{
  std::string hostPattern;
  std::string folder = ".";
  bool const isPath = ToHostPath(pattern, hostPattern);
  size_t const slash = hostPattern.rfind('/');
  if (slash != std::string::npos) folder = slash == 0 ? "/" : hostPattern.substr(0, slash);
  std::string wanted = slash == std::string::npos ? hostPattern : hostPattern.substr(slash + 1);
  if (wanted == "*.*") wanted = "*";

  OpenFolder entries(isPath ? zp::GetHostCalls().OpenFolder(folder.c_str()) : nullptr);
  if (!entries) {
    failWith(ERROR_PATH_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
  }
  while (char const * const entry = zp::GetHostCalls().NextEntry(entries.get())) {
    if (!fits(entry, wanted)) continue;
    if (found != nullptr) describe(*found, folder, entry);
    return new FileSearch{std::move(entries)};
  }
  failWith(ERROR_FILE_NOT_FOUND);
  return INVALID_HANDLE_VALUE;
}

BOOL FindClose(HANDLE search)
{
  if (search != INVALID_HANDLE_VALUE) delete search;
  return TRUE;
}

BOOL CreateDirectoryA(char const * path, SECURITY_ATTRIBUTES *)
{
  std::string hostPath;
  if (!ToHostPath(path, hostPath)) return failWith(ERROR_PATH_NOT_FOUND);
  if (zp::GetHostCalls().MakeFolder(hostPath.c_str(), newFolderMode) == 0) return TRUE;
  int const error = errno;
  return failWith(error == ENOENT ? LONG{ERROR_PATH_NOT_FOUND} : zp::SystemErrorOfError(error));
}

DWORD SearchPathA(char const * path, char const * name, char const * extension, DWORD size, char * buffer, char ** filePart)
{
  std::string hostName;
  if (!ToHostPath(name, hostName)) hostName.clear();
  size_t const lastPart = hostName.rfind('/') + 1;
  if (extension != nullptr && hostName.find('.', lastPart) == std::string::npos) hostName += extension;
  std::string const file = findFile(searchedFolders(path), hostName);
  if (file.empty()) {
    failWith(ERROR_FILE_NOT_FOUND);
    return 0;
  }
  CString const full = FromHostPath(file);
  auto const length = static_cast<DWORD>(full.GetLength());
  if (length >= size) return length + 1;
  buffer[full.View().copy(buffer, length)] = '\0';
  if (filePart != nullptr) *filePart = buffer + full.ReverseFind('\\') + 1;
  return length;
}
