// One hive: the keys and values of one registration-entries file.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/file/watched_text_internal.h"
#include "platform/name_pair_internal.h"
#include "platform/registry/registry_text_internal.h"

namespace zp {

struct HiveValue {
  std::string name;
  DWORD type = REG_NONE;
  std::string data;
  size_t begin = 0;  // its lines in the text
  size_t end = 0;
};

// Keys are named by their whole path with its root, such as HKEY_CURRENT_USER\Software. Each operation first looks whether the
// file has changed. Results are the system's error numbers.
class Hive {
 public:
  explicit Hive(std::string hostFile) : m_Text(std::move(hostFile), [this] { Index(); }) {}

  std::string const & GetFile() const { return m_Text.GetFile(); }

  LONG FindKey(std::string_view path);
  LONG FindValue(std::string_view path, std::string_view name, HiveValue const *& value);

  // Number index of the sub keys or values of a key, in the order of their names.
  LONG GetSubKey(std::string_view path, DWORD index, std::string_view & name);
  LONG GetValue(std::string_view path, DWORD index, HiveValue const *& value);

  LONG CreateKey(std::string_view path);
  LONG SetValue(std::string_view path, std::string_view name, DWORD type, std::string_view data);
  LONG DeleteValue(std::string_view path, std::string_view name);
  LONG DeleteTree(std::string_view path);

 private:
  struct Key {
    std::string path;
    size_t addAt = 0;                         // where a new value's line belongs
    std::map<std::string, HiveValue> values;  // by name in lower case
  };
  // The lines of one value that take the place of removed characters of the text, if that is all that has changed.
  struct ValueLines {
    bool isAll = false;
    size_t begin = 0;
    size_t removed = 0;
    std::string lines;
  };
  // By path in lower case with a control character for each backslash, so that what lies below a key follows it at once.
  using Keys = std::map<std::string, Key, std::less<>>;

  LONG Refresh();
  void Index();
  void IndexLine(RegistryLine const & line);
  bool HasKey(std::string const & folded) const;
  Key const * FindOwnKey(std::string_view path) const;
  std::string WithValue(std::string_view path, std::string_view name, DWORD type, std::string_view data,
                        ValueLines & changed) const;
  std::string WithKey(std::string_view path) const;
  bool Settle(std::string_view path, ValueLines const & changed);
  void Shift(size_t from, size_t removed, size_t added);
  template <class Edit>
  LONG Change(
      Edit edit, std::function<bool()> const & settle = [] { return false; });

  WatchedText m_Text;
  Keys m_Keys;
  std::unordered_map<NamePair, HiveValue const *, HashNames, EqualNames> m_Values;  // by path and name, both in the keys
};

// The hive of the user and that of the default user.
Hive & GetUserHive();
Hive & GetDefaultHive();

}  // namespace zp
