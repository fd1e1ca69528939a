// Comparing the places of files.

#include "tools/output_names.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <zpbase/platform/file.h>

#include "tools/program.h"

namespace fs = std::filesystem;

namespace {

constexpr char const * standardStream = "-";

// A name that is the same for all ways to one file, as long as it has no hard links.
std::string placeOf(std::string const & name)
{
  std::error_code ignored;
  fs::path const place = fs::weakly_canonical(fs::absolute(name == standardStream ? "/dev/stdout" : name, ignored), ignored);
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

}  // namespace

void RefuseOverwriting(std::vector<std::string> const & inputs, std::vector<std::string> const & outputs)
{
  NamesByPlace read;
  NamesByPlace written;
  for (std::string const & input : inputs)
    if (!input.empty() && input != "-") read.emplace(placeOf(input), input);
  for (std::string const & output : outputs) {
    if (output.empty()) continue;
    std::string const place = placeOf(output);
    if (auto const input = findFile(read, place); input != read.end())
      throw Failure(input->second + ": would be overwritten; name another file", exitUsage);
    if (findFile(written, place) != written.end())
      throw Failure((output == standardStream ? "standard output" : output) + ": would be written twice; name different files",
                    exitUsage);
    written.emplace(place, output);
  }
}
