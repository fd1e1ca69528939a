// Which files a conversion reads and writes.
#pragma once

#include <string>
#include <vector>

struct DxfTask {
  std::string input;
  std::string output;
};

// One task a metafile: the named ones, and those in the named folders by their extension, sorted. The drawings lie in folder.
// Raises a usage Failure where two of them would have one name, and a Failure for a folder that can't be read.
std::vector<DxfTask> TasksInto(std::string const & folder, std::vector<std::string> const & named);

// Raises a usage Failure where a file to be written is one that is read, or two that are written are one. Empty names and "-"
// are none. Files that exist are compared as such, whatever their names; others by their names.
void RefuseOverwriting(std::vector<std::string> const & inputs, std::vector<std::string> const & outputs);
