// Opening the store, and the forms of values.

#include "tools/settings/settings_store.h"

#include <cstdlib>

#include <fmt/format.h>
#include <zpbase/config.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

#include "tools/program.h"

SettingsStore::SettingsStore(SettingsOptions const & options)
    : m_App(ToText(options.application, "the application")),
      m_bRegistry(!options.hive.empty() || (!options.company.empty() && options.profile.empty())),
      m_strCompany(options.company.empty() ? CString(GetRegistryCompanyKey()) : ToText(options.company, "the company"))
{
  if (m_bRegistry) {
    UseHive(options);
  } else {
    UseProfile(options);
  }
}

std::vector<zp::Setting> SettingsStore::List(CString const & section)
{
  std::vector<zp::Setting> settings = m_App.ListSettings();
  if (!section.IsEmpty())
    std::erase_if(settings, [&](zp::Setting const & each) { return each.section.CompareNoCase(section) != 0; });
  return settings;
}

BOOL SettingsStore::WriteBlock(CString const & section, CString const & key, std::string_view bytes)
{
  auto const * const block = reinterpret_cast<BYTE const *>(bytes.data());
  return m_App.WriteProfileBinary(section, key, block, static_cast<UINT>(bytes.size()));
}

void SettingsStore::Require(BOOL written) const
{
  if (!written)
    throw Failure(
        fmt::format("{}: the change was not made; the file must be writable, and names and texts must fit its form", m_strName));
}

void SettingsStore::UseHive(SettingsOptions const & options)
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

void SettingsStore::UseProfile(SettingsOptions const & options)
{
  m_strName = options.profile.empty() ? GetUserConfigFolder() + '/' + options.application + ".ini" : options.profile;
  if (FileExists(m_strName)) ReadWholeFile(m_strName);
  m_App.SetProfileFile(FromHostPath(m_strName));
}

bool IsTextType(DWORD type)
{
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

int NumberOfBytes(CString const & data)
{
  return zp::ReadLittle<int32_t>(data.GetString());
}
