// Names of parts, made alike.

#include "servers/embedded/package_names.h"

#include <vector>

namespace embedded {
namespace {

char foldName(char c)
{
  if (c == '\\') return '/';
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view folderOf(std::string_view part)
{
  size_t const slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : part.substr(0, slash + 1);
}

}  // namespace

std::string NormalizePart(std::string_view name)
{
  std::vector<size_t> starts;  // of the folders that lead to where the result has come
  std::string part;
  size_t at = 0;
  while (at < name.size()) {
    size_t const end = std::min(name.find_first_of("/\\", at), name.size());
    std::string_view const step = name.substr(at, end - at);
    bool const isLast = end == name.size();
    at = end + 1;
    if (step.empty() || step == ".") continue;
    if (step == "..") {
      if (starts.empty()) continue;
      part.resize(starts.back());
      starts.pop_back();
      continue;
    }
    starts.push_back(part.size());
    for (char const c : step) part += foldName(c);
    if (!isLast) part += '/';
  }
  return part;
}

std::string ResolveTarget(std::string_view from, std::string_view target)
{
  if (!target.empty() && (target.front() == '/' || target.front() == '\\')) return NormalizePart(target);
  return NormalizePart(std::string(folderOf(from)).append(target));
}

std::string RelationsOf(std::string_view part)
{
  std::string_view const folder = folderOf(part);
  return std::string(folder).append("_rels/").append(part.substr(folder.size())).append(".rels");
}

}  // namespace embedded
