// Any bytes as a hive: every key and value is walked, one is changed and taken out again, and what else there was stays.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <zpbase/platform/registry.h>
#include <zpbase/platform/system_error.h>

#include "fuzz/scratch_folder.h"

namespace {

std::string const & hiveFile()
{
  static std::string const name = [] {
    std::string file = scratchFolder() + "/user.reg";
    setenv("ZP_USER_HIVE", file.c_str(), 1);
    return file;
  }();
  return name;
}

// The names, types and data below a key, as one text. Walks are cut at 50 of a kind and eight levels.
std::string contentOf(HKEY key, int level)
{
  std::string content;
  std::string name(70000, '\0');
  std::string data(200000, '\0');
  for (DWORD i = 0; i < 50; ++i) {
    auto nameSize = static_cast<DWORD>(name.size());
    auto dataSize = static_cast<DWORD>(data.size());
    DWORD type = 0;
    LONG const error =
        RegEnumValueA(key, i, name.data(), &nameSize, nullptr, &type, reinterpret_cast<BYTE *>(data.data()), &dataSize);
    if (error != ERROR_SUCCESS) break;
    content += name.substr(0, nameSize) + '=' + std::to_string(type) + data.substr(0, dataSize) + ';';
  }
  for (DWORD i = 0; i < 50 && level < 8; ++i) {
    auto nameSize = static_cast<DWORD>(name.size());
    if (RegEnumKeyExA(key, i, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    content += name.substr(0, nameSize) + '\\';
    HKEY below = nullptr;
    if (RegOpenKeyExA(key, name.c_str(), 0, KEY_ALL_ACCESS, &below) != ERROR_SUCCESS) std::abort();
    content += contentOf(below, level + 1);
    RegCloseKey(below);
  }
  return content;
}

void require(bool holds)
{
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::ofstream(hiveFile(), std::ios::binary).write(reinterpret_cast<char const *>(data), static_cast<std::streamsize>(size));
  std::string const before = contentOf(HKEY_CURRENT_USER, 0);
  HKEY key = nullptr;
  LONG const error = RegCreateKeyExA(HKEY_CURRENT_USER, "zz\\fuzzed", 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                                     nullptr, &key, nullptr);
  if (error != ERROR_SUCCESS) return 0;
  DWORD const length = static_cast<DWORD>(size < 5000 ? size : 5000);
  auto const kind = static_cast<DWORD>(size % 9);
  require(RegSetValueExA(key, "v\"\\", 0, kind, data, length) == ERROR_SUCCESS);
  DWORD type = 0;
  DWORD got = length;
  std::string back(length, '\0');
  require(RegQueryValueExA(key, "V\"\\", nullptr, &type, reinterpret_cast<BYTE *>(back.data()), &got) == ERROR_SUCCESS);
  require(type == kind && got == length && std::memcmp(back.data(), data, got) == 0);
  RegCloseKey(key);
  if (before.find("zz\\") == std::string::npos) {
    require(RegDeleteTreeA(HKEY_CURRENT_USER, "zz") == ERROR_SUCCESS);
    require(contentOf(HKEY_CURRENT_USER, 0) == before);
  }
  return 0;
}
