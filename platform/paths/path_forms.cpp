// Translates paths between the inside form and the host's.

#include <zpbase/platform/paths.h>

#include <algorithm>

#include <zpbase/platform/ascii.h>

namespace {

bool startsWithDrive(std::string_view path)
{
  return path.size() >= 2 && path[1] == ':' && zp::IsLetter(path[0]);
}

bool isSeparator(char c)
{
  return c == '\\' || c == '/';
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
