// Settings in a profile file, all of them texts there: an integer as its decimal digits, a block as two letters a byte from
// "A" to "P", the lower half byte first (0x1F is "PB").

#include <zpbase/platform/number_text.h>
#include <zpbase/platform/registry.h>

#include "platform/application/profile_file_internal.h"
#include "platform/application/settings_back_end_internal.h"

namespace zp {
namespace {

std::string lettersOf(std::string_view bytes)
{
  std::string letters;
  letters.reserve(bytes.size() * 2);
  for (char const c : bytes) {
    auto const byte = static_cast<unsigned char>(c);
    letters += static_cast<char>('A' + (byte & 0x0F));
    letters += static_cast<char>('A' + (byte >> 4));
  }
  return letters;
}

std::optional<std::string> bytesOf(std::string_view letters)
{
  if (letters.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (size_t i = 0; i < letters.size(); i += 2) {
    int const low = letters[i] - 'A';
    int const high = letters[i + 1] - 'A';
    if (low < 0 || low > 15 || high < 0 || high > 15) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
  }
  return bytes;
}

class ProfileSettings : public SettingsBackEnd {
 public:
  explicit ProfileSettings(std::string hostFile) : m_File(std::move(hostFile)) {}

  std::optional<std::string> GetText(std::string_view section, std::string_view key) override
  {
    auto const text = m_File.Find(section, key);
    return text ? std::optional<std::string>(*text) : std::nullopt;
  }

  std::optional<int> GetInt(std::string_view section, std::string_view key) override
  {
    auto const text = m_File.Find(section, key);
    return text && !text->empty() ? std::optional<int>(TextToInt(*text)) : std::nullopt;
  }

  std::optional<std::string> GetBinary(std::string_view section, std::string_view key) override
  {
    auto const letters = m_File.Find(section, key);
    return letters && !letters->empty() ? bytesOf(*letters) : std::nullopt;
  }

  bool SetText(std::string_view section, std::string_view key, std::string_view value) override
  {
    return m_File.Set(section, key, value);
  }

  bool SetInt(std::string_view section, std::string_view key, int value) override
  {
    return m_File.Set(section, key, std::to_string(value));
  }

  bool SetBinary(std::string_view section, std::string_view key, std::string_view bytes) override
  {
    return m_File.Set(section, key, lettersOf(bytes));
  }

  bool Remove(std::string_view section, std::string_view key) override { return m_File.Remove(section, key); }
  bool RemoveSection(std::string_view section) override { return m_File.RemoveSection(section); }

  std::vector<Setting> List() override
  {
    std::vector<Setting> settings;
    m_File.List([&](std::string_view section, std::string_view key, std::string_view value) {
      settings.push_back({CString(section), CString(key), REG_SZ, CString(std::string(value) + '\0')});
    });
    return settings;
  }

 private:
  ProfileFile m_File;
};

}  // namespace

std::unique_ptr<SettingsBackEnd> MakeProfileSettings(std::string hostFile)
{
  return std::make_unique<ProfileSettings>(std::move(hostFile));
}

}  // namespace zp
