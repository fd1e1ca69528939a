// The causes of refusals, in the order in which a change meets them.

#include "tools/settings/refusal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

constexpr unsigned int newFolderMode = 0777;
constexpr unsigned int stickyFolder = 01000;  // in which files of others can't be replaced
constexpr std::ptrdiff_t deepestKey = 512;    // levels of a hive

bool hasAny(std::string_view text, std::string_view characters)
{
  return text.find_first_of(characters) != std::string_view::npos;
}

bool isControl(char c)
{
  return c >= 0 && c < ' ';
}

// The folders above a file as the store makes them, from the highest on; folder is the one that can't be made.
int makeFoldersAbove(std::string const & file, std::string & folder)
{
  std::string const above = std::filesystem::path(file).parent_path().string();
  if (above.empty() || IsFolder(above)) return 0;
  if (int const error = makeFoldersAbove(above, folder); error != 0) return error;
  if (zp::GetHostCalls().MakeFolder(above.c_str(), newFolderMode) == 0) return 0;
  int const error = errno;
  if (error == EEXIST && IsFolder(above)) return 0;
  folder = above;
  return error == EEXIST ? ENOTDIR : error;
}

// Whether the folder keeps a file of another user from the one that we have written.
bool isKept(std::string const & target, std::string const & written)
{
  auto const former = StatusOf(target);
  auto const ours = StatusOf(written);
  auto const folder = StatusOf(std::filesystem::path(written).parent_path().string());
  return former && ours && folder && (folder->mode & stickyFolder) != 0 && former->user != ours->user &&
         folder->user != ours->user;
}

}  // namespace

Refusal FindMisfitOfProfile(std::string_view section, std::string_view key, std::string_view text)
{
  size_t const first = key.find_first_not_of(" \t\v\f");
  bool const isKey = first != std::string_view::npos && !hasAny(key, "\r\n=") && key[first] != '[' && key[first] != ';';
  if (hasAny(section, "\r\n]")) return {"a profile file's section has no line end and no ]"};
  if (!isKey && first == std::string_view::npos) return {"a profile file's key isn't blank"};
  if (!isKey) return {"a profile file's key has no line end and no =, and doesn't begin with [ or ;"};
  if (hasAny(text, "\r\n")) return {"a profile file's text has no line end"};
  if (text.find('\0') != std::string_view::npos) return {"a profile file's text has no character 0"};
  return {};
}

Refusal FindMisfitOfHive(std::string_view path, std::string_view key)
{
  bool const hasParts = !path.starts_with('\\') && !path.ends_with('\\') && path.find("\\\\") == std::string_view::npos;
  if (!hasParts) return {"a hive's section has a name on either side of each \\"};
  if (std::any_of(path.begin(), path.end(), isControl)) return {"a hive's section has no line end and no control character"};
  if (std::count(path.begin(), path.end(), '\\') >= deepestKey) return {"a hive's section isn't that deep"};
  if (hasAny(key, "\r\n")) return {"a hive's key has no line end"};
  return {};
}

Refusal FindHostRefusal(std::string const & file, size_t growth)
{
  std::string const target = FollowedName(file);
  std::string folder;
  if (int const error = makeFoldersAbove(target, folder); error != 0)
    return {fmt::format("the folder {} can't be made: {}", folder, std::strerror(error)), error};
  std::string content = FileExists(target) ? ReadWholeFile(target) : "";
  content.append(growth, ' ');
  bool kept = false;
  int error = 0;
  auto const look = [&](std::string const & written) {
    kept = isKept(target, written);
    return false;
  };
  ReplaceFileDurablyIf(InsidePath(target), content, look, &error);
  if (kept) return {"the file is another user's, and its folder lets nobody else replace it", EPERM};
  if (error == ECANCELED) return {"a cause that is gone by now; try again", EIO};
  std::string const place = IsLink(file) ? target : "it";
  return {fmt::format("the new file can't be written beside {}: {}", place, ReasonOf(error)), error};
}
