// Metafiles into drawings, one after the other.
#pragma once

#include <optional>
#include <string>
#include <vector>

struct DxfOptions {
  std::vector<std::string> files;
  std::string to;  // a folder
  std::optional<int> height;
  std::string svg;
  std::string png;
  bool stats = false;
  bool check = false;
  bool json = false;
};

// Converts files[0] into files[1], or with a folder all files, and what metafiles lie in those that are folders, into it.
void ConvertFiles(DxfOptions const & options, int & status);

// Reads drawings back and tells what is broken in them.
void CheckDrawings(DxfOptions const & options, int & status);
