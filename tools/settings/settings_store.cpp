// Opening the store, and the forms of values.

#include "tools/settings/settings_store.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fmt/format.h>
#include <zpbase/config.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/system_error.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

// Below the folder of the user's configuration, where folders that are missing are made.
std::string usualFile(std::string const & name)
{
  std::string const folder = GetUserConfigFolder();
  if (folder.empty()) throw Failure("the user's settings have no place, as HOME is not set; set it, or name a file");
  return folder + '/' + name;
}

// A folder that the user has named is not made: its name may be mistyped.
void requireFolder(std::string const & file)
{
  std::string const folder = std::filesystem::path(FollowedName(file)).parent_path().string();
  auto const status = StatusOf(folder.empty() ? "." : folder);
  if (!status) throw SystemFailure(fmt::format("{}: can't be created: there is no such folder; check the name", file), ENOENT);
  if (status->kind != zp::HostStatus::Folder)
    throw SystemFailure(fmt::format("{}: can't be created: {} is no folder; check the name", file, folder), ENOTDIR);
}

// The library would wait for a pipe and read a device without end.
void requireFile(std::string const & name)
{
  auto const status = StatusOf(name);
  if (status && status->kind == zp::HostStatus::Other) throw Failure(fmt::format("{}: is a device or a pipe; name a file", name));
}

}  // namespace

SettingsStore::SettingsStore(SettingsOptions const & options, Wanted wanted)
    : m_App(ToText(options.application, "the application")),
      m_bRegistry(!options.hive.empty() || (!options.company.empty() && options.profile.empty())),
      m_strCompany(options.company.empty() ? CString(GetRegistryCompanyKey()) : ToText(options.company, "the company"))
{
  if (m_bRegistry) {
    UseHive(options, wanted);
  } else {
    UseProfile(options, wanted);
  }
}

std::vector<zp::Setting> SettingsStore::List(CString const & section)
{
  std::vector<zp::Setting> settings;
  try {
    settings = m_App.ListSettings();
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    throw Failure(fmt::format("{}: can't be read: {}", m_strName, Describe(*caught)));
  }
  if (!section.IsEmpty())
    std::erase_if(settings, [&](zp::Setting const & each) { return each.section.CompareNoCase(section) != 0; });
  return settings;
}

BOOL SettingsStore::WriteBlock(CString const & section, CString const & key, std::string_view bytes)
{
  auto const * const block = reinterpret_cast<BYTE const *>(bytes.data());
  return m_App.WriteProfileBinary(section, key, block, static_cast<UINT>(bytes.size()));
}

std::string SettingsStore::TellEmpty(CString const & section) const
{
  std::string const where = section.IsEmpty() ? "" : fmt::format(" in the section \"{}\"", zp::TextToUtf8(section.View()));
  std::string const branch = m_bRegistry ? fmt::format(", branch {}", zp::TextToUtf8(Branch().View())) : "";
  return fmt::format("{}{}: 0 settings{}; {}others may be in another store: see -a, -p, -c and -r", m_strName, branch, where,
                     FileExists(m_strFile) ? "" : "there is no such file, and ");
}

void SettingsStore::Fail(Refusal const & refusal) const
{
  std::string const line = fmt::format("{}: the change was not made: {}", m_strName, refusal.cause);
  if (refusal.error != 0) throw SystemFailure(line, refusal.error);
  throw Failure(line);
}

void SettingsStore::Require(BOOL written, CString const & section, CString const & key, CString const & text) const
{
  if (!written) Fail(FindRefusal(section, key, text));
}

void SettingsStore::RequireRemoved(BOOL removed, CString const & section) const
{
  if (!removed) Fail(FindRefusalToRemove(section));
}

Refusal SettingsStore::FindRefusalToRemove(CString const & section) const
{
  bool const isBlank = section.View().find_first_not_of(" \t\v\f") == std::string_view::npos;
  if (!m_bRegistry && isBlank) return {"a section of a profile file whose name is blank can't be removed as a whole"};
  return FindHostRefusal(m_strFile, 0);
}

Refusal SettingsStore::FindRefusal(CString const & section, CString const & key, CString const & text) const
{
  Refusal misfit = m_bRegistry ? FindMisfitOfHive((Path() + "\\" + section).View(), key.View())
                               : FindMisfitOfProfile(section.View(), key.View(), text.View());
  if (!misfit.cause.empty()) return misfit;
  return FindHostRefusal(m_strFile, section.View().size() + key.View().size() + text.View().size());
}

void SettingsStore::UseHive(SettingsOptions const & options, Wanted wanted)
{
  if (!options.hive.empty()) setenv("ZP_USER_HIVE", options.hive.c_str(), 1);
  char const * const named = std::getenv("ZP_USER_HIVE");
  m_strFile = named != nullptr && *named != 0 ? named : usualFile("zephlow/user.reg");
  m_strName = options.hive.empty() ? "the user's hive " + m_strFile : options.hive;
  requireFile(m_strFile);
  if (!options.hive.empty() && wanted == Wanted::ToChange) requireFolder(m_strFile);
  HKEY root = nullptr;
  LONG const error = RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, &root);
  if (error == ERROR_NOT_REGISTRY_FILE)
    throw Failure(fmt::format("{}: doesn't begin with REGEDIT4; name a registration-entries file", m_strName));
  if (error != ERROR_SUCCESS) ReadWholeFile(m_strFile);  // raises the cause, if the host has one
  if (error != ERROR_SUCCESS) throw Failure(fmt::format("{}: can't be read (error {})", m_strName, error));
  RegCloseKey(root);
  m_App.SetRegistryKey(m_strCompany);
}

void SettingsStore::UseProfile(SettingsOptions const & options, Wanted wanted)
{
  bool const isNamed = !options.profile.empty();
  m_strName = isNamed ? options.profile : usualFile(options.application + ".ini");
  m_strFile = m_strName;
  requireFile(m_strFile);
  bool const mustBeThere = wanted == Wanted::ToRead && isNamed;
  if (mustBeThere || FileExists(m_strName))
    ReadWholeFile(m_strName);
  else if (isNamed)
    requireFolder(m_strName);
  m_App.SetProfileFile(InsidePath(m_strName));
}

bool IsTextType(DWORD type)
{
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

int NumberOfBytes(CString const & data)
{
  return zp::ReadLittle<int32_t>(data.GetString());
}
