// zp settings: looks at and changes the settings of an application, in its profile file or its registry hive, and carries them
// to and from registration-entries files.

#include <charconv>
#include <cstdlib>
#include <optional>
#include <vector>

#include <fmt/format.h>
#include <zpbase/config.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/registry.h>
#include <nlohmann/json.hpp>

#include "tools/commands.h"
#include "tools/program.h"

namespace {

struct Options {
  std::string application = "Zephlow";
  std::string company;
  std::string profile;
  std::string hive;
  std::string section;
  std::string key;
  std::string value;
  std::string type = "text";
  std::string file = "-";
  bool json = false;
};

// The application whose settings the command works on.
class Store {
 public:
  explicit Store(Options const & options)
      : m_App(ToText(options.application, "the application")),
        m_bRegistry(!options.hive.empty() || !options.company.empty()),
        m_strCompany(options.company.empty() ? CString(GetRegistryCompanyKey()) : ToText(options.company, "the company"))
  {
    if (m_bRegistry) {
      UseHive(options);
    } else {
      UseProfile(options);
    }
  }

  CWinApp & App() { return m_App; }
  bool IsRegistry() const { return m_bRegistry; }
  std::string const & Name() const { return m_strName; }
  CString Path() const { return "Software\\" + m_strCompany + "\\" + m_App.m_pszAppName; }
  CString Branch() const { return "HKEY_CURRENT_USER\\" + Path(); }

  std::vector<zp::Setting> List(CString const & section)
  {
    std::vector<zp::Setting> settings = m_App.ListSettings();
    if (!section.IsEmpty())
      std::erase_if(settings, [&](zp::Setting const & each) { return each.m_strSection.CompareNoCase(section) != 0; });
    return settings;
  }

  void Require(BOOL written) const
  {
    if (!written)
      throw Failure(fmt::format("{}: the change was not made; the file must be writable, and names and texts must fit its form",
                                m_strName));
  }

 private:
  void UseHive(Options const & options)
  {
    if (!options.hive.empty()) setenv("ZP_USER_HIVE", options.hive.c_str(), 1);
    m_strName = options.hive.empty() ? "the user's hive" : options.hive;
    HKEY root = nullptr;
    LONG const error = RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, &root);
    if (error == ERROR_NOT_REGISTRY_FILE)
      throw Failure(fmt::format("{}: doesn't begin with REGEDIT4; name a registration-entries file", m_strName));
    if (error != ERROR_SUCCESS) throw Failure(fmt::format("{}: can't be read (error {})", m_strName, error));
    RegCloseKey(root);
    m_App.SetRegistryKey(m_strCompany);
  }

  void UseProfile(Options const & options)
  {
    m_strName = options.profile.empty() ? GetUserConfigFolder() + '/' + options.application + ".ini" : options.profile;
    if (FileExists(m_strName)) ReadWholeFile(m_strName);
    m_App.SetProfileFile(FromHostPath(m_strName));
  }

  CWinApp m_App;
  bool m_bRegistry;
  CString m_strCompany;
  std::string m_strName;
};

bool isText(DWORD type)
{
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

bool isNumber(zp::Setting const & setting)
{
  return setting.m_nType == REG_DWORD && setting.m_strData.GetLength() == 4;
}

int numberOf(CString const & data)
{
  unsigned int number = 0;
  for (int i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(data[i]);
  return static_cast<int>(number);
}

std::string typeName(zp::Setting const & setting)
{
  if (isText(setting.m_nType)) return "text";
  if (isNumber(setting)) return "integer";
  return setting.m_nType == REG_BINARY ? "binary" : fmt::format("type {}", setting.m_nType);
}

// The text up to its zero byte, the number, or the bytes as pairs of digits.
std::string shownValue(zp::Setting const & setting)
{
  if (isText(setting.m_nType)) return zp::TextToUtf8(setting.m_strData.GetString());
  if (isNumber(setting)) return std::to_string(numberOf(setting.m_strData));
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

BOOL writeBlock(CWinApp & app, CString const & section, CString const & key, std::string_view bytes)
{
  return app.WriteProfileBinary(section, key, reinterpret_cast<BYTE const *>(bytes.data()), static_cast<UINT>(bytes.size()));
}

void get(Options const & options)
{
  Store store(options);
  CString const key = ToText(options.key, "the key");
  for (zp::Setting const & setting : store.List(ToText(options.section, "the section"))) {
    if (setting.m_strKey.CompareNoCase(key) != 0) continue;
    Print((options.json ? jsonOf(setting).dump() : shownValue(setting)) + "\n");
    return;
  }
  throw Failure(fmt::format("{}: no setting \"{}\" in the section \"{}\"; see zp settings list", store.Name(), options.key,
                            options.section));
}

void set(Options const & options)
{
  Store store(options);
  CString const section = ToText(options.section, "the section");
  CString const key = ToText(options.key, "the key");
  if (options.type == "integer") {
    store.Require(store.App().WriteProfileInt(section, key, integerOf(options.value)));
  } else if (options.type == "binary") {
    store.Require(writeBlock(store.App(), section, key, bytesOf(options.value)));
  } else {
    store.Require(store.App().WriteProfileString(section, key, ToText(options.value, "the value")));
  }
}

void removeSetting(Options const & options)
{
  Store store(options);
  CString const section = ToText(options.section, "the section");
  CString const key = ToText(options.key, "the key");
  store.Require(store.App().WriteProfileString(section, options.key.empty() ? nullptr : key.GetString(), nullptr));
}

void list(Options const & options)
{
  Store store(options);
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

void exportTo(Options const & options)
{
  Store store(options);
  std::vector<zp::RegistryEntry> entries;
  for (zp::Setting & setting : store.List(CString()))
    entries.push_back({zp::RegistryEntry::SetValue, store.Branch() + "\\" + setting.m_strSection, std::move(setting.m_strKey),
                       setting.m_nType, std::move(setting.m_strData)});
  WriteWholeFile(options.file, zp::WriteRegistryText(entries));
}

// The section that a key of the branch is, or nothing for another key.
std::optional<CString> sectionOf(CString const & key, CString const & branch)
{
  if (key.Left(branch.GetLength()).CompareNoCase(branch) != 0) return std::nullopt;
  CString const rest = key.Mid(branch.GetLength());
  if (rest.IsEmpty() || rest[0] != '\\') return std::nullopt;
  return rest.Mid(1);
}

// A hive keeps every type. A profile file has no form for those beyond text, integer and block.
BOOL writeValue(Store & store, CString const & section, zp::RegistryEntry const & entry)
{
  CWinApp & app = store.App();
  std::string_view const data = entry.m_strData.View();
  if (store.IsRegistry()) {
    HKEY key = nullptr;
    CString const path = store.Path() + "\\" + section;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &key, nullptr) != 0)
      return FALSE;
    auto const * const bytes = reinterpret_cast<BYTE const *>(data.data());
    LONG const error = RegSetValueExA(key, entry.m_strName, 0, entry.m_nType, bytes, static_cast<DWORD>(data.size()));
    RegCloseKey(key);
    return error == ERROR_SUCCESS;
  }
  if (isText(entry.m_nType)) return app.WriteProfileString(section, entry.m_strName, entry.m_strData.GetString());
  if (entry.m_nType == REG_DWORD && data.size() == 4)
    return app.WriteProfileInt(section, entry.m_strName, numberOf(entry.m_strData));
  return entry.m_nType == REG_BINARY && writeBlock(app, section, entry.m_strName, data);
}

BOOL apply(Store & store, CString const & section, zp::RegistryEntry const & entry)
{
  switch (entry.m_Kind) {
    case zp::RegistryEntry::RemoveKey:
      return store.App().WriteProfileString(section, nullptr, nullptr);
    case zp::RegistryEntry::RemoveValue:
      return store.App().WriteProfileString(section, entry.m_strName, nullptr);
    default:
      return writeValue(store, section, entry);
  }
}

void importFrom(Options const & options, int & status)
{
  Store store(options);
  std::vector<zp::RegistryEntry> entries;
  int damaged = 0;
  if (!zp::ReadRegistryText(ReadWholeFile(options.file), entries, damaged))
    throw Failure(fmt::format("{}: is no registration-entries file; it must begin with REGEDIT4", options.file));
  int taken = 0;
  int refused = 0;
  int elsewhere = 0;
  for (zp::RegistryEntry const & entry : entries) {
    std::optional<CString> const section = sectionOf(entry.m_strKey, store.Branch());
    ++(!section ? elsewhere : apply(store, *section, entry) ? taken : refused);
  }
  Print(fmt::format("{}: {} settings taken, {} refused, {} damaged lines, {} of other keys than {}\n", options.file, taken,
                    refused, damaged, elsewhere, zp::TextToUtf8(store.Branch().View())));
  if (refused + damaged > 0) status = exitWanting;
}

void addStoreOptions(CLI::App & command, Options & options)
{
  command.add_option("-a,--application", options.application, "Whose settings they are")->capture_default_str();
  auto * const profile = command.add_option("-p,--profile", options.profile, "Profile file; by default that of the application");
  command.add_option("-c,--company", options.company, "Use the registry, the branch of this company")->excludes(profile);
  command.add_option("-r,--hive", options.hive, "Use the registry in this registration-entries file")->excludes(profile);
}

}  // namespace

void AddSettingsCommands(CLI::App & app, int & status)
{
  static Options options;
  CLI::App * const settings = app.add_subcommand("settings", "Look at and change an application's settings");
  settings->require_subcommand(1);
  auto const add = [&](char const * name, char const * what, auto work) {
    CLI::App * const command = settings->add_subcommand(name, what);
    addStoreOptions(*command, options);
    command->callback(work);
    return command;
  };
  CLI::App * const getter = add("get", "Print the value of a setting", [] { get(options); });
  CLI::App * const setter = add("set", "Change or add a setting", [] { set(options); });
  CLI::App * const remover = add("remove", "Remove a setting, or a section without a key", [] { removeSetting(options); });
  CLI::App * const lister = add("list", "List all settings, or those of a section", [] { list(options); });
  CLI::App * const importer =
      add("import", "Take settings from a registration-entries file", [&status] { importFrom(options, status); });
  CLI::App * const exporter = add("export", "Write all settings as a registration-entries file", [] { exportTo(options); });
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
