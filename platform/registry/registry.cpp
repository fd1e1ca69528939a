// The registry's functions on the two hives: open keys, their rights, and buffers of the caller's size.

#include <zpbase/platform/registry.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

#include <zpbase/platform/security.h>
#include <zpbase/platform/system_error.h>

#include "platform/registry/hive_internal.h"

// An open key.
struct RegistryKey {
  zp::Hive * hive;  // null when the handle isn't an open key
  std::string path;
  REGSAM access;
};

namespace {

constexpr char const * currentUser = "HKEY_CURRENT_USER";
constexpr char const * users = "HKEY_USERS";

std::set<HKEY> & openKeys()
{
  static std::set<HKEY> keys;
  return keys;
}

// Hives are asked for anew at each use: which file they are is the environment's choice.
RegistryKey resolve(HKEY key)
{
  if (key == HKEY_CURRENT_USER) return {&zp::GetUserHive(), currentUser, KEY_ALL_ACCESS};
  if (key == HKEY_USERS) return {&zp::GetDefaultHive(), users, KEY_ALL_ACCESS};
  if (!openKeys().contains(key)) return {nullptr, {}, 0};
  RegistryKey opened = *key;
  opened.hive = opened.path.starts_with(users) ? &zp::GetDefaultHive() : &zp::GetUserHive();
  return opened;
}

// One backslash between two names, none at the ends.
std::string pathBelow(std::string const & above, char const * path)
{
  std::string whole = above;
  for (std::string_view rest = path != nullptr ? path : ""; !rest.empty();) {
    std::string_view const name = rest.substr(0, rest.find('\\'));
    if (!name.empty()) whole.append("\\").append(name);
    rest.remove_prefix(std::min(rest.size(), name.size() + 1));
  }
  return whole;
}

HKEY openedKey(std::string path, REGSAM access)
{
  auto key = std::make_unique<RegistryKey>(RegistryKey{nullptr, std::move(path), access});
  openKeys().insert(key.get());
  return key.release();
}

LONG giveName(std::string_view text, char * name, DWORD * size)
{
  if (*size <= text.size()) return ERROR_MORE_DATA;
  name[text.copy(name, text.size())] = '\0';
  *size = static_cast<DWORD>(text.size());
  return ERROR_SUCCESS;
}

LONG giveData(zp::HiveValue const & value, DWORD * type, BYTE * data, DWORD * size)
{
  if (type != nullptr) *type = value.type;
  if (size == nullptr) return data == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  DWORD const room = *size;
  *size = static_cast<DWORD>(value.data.size());
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < value.data.size()) return ERROR_MORE_DATA;
  std::copy(value.data.begin(), value.data.end(), data);
  return ERROR_SUCCESS;
}

std::string_view nameOf(char const * name)
{
  return name != nullptr ? name : "";
}

}  // namespace

LONG RegOpenKeyExA(HKEY key, char const * path, DWORD, REGSAM access, HKEY * result)
{
  *result = nullptr;
  RegistryKey const above = resolve(key);
  if (above.hive == nullptr) return ERROR_INVALID_HANDLE;
  std::string whole = pathBelow(above.path, path);
  LONG const error = above.hive->FindKey(whole);
  if (error == ERROR_SUCCESS) *result = openedKey(std::move(whole), access);
  return error;
}

LONG RegCreateKeyExA(HKEY key, char const * path, DWORD, char *, DWORD, REGSAM access, SECURITY_ATTRIBUTES *, HKEY * result,
                     DWORD * disposition)
{
  *result = nullptr;
  RegistryKey const above = resolve(key);
  if (above.hive == nullptr) return ERROR_INVALID_HANDLE;
  std::string whole = pathBelow(above.path, path);
  if (!zp::IsRegistryPath(whole)) return ERROR_INVALID_PARAMETER;
  LONG error = above.hive->FindKey(whole);
  bool const exists = error == ERROR_SUCCESS;
  if (error == ERROR_FILE_NOT_FOUND) {
    if ((above.access & KEY_CREATE_SUB_KEY) == 0) return ERROR_ACCESS_DENIED;
    error = above.hive->CreateKey(whole);
  }
  if (error != ERROR_SUCCESS) return error;
  if (disposition != nullptr) *disposition = exists ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
  *result = openedKey(std::move(whole), access);
  return ERROR_SUCCESS;
}

LONG RegCloseKey(HKEY key)
{
  if (key == HKEY_CURRENT_USER || key == HKEY_USERS) return ERROR_SUCCESS;
  if (openKeys().erase(key) == 0) return ERROR_INVALID_HANDLE;
  std::unique_ptr<RegistryKey> const closed(key);
  return ERROR_SUCCESS;
}

LONG RegEnumKeyExA(HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD *, char * keyClass, DWORD * classSize,
                   FILETIME * lastWrite)
{
  RegistryKey const opened = resolve(key);
  if (opened.hive == nullptr) return ERROR_INVALID_HANDLE;
  std::string_view found;
  LONG const error = opened.hive->GetSubKey(opened.path, index, found);
  if (error != ERROR_SUCCESS) return error;
  if (keyClass != nullptr && classSize != nullptr && *classSize > 0) keyClass[0] = '\0';
  if (classSize != nullptr) *classSize = 0;
  if (lastWrite != nullptr) *lastWrite = {};
  return giveName(found, name, nameSize);
}

LONG RegEnumValueA(HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD *, DWORD * type, BYTE * data, DWORD * dataSize)
{
  RegistryKey const opened = resolve(key);
  if (opened.hive == nullptr) return ERROR_INVALID_HANDLE;
  zp::HiveValue const * value = nullptr;
  LONG error = opened.hive->GetValue(opened.path, index, value);
  if (error == ERROR_SUCCESS) error = giveName(value->name, name, nameSize);
  return error == ERROR_SUCCESS ? giveData(*value, type, data, dataSize) : error;
}

LONG RegQueryValueExA(HKEY key, char const * name, DWORD *, DWORD * type, BYTE * data, DWORD * dataSize)
{
  RegistryKey const opened = resolve(key);
  if (opened.hive == nullptr) return ERROR_INVALID_HANDLE;
  zp::HiveValue const * value = nullptr;
  LONG const error = opened.hive->FindValue(opened.path, nameOf(name), value);
  return error == ERROR_SUCCESS ? giveData(*value, type, data, dataSize) : error;
}

LONG RegSetValueExA(HKEY key, char const * name, DWORD, DWORD type, BYTE const * data, DWORD dataSize)
{
  RegistryKey const opened = resolve(key);
  if (opened.hive == nullptr) return ERROR_INVALID_HANDLE;
  if ((opened.access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
  std::string_view const bytes(reinterpret_cast<char const *>(data), dataSize);
  return opened.hive->SetValue(opened.path, nameOf(name), type, bytes);
}

LONG RegDeleteValueA(HKEY key, char const * name)
{
  RegistryKey const opened = resolve(key);
  if (opened.hive == nullptr) return ERROR_INVALID_HANDLE;
  if ((opened.access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
  return opened.hive->DeleteValue(opened.path, nameOf(name));
}

LONG RegDeleteTreeA(HKEY key, char const * path)
{
  RegistryKey const opened = resolve(key);
  return opened.hive != nullptr ? opened.hive->DeleteTree(pathBelow(opened.path, path)) : ERROR_INVALID_HANDLE;
}
