// Commands and options, taken out of CLI11's.

#include "tools/pages/command_tree.h"

#include <algorithm>

#include "tools/command_words.h"

namespace {

// CLI11 tells a list of values as "{a,b}" in the type's name.
std::vector<std::string> choicesOf(std::string const & type)
{
  size_t const open = type.find('{');
  size_t const close = type.find('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

CommandOption optionOf(CLI::Option const & option)
{
  CommandOption read;
  read.isPositional = option.get_positional();
  read.names = read.isPositional ? std::vector{option.get_name(true)} : std::vector<std::string>();
  for (std::string const & name : option.get_snames()) read.names.push_back("-" + name);
  for (std::string const & name : option.get_lnames()) read.names.push_back("--" + name);
  read.help = option.get_description();
  bool const takesValue = option.get_items_expected_max() > 0 && !read.isPositional;
  if (takesValue) read.value = option.get_type_name().starts_with("INT") ? "NUMBER" : "TEXT";
  read.choices = choicesOf(option.get_type_name());
  read.isRequired = option.get_required();
  read.isRepeated = option.get_items_expected_max() > 1;
  return read;
}

CommandPage pageOf(CLI::App const & app, std::vector<std::string> words)
{
  words.push_back(app.get_name());
  CommandPage page = {words, app.get_description(), app.get_footer(), {}, {}};
  for (CLI::Option const * const option : app.get_options()) page.options.push_back(optionOf(*option));
  std::stable_partition(page.options.begin(), page.options.end(),
                        [](CommandOption const & option) { return option.isPositional; });
  for (CLI::App const * const command : GetCommands(app)) page.commands.push_back(pageOf(*command, words));
  return page;
}

}  // namespace

CommandPage ReadCommandTree(CLI::App const & app)
{
  return pageOf(app, {});
}

std::string JoinWords(std::vector<std::string> const & words, char separator)
{
  std::string joined;
  for (std::string const & word : words) joined += (joined.empty() ? "" : std::string(1, separator)) + word;
  return joined;
}
