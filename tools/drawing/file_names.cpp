// Names of inputs and outputs.

#include "tools/drawing/file_names.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <fmt/format.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/file.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace fs = std::filesystem;

namespace {

bool isFile(std::string const & name)
{
  return !name.empty() && name != "-";
}

// A name that is the same for all ways to one file, as long as it has no hard links.
std::string placeOf(std::string const & name)
{
  std::error_code ignored;
  fs::path const place = fs::weakly_canonical(fs::absolute(name, ignored), ignored);
  return place.empty() ? name : place.string();
}

bool hasLinks(std::string const & name)
{
  std::error_code error;
  return fs::hard_link_count(name, error) > 1 && !error;
}

using NamesByPlace = std::map<std::string, std::string>;

// The entry that is the file at this place; only a file with hard links is looked for under other names.
NamesByPlace::const_iterator findFile(NamesByPlace const & names, std::string const & place)
{
  if (!hasLinks(place)) return names.find(place);
  return std::find_if(names.begin(), names.end(), [&](auto const & entry) {
    return entry.first == place || zp::IsSameFile(InsidePath(place), InsidePath(entry.first));
  });
}

bool isMetafileName(fs::path const & path)
{
  return zp::EqualsNoCase(path.extension().string(), ".wmf");
}

std::vector<std::string> metafilesIn(std::string const & folder)
{
  std::error_code error;
  std::vector<std::string> files;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (isMetafileName(entry->path()) && IsRegularFile(entry->path().string())) files.push_back(entry->path().string());
  }
  if (error) throw Failure(fmt::format("{}: can't be read: {}", folder, error.message()));
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

std::vector<DxfTask> TasksInto(std::string const & folder, std::vector<std::string> const & named)
{
  std::vector<DxfTask> tasks;
  std::map<std::string, std::string> inputs;  // by output
  auto const add = [&](std::string const & input) {
    std::string const output = (fs::path(folder) / fs::path(input).stem()).string() + ".dxf";
    auto const [place, isNew] = inputs.emplace(output, input);
    if (!isNew && place->second != input)
      throw Failure(fmt::format("{} and {} would both become {}; convert them one by one", place->second, input, output),
                    exitUsage);
    if (isNew) tasks.push_back({input, output});
  };
  for (std::string const & name : named) {
    if (!IsFolder(name)) {
      add(name);
      continue;
    }
    for (std::string const & file : metafilesIn(name)) add(file);
  }
  return tasks;
}

void RefuseOverwriting(std::vector<std::string> const & inputs, std::vector<std::string> const & outputs)
{
  NamesByPlace read;
  NamesByPlace written;
  for (std::string const & input : inputs)
    if (isFile(input)) read.emplace(placeOf(input), input);
  for (std::string const & output : outputs) {
    if (!isFile(output)) continue;
    std::string const place = placeOf(output);
    if (auto const input = findFile(read, place); input != read.end())
      throw Failure(input->second + ": would be overwritten; name another file", exitUsage);
    if (findFile(written, place) != written.end())
      throw Failure(output + ": would be written twice; name different files", exitUsage);
    written.emplace(place, output);
  }
}
