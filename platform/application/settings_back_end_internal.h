// Where an application's settings are kept.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/application.h>

namespace zp {

class SettingsBackEnd {
 public:
  virtual ~SettingsBackEnd() = default;

  // Nothing for a missing setting or one of another kind.
  virtual std::optional<std::string> GetText(std::string_view section, std::string_view key) = 0;
  virtual std::optional<int> GetInt(std::string_view section, std::string_view key) = 0;
  virtual std::optional<std::string> GetBinary(std::string_view section, std::string_view key) = 0;

  virtual bool SetText(std::string_view section, std::string_view key, std::string_view value) = 0;
  virtual bool SetInt(std::string_view section, std::string_view key, int value) = 0;
  virtual bool SetBinary(std::string_view section, std::string_view key, std::string_view bytes) = 0;
  virtual bool Remove(std::string_view section, std::string_view key) = 0;

  // The section and those below it, such as "Misc\\Sub" below "Misc". The empty section can't be removed.
  virtual bool RemoveSection(std::string_view section) = 0;

  // Raises CFileException where the store can't be read.
  virtual std::vector<Setting> List() = 0;
};

std::unique_ptr<SettingsBackEnd> MakeProfileSettings(std::string hostFile);
std::unique_ptr<SettingsBackEnd> MakeRegistrySettings(std::string_view company, std::string_view application);

}  // namespace zp
