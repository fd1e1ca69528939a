// The table of commands, and the end that every failure comes to.

#include "tools/command_line.h"

#include <exception>

#include <zpbase/platform/exceptions.h>

#include "tools/commands.h"
#include "tools/program.h"

namespace {

using AddCommands = void (*)(CLI::App & app, int & status);

constexpr AddCommands commandTable[] = {
    AddStoreCommands, AddSettingsCommands, AddTextCommands, AddDrawingCommands, AddViewCommands,
};

int fail(std::string const & line, int status)
{
  Tell(line);
  return status;
}

// Help and version are no errors; everything else that the command line gets wrong is one line that names the way to help.
int endParsing(CLI::App const & app, CLI::ParseError const & error)
{
  if (error.get_exit_code() == 0) return app.exit(error);
  CLI::App const * command = &app;
  std::string name = app.get_name();
  for (auto used = command->get_subcommands(); !used.empty(); used = command->get_subcommands()) {
    command = used.front();
    name += " " + command->get_name();
  }
  return fail(std::string(error.what()) + "; see " + name + " --help", exitUsage);
}

}  // namespace

int RunCommandLine(int argc, char const * const * argv)
{
  CLI::App app("Tools of the Zephlow base library", "zp");
  app.require_subcommand(1);
  app.set_version_flag("--version", "zp " ZP_VERSION);
  int status = exitDone;
  for (AddCommands const add : commandTable) add(app, status);
  try {
    app.parse(argc, argv);
    FlushOutput();
    return status;
  } catch (CLI::ParseError const & error) {
    return endParsing(app, error);
  } catch (Failure const & failure) {
    return fail(failure.what(), failure.GetStatus());
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return fail(Describe(*caught), exitWanting);
  } catch (std::bad_alloc const &) {
    return fail("memory ran out; close other programs or work on smaller pieces", exitWanting);
  } catch (std::exception const & error) {
    return fail(error.what(), exitWanting);
  }
}
