// Names of inputs and outputs.

#include "tools/drawing/file_names.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <fmt/format.h>
#include <zpbase/platform/ascii.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace fs = std::filesystem;

namespace {

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
