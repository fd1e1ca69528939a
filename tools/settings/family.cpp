// zp settings: looks at and changes the settings of an application, in its profile file or its registry hive, and carries them
// to and from registration-entries files.

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <zpbase/platform/encoding.h>

#include "tools/commands.h"
#include "tools/program.h"
#include "tools/settings/settings_store.h"

namespace {

bool isNumber(zp::Setting const & setting)
{
  return setting.m_nType == REG_DWORD && setting.m_strData.GetLength() == 4;
}

std::string typeName(zp::Setting const & setting)
{
  if (IsTextType(setting.m_nType)) return "text";
  if (isNumber(setting)) return "integer";
  return setting.m_nType == REG_BINARY ? "binary" : fmt::format("type {}", setting.m_nType);
}

// The text up to its zero byte, the number, or the bytes as pairs of digits.
std::string shownValue(zp::Setting const & setting)
{
  if (IsTextType(setting.m_nType)) return zp::TextToUtf8(setting.m_strData.GetString());
  if (isNumber(setting)) return std::to_string(NumberOfBytes(setting.m_strData));
  std::string digits;
  for (char const c : setting.m_strData.View()) digits += fmt::format("{:02x}", static_cast<unsigned char>(c));
  return digits;
}

nlohmann::ordered_json jsonOf(zp::Setting const & setting)
{
  return {{"section", zp::TextToUtf8(setting.m_strSection.View())},
          {"key", zp::TextToUtf8(setting.m_strKey.View())},
          {"type", typeName(setting)},
          {"value", shownValue(setting)}};
}

std::string bytesOf(std::string const & digits)
{
  std::string bytes;
  for (size_t i = 0; i < digits.size(); i += 2) {
    unsigned int byte = 0;
    char const * const end = digits.data() + std::min(i + 2, digits.size());
    auto const read = std::from_chars(digits.data() + i, end, byte, 16);
    if (digits.size() % 2 != 0 || read.ec != std::errc() || read.ptr != end)
      throw Failure(fmt::format("\"{}\": a block is pairs of hexadecimal digits, such as 4f00", digits), exitUsage);
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

int integerOf(std::string const & digits)
{
  int number = 0;
  auto const read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size())
    throw Failure(fmt::format("\"{}\": an integer is from -2147483648 to 2147483647", digits), exitUsage);
  return number;
}

// An argument that names something; an empty one comes from an unset variable of the shell and names nothing.
CString nameOf(std::string const & argument, char const * what)
{
  if (argument.empty()) throw Failure(fmt::format("{} is empty; name one", what), exitUsage);
  return ToText(argument, what);
}

CString sectionName(SettingsOptions const & options)
{
  return nameOf(options.section, "the section");
}

CString keyName(SettingsOptions const & options)
{
  return nameOf(options.key.value_or(std::string()), "the key");
}

// The setting itself, which must be there.
zp::Setting find(SettingsStore & store, CString const & section, CString const & key)
{
  for (zp::Setting & setting : store.List(section)) {
    if (setting.m_strKey.CompareNoCase(key) == 0) return std::move(setting);
  }
  throw Failure(fmt::format("{}: no setting \"{}\" in the section \"{}\"; see zp settings list", store.Name(),
                            zp::TextToUtf8(key.View()), zp::TextToUtf8(section.View())));
}

void get(SettingsOptions const & options)
{
  CString const section = sectionName(options);
  CString const key = keyName(options);
  SettingsStore store(options);
  zp::Setting const setting = find(store, section, key);
  Print((options.json ? jsonOf(setting).dump() : shownValue(setting)) + "\n");
}

void set(SettingsOptions const & options)
{
  CString const section = sectionName(options);
  CString const key = keyName(options);
  SettingsStore store(options);
  if (options.type == "integer") {
    store.Require(store.App().WriteProfileInt(section, key, integerOf(options.value)));
  } else if (options.type == "binary") {
    store.Require(store.WriteBlock(section, key, bytesOf(options.value)));
  } else {
    store.Require(store.App().WriteProfileString(section, key, ToText(options.value, "the value")));
  }
}

// With all below it.
void removeSection(SettingsOptions const & options, CString const & section)
{
  SettingsStore store(options);
  std::vector<zp::Setting> const settings = store.List(CString());
  bool const isThere = std::any_of(settings.begin(), settings.end(), [&](zp::Setting const & each) {
    CString const & name = each.m_strSection;
    bool const isWhole = name.GetLength() == section.GetLength() || name.Mid(section.GetLength(), 1) == "\\";
    return isWhole && name.Left(section.GetLength()).CompareNoCase(section) == 0;
  });
  if (!isThere)
    throw Failure(fmt::format("{}: no section \"{}\"; see zp settings list", store.Name(), zp::TextToUtf8(section.View())));
  store.Require(store.App().WriteProfileString(section, nullptr, nullptr));
}

void removeSetting(SettingsOptions const & options)
{
  CString const section = sectionName(options);
  if (!options.key) {
    removeSection(options, section);
    return;
  }
  CString const key = keyName(options);
  SettingsStore store(options);
  find(store, section, key);
  store.Require(store.App().WriteProfileString(section, key, nullptr));
}

void list(SettingsOptions const & options)
{
  SettingsStore store(options);
  std::vector<zp::Setting> const settings = store.List(ToText(options.section, "the section"));
  if (options.json) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (zp::Setting const & setting : settings) all.push_back(jsonOf(setting));
    Print(all.dump(2) + "\n");
    return;
  }
  CString section;
  for (size_t i = 0; i < settings.size(); ++i) {
    if (i == 0 || !(settings[i].m_strSection == section))
      Print(fmt::format("[{}]\n", zp::TextToUtf8(settings[i].m_strSection.View())));
    section = settings[i].m_strSection;
    Print(fmt::format("{:<24} {:<8} {}\n", zp::TextToUtf8(settings[i].m_strKey.View()), typeName(settings[i]),
                      shownValue(settings[i])));
  }
}

// Where settings come from or go to a registration-entries file, -c names the branch in that, whichever store is used.
void addStoreOptions(CLI::App & command, SettingsOptions & options, bool carries)
{
  // An unset variable of the shell must not lead to another store.
  CLI::Validator const isNamed([](std::string & name) { return std::string(name.empty() ? "is empty; name one" : ""); }, "TEXT");
  command.add_option("-a,--application", options.application, "Whose settings they are")->check(isNamed)->capture_default_str();
  auto * const profile =
      command.add_option("-p,--profile", options.profile, "Profile file; by default that of the application")->check(isNamed);
  auto * const company = command.add_option("-c,--company", options.company,
                                            carries ? "The company of the branch in the file; without -p, use the registry"
                                                    : "Use the registry, the branch of this company");
  company->check(isNamed);
  if (!carries) company->excludes(profile);
  command.add_option("-r,--hive", options.hive, "Use the registry in this registration-entries file")
      ->check(isNamed)
      ->excludes(profile);
}

}  // namespace

void AddSettingsCommands(CLI::App & app, int & status)
{
  static SettingsOptions options;
  CLI::App * const settings = app.add_subcommand("settings", "Look at and change an application's settings");
  settings->require_subcommand(1);
  auto const add = [&](char const * name, char const * what, auto work, bool carries = false) {
    CLI::App * const command = settings->add_subcommand(name, what);
    addStoreOptions(*command, options, carries);
    command->callback(work);
    return command;
  };
  CLI::App * const getter = add("get", "Print the value of a setting", [] { get(options); });
  CLI::App * const setter = add("set", "Change or add a setting", [] { set(options); });
  CLI::App * const remover = add("remove", "Remove a setting, or a section without a key", [] { removeSetting(options); });
  CLI::App * const lister = add("list", "List all settings, or those of a section", [] { list(options); });
  CLI::App * const importer = add(
      "import", "Take settings from a registration-entries file", [&status] { ImportSettings(options, status); }, true);
  CLI::App * const exporter = add(
      "export", "Write all settings as a registration-entries file", [] { ExportSettings(options); }, true);
  for (CLI::App * const command : {getter, setter, remover}) command->add_option("section", options.section)->required();
  lister->add_option("section", options.section);
  for (CLI::App * const command : {getter, setter}) command->add_option("key", options.key)->required();
  remover->add_option("key", options.key);
  setter->add_option("value", options.value)->required();
  setter->add_option("-t,--type", options.type, "The value's type")
      ->check(CLI::IsMember({"text", "integer", "binary"}))
      ->capture_default_str();
  importer->add_option("file", options.file, "The file, or - for standard input")->required();
  exporter->add_option("file", options.file, "The file, or - for standard output")->capture_default_str();
  for (CLI::App * const command : {getter, lister}) command->add_flag("--json", options.json, "Print JSON");
}
