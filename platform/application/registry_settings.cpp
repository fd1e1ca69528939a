// Settings in the user's hive: the values of the key Software\company\application\section.

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/system_error.h>
#include "platform/application/settings_back_end_internal.h"
#include "platform/registry/hive_internal.h"

namespace zp {
namespace {

std::string dataOf(int value)
{
  std::string data(sizeof value, '\0');
  WriteLittle(data.data(), value);
  return data;
}

std::string_view textOf(std::string_view data)
{
  return data.substr(0, data.find('\0'));
}

bool isText(HiveValue const & value)
{
  return value.type == REG_SZ || value.type == REG_EXPAND_SZ;
}

bool isNumber(HiveValue const & value)
{
  return value.type == REG_DWORD && value.data.size() == sizeof(DWORD);
}

class RegistrySettings : public SettingsBackEnd {
 public:
  RegistrySettings(std::string_view company, std::string_view application)
      : m_strBranch("HKEY_CURRENT_USER\\Software\\" + std::string(company) + '\\' + std::string(application))
  {
  }

  std::optional<std::string> GetText(std::string_view section, std::string_view key) override
  {
    HiveValue const * const value = Find(section, key);
    return value != nullptr && isText(*value) ? std::optional<std::string>(textOf(value->data)) : std::nullopt;
  }

  std::optional<int> GetInt(std::string_view section, std::string_view key) override
  {
    HiveValue const * const value = Find(section, key);
    return value != nullptr && isNumber(*value) ? std::optional<int>(ReadLittle<int>(value->data.data())) : std::nullopt;
  }

  std::optional<std::string> GetBinary(std::string_view section, std::string_view key) override
  {
    HiveValue const * const value = Find(section, key);
    return value != nullptr && value->type == REG_BINARY ? std::optional<std::string>(value->data) : std::nullopt;
  }

  bool SetText(std::string_view section, std::string_view key, std::string_view value) override
  {
    return Set(section, key, REG_SZ, std::string(value) + '\0');
  }

  bool SetInt(std::string_view section, std::string_view key, int value) override
  {
    return Set(section, key, REG_DWORD, dataOf(value));
  }

  bool SetBinary(std::string_view section, std::string_view key, std::string_view bytes) override
  {
    return Set(section, key, REG_BINARY, bytes);
  }

  bool Remove(std::string_view section, std::string_view key) override
  {
    return wasRemoved(GetUserHive().DeleteValue(PathOf(section), key));
  }

  bool RemoveSection(std::string_view section) override
  {
    return !section.empty() && wasRemoved(GetUserHive().DeleteTree(PathOf(section)));
  }

  std::vector<Setting> List() override
  {
    std::vector<Setting> settings;
    AppendBelow({}, settings);
    return settings;
  }

 private:
  static bool wasRemoved(LONG error) { return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND; }

  std::string PathOf(std::string_view section) const
  {
    return section.empty() ? m_strBranch : m_strBranch + '\\' + std::string(section);
  }

  // The sections below a section, each with those below it behind; the branch itself is the empty one.
  void AppendBelow(std::string const & above, std::vector<Setting> & settings) const
  {
    std::string_view name;
    LONG error;
    for (DWORD i = 0; (error = GetUserHive().GetSubKey(PathOf(above), i, name)) == ERROR_SUCCESS; ++i) {
      std::string const section = above.empty() ? std::string(name) : above + '\\' + std::string(name);
      HiveValue const * value = nullptr;
      for (DWORD j = 0; GetUserHive().GetValue(PathOf(section), j, value) == ERROR_SUCCESS; ++j)
        settings.push_back({CString(section), CString(value->name), value->type, CString(value->data)});
      AppendBelow(section, settings);
    }
    if (error != ERROR_NO_MORE_ITEMS && error != ERROR_FILE_NOT_FOUND) {
      AfxThrowFileException(CFileException::genericException, error);
    }
  }

  HiveValue const * Find(std::string_view section, std::string_view key) const
  {
    HiveValue const * value = nullptr;
    return GetUserHive().FindValue(PathOf(section), key, value) == ERROR_SUCCESS ? value : nullptr;
  }

  bool Set(std::string_view section, std::string_view key, DWORD type, std::string_view data)
  {
    std::string const path = PathOf(section);
    return IsRegistryPath(path) && GetUserHive().SetValue(path, key, type, data) == ERROR_SUCCESS;
  }

  std::string m_strBranch;
};

}  // namespace

std::unique_ptr<SettingsBackEnd> MakeRegistrySettings(std::string_view company, std::string_view application)
{
  return std::make_unique<RegistrySettings>(company, application);
}

}  // namespace zp
