// The first run of a new user: a branch of the default user's registry settings is copied to the user's own.

#include <zpbase/config.h>

#include <array>
#include <memory>
#include <type_traits>

#include <zpbase/platform/registry.h>
#include <zpbase/platform/security.h>
#include <zpbase/platform/system_error.h>

namespace {

constexpr DWORD statedLength = 259;
using Buffer = std::array<char, statedLength + 1>;

struct CloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using OpenKey = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

OpenKey openKey(HKEY above, char const * path, REGSAM access)
{
  HKEY key = nullptr;
  return OpenKey(RegOpenKeyExA(above, path, 0, access, &key) == ERROR_SUCCESS ? key : nullptr);
}

OpenKey createKey(HKEY above, char const * path, char * keyClass, REGSAM access)
{
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HKEY key = nullptr;
  LONG const error = RegCreateKeyExA(above, path, 0, keyClass, REG_OPTION_NON_VOLATILE, access, &inheritable, &key, nullptr);
  return OpenKey(error == ERROR_SUCCESS ? key : nullptr);
}

// ERROR_SUCCESS when all values stand in the destination; those without data are left out.
LONG copyValues(HKEY from, HKEY to)
{
  for (DWORD index = 0;; ++index) {
    Buffer name;
    std::array<BYTE, statedLength + 1> data;
    DWORD nameSize = statedLength;
    DWORD dataSize = statedLength;
    DWORD type = REG_NONE;
    LONG error = RegEnumValueA(from, index, name.data(), &nameSize, nullptr, &type, data.data(), &dataSize);
    if (error == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
    if (error == ERROR_SUCCESS && dataSize > 0) error = RegSetValueExA(to, name.data(), 0, type, data.data(), dataSize);
    if (error != ERROR_SUCCESS) return error;
  }
}

bool copySubKey(HKEY from, HKEY to, char const * name, char * keyClass)
{
  OpenKey const source = openKey(from, name, KEY_READ);
  if (!source) return false;
  OpenKey const destination = createKey(to, name, keyClass, KEY_SET_VALUE);
  return destination && copyValues(source.get(), destination.get()) == ERROR_SUCCESS;
}

bool copySubKeys(HKEY from, HKEY to)
{
  for (DWORD index = 0;; ++index) {
    Buffer name;
    Buffer keyClass;
    DWORD nameSize = statedLength;
    DWORD classSize = statedLength;
    LONG const error = RegEnumKeyExA(from, index, name.data(), &nameSize, nullptr, keyClass.data(), &classSize, nullptr);
    if (error == ERROR_NO_MORE_ITEMS) return true;
    if (error != ERROR_SUCCESS || !copySubKey(from, to, name.data(), keyClass.data())) return false;
  }
}

}  // namespace

int InitRegistry(CString const & company, CString const & application, CString const & section)
{
  CString path = "Software\\" + company + "\\" + application;
  if (!section.IsEmpty()) path += "\\" + section;
  if (openKey(HKEY_CURRENT_USER, path, KEY_ALL_ACCESS)) return 1;
  OpenKey const source = openKey(HKEY_USERS, ".Default\\" + path, KEY_READ);
  if (!source) return 0;
  OpenKey const destination = createKey(HKEY_CURRENT_USER, path, nullptr, section.IsEmpty() ? KEY_CREATE_SUB_KEY : KEY_SET_VALUE);
  if (!destination) return 0;
  if (section.IsEmpty()) return copySubKeys(source.get(), destination.get());
  return copyValues(source.get(), destination.get()) == ERROR_SUCCESS;
}
