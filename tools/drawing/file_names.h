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
