// Runs the built program zp as a user would, in a folder.

#pragma once

#include <filesystem>
#include <string>

struct ProgramRun {
  int status;
  std::string out;
  std::string err;
};

// arguments as a shell reads them; input is what standard input holds.
ProgramRun RunZp(std::filesystem::path const & folder, std::string const & arguments, std::string const & input = "");
