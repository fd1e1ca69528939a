// The registry: two hives, each one text file in the registration-entries form "REGEDIT4". HKEY_CURRENT_USER is the user's,
// $ZP_USER_HIVE, else zephlow/user.reg in the user's configuration folder; HKEY_USERS holds the key ".DEFAULT" of the
// default user, $ZP_DEFAULT_HIVE, else /etc/xdg/zephlow/default.reg. Names compare without the case of ASCII letters. Every
// change replaces the file durably and keeps all else in it. Results are the system's error numbers, 0 for success.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "security.h"
#include "string.h"
#include "system_error.h"
#include "types.h"

struct RegistryKey;
using HKEY = RegistryKey *;
using REGSAM = DWORD;

inline HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(uintptr_t{0x80000001});
inline HKEY const HKEY_USERS = reinterpret_cast<HKEY>(uintptr_t{0x80000003});

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;  // with its terminating zero
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;  // four bytes, little-endian
inline constexpr DWORD REG_MULTI_SZ = 7;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

// Opens or creates the key at path below key. The caller closes what *result gets. Keys have no class and no descriptor here,
// so those arguments are taken and leave no trace.
ZP_API LONG RegOpenKeyExA(HKEY key, char const * path, DWORD options, REGSAM access, HKEY * result);
ZP_API LONG RegCreateKeyExA(HKEY key, char const * path, DWORD reserved, char * keyClass, DWORD options, REGSAM access,
                            SECURITY_ATTRIBUTES * security, HKEY * result, DWORD * disposition);
ZP_API LONG RegCloseKey(HKEY key);

// The name of sub key or value number index, from 0; ERROR_NO_MORE_ITEMS behind the last one. A size is that of the buffer
// in, with room for the terminating zero of a name, and that of the content out, without it; a buffer that is too small is
// ERROR_MORE_DATA. All but the name may be null.
ZP_API LONG RegEnumKeyExA(HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, char * keyClass,
                          DWORD * classSize, FILETIME * lastWrite);
ZP_API LONG RegEnumValueA(HKEY key, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, DWORD * type, BYTE * data,
                          DWORD * dataSize);

// The value under name; null or empty is the key's default value.
ZP_API LONG RegQueryValueExA(HKEY key, char const * name, DWORD * reserved, DWORD * type, BYTE * data, DWORD * dataSize);
ZP_API LONG RegSetValueExA(HKEY key, char const * name, DWORD reserved, DWORD type, BYTE const * data, DWORD dataSize);
ZP_API LONG RegDeleteValueA(HKEY key, char const * name);

// Removes the key at path below key with all its values and sub keys.
ZP_API LONG RegDeleteTreeA(HKEY key, char const * path);

namespace zp {

// One step of a registration-entries text: a value is set or removed, or a key with all below it is removed.
struct RegistryEntry {
  enum Kind { SetValue, RemoveValue, RemoveKey };

  Kind kind = SetValue;
  CString key;  // the whole path with its root
  CString name;
  DWORD type = REG_NONE;
  CString data;
};

// The steps of a text in their order; damaged lines are passed over and counted, and so are the characters of wide text that have
// become '?' because Windows-1252 lacks them. Both published forms are read, "REGEDIT4" and
// "Windows Registry Editor Version 5.00" with its wide characters; false for any other.
ZP_API bool ReadRegistryText(std::string_view text, std::vector<RegistryEntry> & entries, int & damaged, int & lost);

// The same as a "REGEDIT4" text.
ZP_API std::string WriteRegistryText(std::vector<RegistryEntry> const & entries);

}  // namespace zp
