// zp settings: looks at and changes the settings of an application, in its profile file or its registry hive, and carries them
// to and from registration-entries files.

#include "tools/commands.h"

#include <algorithm>
#include <optional>
#include <vector>

#include <fmt/format.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/encoding.h>
#include <nlohmann/json.hpp>

#include "tools/interrupt_guard.h"
#include "tools/json_output.h"
#include "tools/number_option.h"
#include "tools/program.h"
#include "tools/settings/registration_entries.h"
#include "tools/settings/settings_store.h"

namespace {

bool isNumber(zp::Setting const & setting)
{
  return setting.type == REG_DWORD && setting.data.GetLength() == 4;
}

std::string typeName(zp::Setting const & setting)
{
  if (IsTextType(setting.type)) return "text";
  if (isNumber(setting)) return "integer";
  return setting.type == REG_BINARY ? "binary" : fmt::format("type {}", setting.type);
}

// The text up to its zero byte, the number, or the bytes as pairs of digits.
std::string shownValue(zp::Setting const & setting)
{
  if (IsTextType(setting.type)) return zp::TextToUtf8(setting.data.GetString());
  if (isNumber(setting)) return std::to_string(NumberOfBytes(setting.data));
  std::string digits;
  zp::AppendHex(digits, setting.data.View());
  return digits;
}

nlohmann::ordered_json jsonOf(zp::Setting const & setting)
{
  return {{"section", zp::TextToUtf8(setting.section.View())},
          {"key", zp::TextToUtf8(setting.key.View())},
          {"type", typeName(setting)},
          {"value", shownValue(setting)}};
}

std::string bytesOf(std::string const & digits)
{
  std::string bytes;
  if (zp::AppendFromHex(bytes, digits)) return bytes;
  throw Failure(fmt::format("\"{}\": a block is pairs of hexadecimal digits, such as 4f00", digits), exitUsage);
}

// A number beyond 2147483647 has the bits of the negative one that programs read.
int integerOf(std::string const & digits)
{
  auto const number = WholeNumberOf<int64_t>(digits, INT32_MIN, UINT32_MAX);
  if (!number) throw Failure(fmt::format("\"{}\": an integer is from -2147483648 to 4294967295", digits), exitUsage);
  return static_cast<int>(static_cast<uint32_t>(*number));
}

// An argument that names something; an empty one comes from an unset variable of the shell and names nothing.
CString nameOf(std::string const & argument, char const * what)
{
  if (argument.empty()) throw Failure(fmt::format("{} is empty; name one", what), exitUsage);
  return ToText(argument, what);
}

// The setting itself, which must be there.
zp::Setting find(SettingsStore & store, CString const & section, CString const & key)
{
  for (zp::Setting & setting : store.List(section)) {
    if (setting.key.CompareNoCase(key) == 0) return std::move(setting);
  }
  throw Failure(fmt::format("{}: no setting \"{}\" in the section \"{}\"; see zp settings list", store.Name(),
                            zp::TextToUtf8(key.View()), zp::TextToUtf8(section.View())));
}

// With all below it.
void removeSection(SettingsOptions const & options, CString const & section)
{
  SettingsStore store(options, Wanted::ToRead);
  std::vector<zp::Setting> const settings = store.List(CString());
  bool const isThere = std::any_of(settings.begin(), settings.end(), [&](zp::Setting const & each) {
    CString const & name = each.section;
    bool const isWhole = name.GetLength() == section.GetLength() || name.Mid(section.GetLength(), 1) == "\\";
    return isWhole && name.Left(section.GetLength()).CompareNoCase(section) == 0;
  });
  if (!isThere)
    throw Failure(fmt::format("{}: no section \"{}\"; see zp settings list", store.Name(), zp::TextToUtf8(section.View())));
  InterruptGuard const guard;
  store.RequireRemoved(store.App().WriteProfileString(section, nullptr, nullptr), section);
}

void printSections(std::vector<zp::Setting> const & settings)
{
  CString section;
  for (size_t i = 0; i < settings.size(); ++i) {
    if (i == 0 || !(settings[i].section == section)) {
      PrintShown(fmt::format("[{}]\n", zp::TextToUtf8(settings[i].section.View())));
    }
    section = settings[i].section;
    PrintShown(
        fmt::format("{:<24} {:<8} {}\n", zp::TextToUtf8(settings[i].key.View()), typeName(settings[i]), shownValue(settings[i])));
  }
}

// An unset variable of the shell must not lead to another store.
CLI::Validator const namedSetting([](std::string & name) { return std::string(name.empty() ? "is empty; name one" : ""); },
                                  "TEXT");

struct SettingsArguments : SettingsOptions {
  // Where settings come from or go to a registration-entries file, -c names the branch in that, whichever store is used.
  void AddStore(CLI::App & command, bool carries = false)
  {
    command.add_option("-a,--application", application, "Whose settings they are")->check(namedSetting)->capture_default_str();
    auto * const inProfile =
        command.add_option("-p,--profile", profile, "Profile file; by default that of the application")->check(namedSetting);
    auto * const ofCompany = command.add_option("-c,--company", company,
                                                carries ? "The company of the branch in the file; without -p, use the registry"
                                                        : "Use the registry, the branch of this company");
    ofCompany->check(namedSetting);
    if (!carries) ofCompany->excludes(inProfile);
    command.add_option("-r,--hive", hive, "Use the registry in this registration-entries file")
        ->check(namedSetting)
        ->excludes(inProfile);
  }

  void AddSection(CLI::App & command) { command.add_option("SECTION", section)->required(); }
  void AddKey(CLI::App & command) { command.add_option("KEY", key)->required(); }
  void AddJson(CLI::App & command) { command.add_flag("--json", json, "Print JSON"); }

  CString SectionName() const { return nameOf(section, "the section"); }
  CString KeyName() const { return nameOf(key.value_or(std::string()), "the key"); }
};

struct GetSettingCommand : SettingsArguments {
  static constexpr char const * name = "get";
  static constexpr char const * help = "Print the value of a setting";
  static constexpr char const * example = "zp settings get Units Temperature";

  void AddOptions(CLI::App & command)
  {
    AddStore(command);
    AddSection(command);
    AddKey(command);
    AddJson(command);
    command.add_flag("-t,--type", showType, "Print the value's type in front of it");
  }

  ExitStatus Run() const
  {
    CString const inSection = SectionName();
    CString const wanted = KeyName();
    SettingsStore store(*this, Wanted::ToRead);
    zp::Setting const setting = find(store, inSection, wanted);
    std::string const plain = (showType ? typeName(setting) + " " : "") + shownValue(setting);
    Print((json ? DumpJson(jsonOf(setting)) : plain) + "\n");
    return exitDone;
  }

  bool showType = false;
};

struct SetCommand : SettingsArguments {
  static constexpr char const * name = "set";
  static constexpr char const * help = "Change or add a setting";
  static constexpr char const * example = "zp settings set Units Temperature K";

  void AddOptions(CLI::App & command)
  {
    AddStore(command);
    AddSection(command);
    AddKey(command);
    command.add_option("VALUE", value)->required();
    command.add_option("-t,--type", type, "The value's type")
        ->check(CLI::IsMember({"text", "integer", "binary"}))
        ->capture_default_str();
  }

  ExitStatus Run() const
  {
    CString const inSection = SectionName();
    CString const changed = KeyName();
    SettingsStore store(*this, Wanted::ToChange);
    InterruptGuard const guard;
    if (type == "integer") {
      store.Require(store.App().WriteProfileInt(inSection, changed, integerOf(value)), inSection, changed);
    } else if (type == "binary") {
      store.Require(store.WriteBlock(inSection, changed, bytesOf(value)), inSection, changed);
    } else {
      CString const text = ToText(value, "the value");
      store.Require(store.App().WriteProfileString(inSection, changed, text), inSection, changed, text);
    }
    return exitDone;
  }

  std::string value;
  std::string type = "text";
};

struct RemoveCommand : SettingsArguments {
  static constexpr char const * name = "remove";
  static constexpr char const * help = "Remove a setting, or a section without a key";
  static constexpr char const * example = "zp settings remove Units Temperature";

  void AddOptions(CLI::App & command)
  {
    AddStore(command);
    AddSection(command);
    command.add_option("KEY", key);
  }

  ExitStatus Run() const
  {
    CString const inSection = SectionName();
    if (!key) {
      removeSection(*this, inSection);
      return exitDone;
    }
    CString const removed = KeyName();
    SettingsStore store(*this, Wanted::ToRead);
    find(store, inSection, removed);
    InterruptGuard const guard;
    store.Require(store.App().WriteProfileString(inSection, removed, nullptr), inSection, removed);
    return exitDone;
  }
};

struct ListSettingsCommand : SettingsArguments {
  static constexpr char const * name = "list";
  static constexpr char const * help = "List all settings, or those of a section";
  static constexpr char const * example = "zp settings list --json";

  void AddOptions(CLI::App & command)
  {
    AddStore(command);
    command.add_option("SECTION", section);
    AddJson(command);
  }

  ExitStatus Run() const
  {
    SettingsStore store(*this, Wanted::ToRead);
    CString const inSection = ToText(section, "the section");
    std::vector<zp::Setting> const settings = store.List(inSection);
    if (settings.empty()) Tell(store.TellEmpty(inSection));
    if (!json) {
      printSections(settings);
      return exitDone;
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (zp::Setting const & setting : settings) all.push_back(jsonOf(setting));
    Print(DumpJson(all, 2) + "\n");
    return exitDone;
  }
};

struct ImportSettingsCommand : SettingsArguments {
  static constexpr char const * name = "import";
  static constexpr char const * help = "Take settings from a registration-entries file";
  static constexpr char const * example = "zp settings import settings.reg";

  void AddOptions(CLI::App & command)
  {
    AddStore(command, true);
    command.add_option("FILE", file, "The file, or - for standard input")->required();
  }

  ExitStatus Run() const { return ImportSettings(*this, file); }

  std::string file;
};

struct ExportSettingsCommand : SettingsArguments {
  static constexpr char const * name = "export";
  static constexpr char const * help = "Write all settings as a registration-entries file";
  static constexpr char const * example = "zp settings export settings.reg";

  void AddOptions(CLI::App & command)
  {
    AddStore(command, true);
    command.add_option("FILE", file, "The file, or - for standard output")->capture_default_str();
  }

  ExitStatus Run() const
  {
    ExportSettings(*this, file);
    return exitDone;
  }

  std::string file = "-";
};

}  // namespace

void AddSettingsCommands(CLI::App & app, int & status)
{
  CLI::App * const family = app.add_subcommand("settings", "Look at and change an application's settings");
  family->require_subcommand(1);
  AddCommand<GetSettingCommand>(*family, status);
  AddCommand<SetCommand>(*family, status);
  AddCommand<RemoveCommand>(*family, status);
  AddCommand<ListSettingsCommand>(*family, status);
  AddCommand<ImportSettingsCommand>(*family, status);
  AddCommand<ExportSettingsCommand>(*family, status);
}
