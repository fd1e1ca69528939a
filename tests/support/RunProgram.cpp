#include "tests/support/RunProgram.h"

#include <cstdlib>

#include "tests/support/TempFolder.h"

std::string ZpProgram()
{
  char const * const installed = std::getenv("ZP_TEST_INSTALLED");
  return installed != nullptr ? std::string(installed) + "/bin/zp" : ZP_PROGRAM;
}

ProgramRun RunZp(std::filesystem::path const & folder, std::string const & arguments, std::string const & input)
{
  TempFolder const capture;
  capture.Write("in", input);
  std::string const here = capture.Path().string();
  std::string const command = "cd '" + folder.string() + "' && '" + ZpProgram() + "' " + arguments + " <'" + here + "/in' >'" +
                              here + "/out' 2>'" + here + "/err'; echo $? >'" + here + "/status'";
  if (std::system(command.c_str()) != 0) return {-1, "", "the shell failed"};
  return {std::stoi(capture.Read("status")), capture.Read("out"), capture.Read("err")};
}
