// The table of commands, and the end that every failure comes to.

#include "tools/command_line.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>

#include "tools/command_words.h"
#include "tools/commands.h"
#include "tools/program.h"

namespace {

struct Family {
  std::string_view name;
  void (*add)(CLI::App & app, int & status);
};

constexpr Family familyTable[] = {
    {"store", AddStoreCommands}, {"settings", AddSettingsCommands}, {"text", AddTextCommands},      {"dxf", AddDrawingCommands},
    {"view", AddViewCommands},   {"sheet", AddSheetCommands},       {"inspect", AddInspectCommand},
};

int fail(std::string const & line, int status)
{
  Tell(line);
  return status;
}

// What was typed instead of a command, with the nearest one.
std::string toldUnknown(NamedCommand const & named)
{
  std::string const nearest = FindNearestCommand(*named.command, named.unknown);
  return fmt::format("\"{}\" is no command of {}; {}see {} --help", named.unknown, named.name,
                     nearest.empty() ? "" : fmt::format("did you mean \"{}\"? ", nearest), named.name);
}

// The first word that looks like an option and is none of the command's; empty if there is no such word.
std::string unknownOption(CLI::App const & command, std::vector<std::string> const & words)
{
  for (std::string const & word : words) {
    if (word == "--") break;
    if (word.size() < 2 || word.front() != '-') continue;
    std::string name = word.substr(0, word.starts_with("--") ? word.find('=') : 2);
    if (command.get_option_no_throw(name) == nullptr) return name;
  }
  return "";
}

// Help and version are no errors; everything else that the command line gets wrong is one line that names the way to help.
int endParsing(CLI::App const & app, CLI::ParseError const & error, std::vector<std::string> const & words)
{
  NamedCommand const named = FindNamedCommand(app, words);
  if (!named.unknown.empty()) return fail(toldUnknown(named), exitUsage);
  if (error.get_exit_code() == 0) {
    int const status = app.exit(error);
    FlushOutput();
    return status;
  }
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError)) {
    std::string const unknown = unknownOption(*named.command, words);
    if (!unknown.empty())
      return fail(fmt::format("\"{}\" is no option of {}; see {} --help", unknown, named.name, named.name), exitUsage);
  }
  return fail(fmt::format("{}; see {} --help", error.what(), named.name), exitUsage);
}

// CLI11 takes the words from the last to the first.
void parse(CLI::App & app, std::vector<std::string> words)
{
  std::ranges::reverse(words);
  app.parse(std::move(words));
}

}  // namespace

void AddCommands(CLI::App & app, int & status, std::string_view family)
{
  app.name("zp");
  app.description("Tools of the Zephlow base library");
  app.require_subcommand(1);
  app.set_version_flag("-V,--version", "zp " ZP_VERSION);
  auto const asked = std::ranges::find(familyTable, family, &Family::name);
  if (asked != std::end(familyTable)) return asked->add(app, status);
  for (Family const & each : familyTable) each.add(app, status);
}

namespace {

int run(int argc, char const * const * argv)
{
  int status = exitDone;
  CLI::App app;
  std::vector<std::string> const words = ResolveHelp({argv + std::min(argc, 1), argv + argc});
  AddCommands(app, status, words.empty() ? "" : words.front());
  try {
    parse(app, words);
    FlushOutput();
    return status;
  } catch (CLI::ParseError const & error) {
    return endParsing(app, error, words);
  } catch (Failure const & failure) {
    return fail(failure.what(), failure.GetStatus());
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return fail(Describe(*caught), exitWanting);
  }
}

}  // namespace

int RunCommandLine(int argc, char const * const * argv)
{
  try {
    return run(argc, argv);
  } catch (std::bad_alloc const &) {
    TellMemoryRanOut();
  } catch (std::exception const & error) {
    Tell(error.what());
  }
  return exitWanting;
}
