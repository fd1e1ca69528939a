// zp_pages: writes zp's manual pages and completions, for the build.

#include <exception>
#include <filesystem>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "tools/commands.h"
#include "tools/pages/completions.h"
#include "tools/pages/manual_pages.h"
#include "tools/program.h"

namespace {

void writePages(std::filesystem::path const & folder)
{
  int status = exitDone;
  CLI::App app;
  AddCommands(app, status);
  CommandPage const program = ReadCommandTree(app);
  auto const write = [&folder](std::string const & name, std::string const & text) {
    WriteWholeFile((folder / name).string(), text);
  };
  write("zp.1", MakeManualPage(program, ZP_VERSION));
  for (CommandPage const & family : program.commands) {
    write(JoinWords(family.words, '-') + ".1", MakeManualPage(family, ZP_VERSION));
  }
  write("zp.bash", MakeBashCompletion(program));
  write("_zp", MakeZshCompletion(program));
  write("zp.fish", MakeFishCompletion(program));
}

}  // namespace

int main(int argc, char ** argv)
{
  try {
    if (argc != 2) throw Failure("zp_pages FOLDER", exitUsage);
    writePages(argv[1]);
    return exitDone;
  } catch (Failure const & failure) {
    Tell(failure.what());
    return failure.GetStatus();
  } catch (std::exception const & error) {
    Tell(error.what());
    return exitWanting;
  }
}
