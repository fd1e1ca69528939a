// Runs the program zp as a user would, in a folder: the built one, or that of the installation whose prefix ZP_TEST_INSTALLED
// names.

#pragma once

#include <filesystem>
#include <string>

struct ProgramRun {
  int status;
  std::string out;
  std::string err;
};

// The path of that program.
std::string ZpProgram();

// arguments as a shell reads them; input is what standard input holds.
ProgramRun RunZp(std::filesystem::path const & folder, std::string const & arguments, std::string const & input = "");
