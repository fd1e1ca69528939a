// From a name to the two files of a store.

#include "tools/store/store_names.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include <fmt/format.h>
#include <zpbase/config.h>
#include <zpbase/platform/ascii.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

struct Pair {
  char const * (*index)();
  char const * (*record)();
};

constexpr Pair pairs[] = {
    {GetStrIndexExt, GetStrRecExt},
    {GetUopIndexExt, GetUopRecExt},
    {GetSpeIndexExt, GetSpeRecExt},
    {GetBatchReactorIndexExt, GetBatchReactorRecExt},
    {GetControlValveIndexExt, GetControlValveRecExt},
    {GetDynamicVesselIndexExt, GetDynamicVesselRecExt},
    {GetPidControllerIndexExt, GetPidControllerRecExt},
    {GetStrHistoriesIndexExt, GetStrHistoriesRecExt},
    {GetStrRecorderIndexExt, GetStrRecorderRecExt},
    {GetStrTime0IndexExt, GetStrTime0RecExt},
    {GetTimeDelayIndexExt, GetTimeDelayRecExt},
    {GetPseudoDataIndexExt, GetPseudoDataExt},
};

std::string inLowerCase(std::string const & text)
{
  return zp::ToLower(text);
}

std::string inUpperCase(std::string text)
{
  for (char & c : text) c = zp::ToUpper(c);
  return text;
}

// The spelling of an extension beside one that the user wrote: the case that leads to a file, else the case of what was written.
std::string besides(std::string const & stem, std::string const & extension, std::string const & written)
{
  bool const lower = written == inLowerCase(written);
  std::string const first = stem + (lower ? inLowerCase(extension) : inUpperCase(extension));
  std::string const second = stem + (lower ? inUpperCase(extension) : inLowerCase(extension));
  return !FileExists(first) && FileExists(second) ? second : first;
}

std::vector<StoreNames> storesOfStem(std::string const & stem)
{
  std::vector<StoreNames> found;
  for (Pair const & pair : pairs) {
    for (bool const lower : {false, true}) {
      auto const inCase = [lower](std::string const & text) { return lower ? inLowerCase(text) : inUpperCase(text); };
      StoreNames const names = {stem + inCase(pair.index()), stem + inCase(pair.record())};
      if (FileExists(names.index) || FileExists(names.record)) found.push_back(names);
    }
  }
  if (found.size() == 2 && inLowerCase(found[0].index) == inLowerCase(found[1].index)) {
    // The two files of one pair in different cases of letters.
    if (!FileExists(found[0].index) && !FileExists(found[1].record)) {
      return {{found[1].index, found[0].record}};
    }
    if (!FileExists(found[0].record) && !FileExists(found[1].index)) {
      return {{found[0].index, found[1].record}};
    }
  }
  return found;
}

StoreNames resolveStem(std::string const & stem)
{
  std::vector<StoreNames> const found = storesOfStem(stem);
  if (found.size() > 1) {
    throw Failure(fmt::format("{}: is the stem of several stores ({}, {}{}); name one of their files", stem, found[0].index,
                              found[1].index, found.size() > 2 ? ", ..." : ""),
                  exitUsage);
  }
  return found.size() == 1 ? found.front() : StoreNames{stem + GetStrIndexExt(), stem + GetStrRecExt()};
}

}  // namespace

StoreNames ResolveStore(std::string const & name, std::string const & recordName)
{
  if (!recordName.empty()) return {name, recordName};
  std::string const written = std::filesystem::path(name).extension().string();
  std::string const stem = name.substr(0, name.size() - written.size());
  for (Pair const & pair : pairs) {
    if (zp::EqualsNoCase(written, pair.index())) return {name, besides(stem, pair.record(), written)};
    if (zp::EqualsNoCase(written, pair.record())) return {besides(stem, pair.index(), written), name};
  }
  if (IsRegularFile(name)) {
    throw Failure(fmt::format("{}: has no extension of a store's file; name its record file with --record", name), exitUsage);
  }
  return resolveStem(name);
}

void RequireOtherFile(StoreNames const & names, std::string const & output)
{
  for (std::string const & file : {names.index, names.record}) {
    if (output == "-" || (output != file && !LeadToOneFile(output, file))) continue;
    throw Failure(fmt::format("{}: is a file of the store itself; name another file to write", output), exitUsage);
  }
}
