// Why a store of settings refused a change: names and texts that it has no form for, or what the host said to the way of a
// change, which is walked again without changing anything.
#pragma once

#include <string>
#include <string_view>

struct Refusal {
  std::string cause;  // empty for none
  int error = 0;      // the host's error number; 0 for a change that no such file takes
};

// What a profile file has no form for. Texts are in Windows-1252.
Refusal FindMisfitOfProfile(std::string_view section, std::string_view key, std::string_view text);

// What a hive has no form for. path is that of the section, from its root on.
Refusal FindMisfitOfHive(std::string_view path, std::string_view key);

// What the host refuses to a change of the file that makes it longer by growth bytes. Folders that it needs are made. Raises
// Failure for a file that can't be read.
Refusal FindHostRefusal(std::string const & file, size_t growth);
