// Opening the store, and the forms of values.

#include "tools/settings/settings_store.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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

bool hasAny(CString const & text, std::string_view characters)
{
  return text.View().find_first_of(characters) != std::string_view::npos;
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
    UseHive(options);
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

void SettingsStore::Require(BOOL written, CString const & section, CString const & key, CString const & text) const
{
  if (!written) throw Failure(fmt::format("{}: the change was not made: {}", m_strName, FindCause(section, key, text)));
}

std::string SettingsStore::FindCause(CString const & section, CString const & key, CString const & text) const
{
  if (!m_bRegistry) {
    if (hasAny(section, "\r\n]")) return "a profile file's section has no line end and no ]";
    if (hasAny(key, "\r\n=") || key.View().starts_with('[') || key.View().starts_with(';'))
      return "a profile file's key has no line end and no =, and doesn't begin with [ or ;";
    if (hasAny(text, "\r\n")) return "a profile file's text has no line end";
  }
  bool const isThere = FileExists(m_strFile);
  std::FILE * const file = std::fopen(m_strFile.c_str(), isThere ? "r+b" : "wbx");
  if (file == nullptr) return std::strerror(errno);
  std::fclose(file);
  if (!isThere) std::remove(m_strFile.c_str());
  return "the disk may be full, or a name too long";
}

void SettingsStore::UseHive(SettingsOptions const & options)
{
  if (!options.hive.empty()) setenv("ZP_USER_HIVE", options.hive.c_str(), 1);
  char const * const named = std::getenv("ZP_USER_HIVE");
  m_strFile = named != nullptr && *named != 0 ? named : GetUserConfigFolder() + "/zephlow/user.reg";
  m_strName = options.hive.empty() ? "the user's hive" : options.hive;
  requireFile(m_strFile);
  HKEY root = nullptr;
  LONG const error = RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, &root);
  if (error == ERROR_NOT_REGISTRY_FILE)
    throw Failure(fmt::format("{}: doesn't begin with REGEDIT4; name a registration-entries file", m_strName));
  if (error != ERROR_SUCCESS) throw Failure(fmt::format("{}: can't be read (error {})", m_strName, error));
  RegCloseKey(root);
  m_App.SetRegistryKey(m_strCompany);
}

void SettingsStore::UseProfile(SettingsOptions const & options, Wanted wanted)
{
  m_strName = options.profile.empty() ? GetUserConfigFolder() + '/' + options.application + ".ini" : options.profile;
  m_strFile = m_strName;
  requireFile(m_strFile);
  bool const mustBeThere = wanted == Wanted::ToRead && !options.profile.empty();
  if (mustBeThere || FileExists(m_strName)) ReadWholeFile(m_strName);
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
