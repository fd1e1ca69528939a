// Keeps the index of a hive's text and edits that text: a change replaces, adds or takes out the lines of its own value or
// key, and everything else in the file stays as it stands.

#include "platform/registry/hive_internal.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

#include <zpbase/platform/known_places.h>
#include <zpbase/platform/system_error.h>

namespace zp {
namespace {

constexpr char below = '\x01';
constexpr std::string_view newText = "REGEDIT4\r\n";
constexpr char const * userHive = "/zephlow/user.reg";
constexpr char const * defaultHive = "/etc/xdg/zephlow/default.reg";

std::string folded(std::string_view path)
{
  std::string name = ToLower(path);
  for (char & c : name)
    if (c == '\\') c = below;
  return name;
}

bool isBelow(std::string_view name, std::string_view key)
{
  return name.size() > key.size() && name.starts_with(key) && name[key.size()] == below;
}

// The file's own line end, that of its first line.
std::string_view lineEndOf(std::string_view text)
{
  size_t const end = text.find('\n');
  return end != std::string_view::npos && (end == 0 || text[end - 1] != '\r') ? "\n" : "\r\n";
}

// The hive of the file that the environment names, or else of the usual one. Another choice than at the last call is another
// hive.
template <class UsualFile>
Hive & chosenHive(std::unique_ptr<Hive> & hive, char const * variable, UsualFile usualFile)
{
  char const * const chosen = std::getenv(variable);
  bool const isChosen = chosen != nullptr && chosen[0] != '\0';
  if (hive && isChosen && hive->GetFile() == chosen) return *hive;
  std::string file = isChosen ? chosen : usualFile();
  if (!hive || hive->GetFile() != file) hive = std::make_unique<Hive>(std::move(file));
  return *hive;
}

}  // namespace

LONG Hive::Refresh()
{
  m_Text.Refresh();
  if (m_Text.GetError() != 0) return SystemErrorOfError(m_Text.GetError());
  return IsRegistryText(m_Text.GetText()) ? ERROR_SUCCESS : ERROR_NOT_REGISTRY_FILE;
}

void Hive::Index()
{
  m_Values.clear();
  m_Keys.clear();
  if (!IsRegistryText(m_Text.GetText())) return;
  WalkRegistryText(m_Text.GetText(), [this](auto const & line) { IndexLine(line); });
  for (auto const & [folded, key] : m_Keys)
    for (auto const & [lower, value] : key.values) m_Values.emplace(NamePair{key.path, value.name}, &value);
}

// Lines count in their order: a later value replaces an earlier one, and a removal what stands above it.
void Hive::IndexLine(RegistryLine const & line)
{
  if (line.kind == RegistryLine::Other) return;
  std::string const path = folded(line.path);
  if (line.kind == RegistryLine::DeleteKey) {
    auto const first = m_Keys.lower_bound(path);
    auto last = first;
    while (last != m_Keys.end() && (last->first == path || isBelow(last->first, path))) ++last;
    m_Keys.erase(first, last);
    return;
  }
  Key & key = m_Keys[path];
  key.addAt = line.end;
  if (line.kind == RegistryLine::Key) {
    if (key.path.empty()) key.path = line.path;
  } else if (line.kind == RegistryLine::Value) {
    key.values[ToLower(line.name)] = {line.name, line.type, line.data, line.begin, line.end};
  } else {
    key.values.erase(ToLower(line.name));
  }
}

// A root is always there; any other key is where it has a line of its own, or one below it has.
bool Hive::HasKey(std::string const & key) const
{
  if (key.find(below) == std::string::npos) return true;
  auto const first = m_Keys.lower_bound(key);
  return first != m_Keys.end() && (first->first == key || isBelow(first->first, key));
}

Hive::Key const * Hive::FindOwnKey(std::string_view path) const
{
  auto const found = m_Keys.find(folded(path));
  return found != m_Keys.end() ? &found->second : nullptr;
}

LONG Hive::FindKey(std::string_view path)
{
  LONG const error = Refresh();
  if (error != ERROR_SUCCESS) return error;
  return HasKey(folded(path)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

LONG Hive::FindValue(std::string_view path, std::string_view name, HiveValue const *& value)
{
  LONG const error = Refresh();
  if (error != ERROR_SUCCESS) return error;
  auto const found = m_Values.find(NamePair{path, name});
  if (found == m_Values.end()) return ERROR_FILE_NOT_FOUND;
  value = found->second;
  return ERROR_SUCCESS;
}

LONG Hive::GetSubKey(std::string_view path, DWORD index, std::string_view & name)
{
  LONG const error = FindKey(path);
  if (error != ERROR_SUCCESS) return error;
  std::string const above = folded(path) + below;
  for (auto it = m_Keys.lower_bound(above); it != m_Keys.end() && it->first.starts_with(above); --index) {
    size_t const end = std::min(it->first.find(below, above.size()), it->first.size());
    if (index == 0) {
      name = std::string_view(it->second.path).substr(above.size(), end - above.size());
      return ERROR_SUCCESS;
    }
    it = m_Keys.lower_bound(it->first.substr(0, end) + static_cast<char>(below + 1));
  }
  return ERROR_NO_MORE_ITEMS;
}

LONG Hive::GetValue(std::string_view path, DWORD index, HiveValue const *& value)
{
  LONG const error = FindKey(path);
  if (error != ERROR_SUCCESS) return error;
  Key const * const key = FindOwnKey(path);
  if (key == nullptr || index >= key->values.size()) return ERROR_NO_MORE_ITEMS;
  value = &std::next(key->values.begin(), index)->second;
  return ERROR_SUCCESS;
}

template <class Edit>
LONG Hive::Change(Edit edit, std::function<bool()> const & settle)
{
  LONG result = ERROR_SUCCESS;
  int const error = m_Text.Change(
      [&](std::string & changed) {
        m_Text.Settle();
        result = IsRegistryText(m_Text.GetText()) ? edit(changed) : ERROR_NOT_REGISTRY_FILE;
        return result == ERROR_SUCCESS;
      },
      settle);
  return error != 0 ? SystemErrorOfError(error) : result;
}

std::string Hive::WithKey(std::string_view path) const
{
  bool const isNew = m_Text.GetText().find_first_not_of(" \t\r\n") == std::string_view::npos;
  std::string text(isNew ? newText : m_Text.GetText());
  std::string_view const lineEnd = lineEndOf(text);
  if (text.back() != '\n') text += lineEnd;
  text.append(lineEnd).append("[").append(path).append("]").append(lineEnd);
  return text;
}

std::string Hive::WithValue(std::string_view path, std::string_view name, DWORD type, std::string_view data,
                            ValueLines & changed) const
{
  Key const * const key = FindOwnKey(path);
  std::string text = key != nullptr ? std::string(m_Text.GetText()) : WithKey(path);
  changed.lines = RegistryValueText(name, type, data, lineEndOf(text));
  if (key == nullptr) return text + changed.lines;
  auto const found = key->values.find(ToLower(name));
  bool const isThere = found != key->values.end();
  changed.begin = isThere ? found->second.begin : key->addAt;
  changed.removed = isThere ? found->second.end - found->second.begin : 0;
  changed.isAll = isThere || text[key->addAt - 1] == '\n';
  if (!changed.isAll) changed.lines.insert(0, lineEndOf(text));
  return text.replace(changed.begin, changed.removed, changed.lines);
}

// Moves what the index knows of the text behind a change.
void Hive::Shift(size_t from, size_t removed, size_t added)
{
  size_t const by = added - removed;  // modulo the range of places
  for (auto & [folded, key] : m_Keys) {
    if (key.addAt > from) key.addAt += by;
    for (auto & [lower, value] : key.values) {
      if (value.begin >= from + removed) value.begin += by;
      if (value.end > from) value.end += by;
    }
  }
}

// Puts one value's new lines into the index, as reading all of the text anew would.
bool Hive::Settle(std::string_view path, ValueLines const & changed)
{
  auto const found = m_Keys.find(folded(path));
  if (!changed.isAll || found == m_Keys.end()) return false;
  Key & key = found->second;
  Shift(changed.begin, changed.removed, changed.lines.size());
  if (changed.removed == 0) key.addAt = changed.begin + changed.lines.size();
  WalkRegistryText("[key]\n" + changed.lines, [&](RegistryLine const & line) {
    if (line.kind != RegistryLine::Value) return;
    auto const [place, isNew] = key.values.try_emplace(ToLower(line.name));
    HiveValue & value = place->second;
    if (!isNew) m_Values.erase(NamePair{key.path, value.name});
    value = {line.name, line.type, line.data, changed.begin, changed.begin + changed.lines.size()};
    m_Values.emplace(NamePair{key.path, value.name}, &value);
  });
  return true;
}

LONG Hive::CreateKey(std::string_view path)
{
  return Change([&](std::string & changed) {
    changed = HasKey(folded(path)) ? std::string(m_Text.GetText()) : WithKey(path);
    return ERROR_SUCCESS;
  });
}

LONG Hive::SetValue(std::string_view path, std::string_view name, DWORD type, std::string_view data)
{
  if (!FitsRegistryLine(name)) return ERROR_INVALID_PARAMETER;
  ValueLines lines;
  auto const edit = [&](std::string & changed) {
    changed = WithValue(path, name, type, data, lines);
    return ERROR_SUCCESS;
  };
  return Change(edit, [&] { return Settle(path, lines); });
}

LONG Hive::DeleteValue(std::string_view path, std::string_view name)
{
  return Change([&](std::string & changed) {
    size_t kept = 0;
    bool found = false;
    std::string_view const text = m_Text.GetText();
    WalkRegistryText(text, [&](RegistryLine const & line) {
      bool const gone = line.kind == RegistryLine::Value && EqualsNoCase(line.path, path) && EqualsNoCase(line.name, name);
      if (!gone) return;
      found = true;
      changed.append(text.substr(kept, line.begin - kept));
      kept = line.end;
    });
    changed.append(text.substr(kept));
    return found ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LONG Hive::DeleteTree(std::string_view path)
{
  return Change([&](std::string & changed) {
    std::string const key = folded(path);
    if (!HasKey(key)) return ERROR_FILE_NOT_FOUND;
    std::string_view const text = m_Text.GetText();
    WalkRegistryText(text, [&](RegistryLine const & line) {
      std::string const own = folded(line.path);
      bool const gone = line.kind != RegistryLine::Other && (own == key || isBelow(own, key));
      if (!gone) changed.append(text.substr(line.begin, line.end - line.begin));
    });
    return ERROR_SUCCESS;
  });
}

Hive & GetUserHive()
{
  static std::unique_ptr<Hive> hive;
  return chosenHive(hive, "ZP_USER_HIVE", [] {
    std::string const folder = GetUserConfigFolder();
    return folder.empty() ? folder : folder + userHive;
  });
}

Hive & GetDefaultHive()
{
  static std::unique_ptr<Hive> hive;
  return chosenHive(hive, "ZP_DEFAULT_HIVE", [] { return std::string(defaultHive); });
}

}  // namespace zp
