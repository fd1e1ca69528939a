// Registration-entries texts that come from elsewhere or go there, as steps to be done one after the other.

#include <zpbase/platform/registry.h>

#include <algorithm>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/encoding.h>

#include "platform/registry/registry_text_internal.h"

namespace zp {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view wideMark = "\xFF\xFE";  // UTF-16, low byte first
constexpr std::string_view wideForm = "Windows Registry Editor Version 5.00";

// lost grows by the characters that have become '?'.
std::string narrowed(std::string_view bytes, int & lost)
{
  std::u16string wide;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) wide += ReadLittle<char16_t>(&bytes[i]);
  std::string text;
  AppendWide(text, wide);
  auto const marks = std::count(text.begin(), text.end(), '?') - std::count(wide.begin(), wide.end(), u'?');
  lost += static_cast<int>(marks);
  return text;
}

// A comment, a blank line or the first line; all else that means nothing is damaged.
bool isExpected(std::string_view line)
{
  size_t const first = line.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos || line[first] == ';' || line.substr(first).starts_with("REGEDIT4") ||
         line.substr(first).starts_with(wideForm);
}

// In the wide form the bytes of these two types are wide characters.
bool hasWideData(DWORD type)
{
  return type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

RegistryEntry entryOf(RegistryLine const & line, bool wide, int & lost)
{
  RegistryEntry entry;
  entry.kind = line.kind == RegistryLine::Value         ? RegistryEntry::SetValue
               : line.kind == RegistryLine::DeleteValue ? RegistryEntry::RemoveValue
                                                        : RegistryEntry::RemoveKey;
  entry.key = CString(line.path);
  entry.name = CString(line.name);
  entry.type = line.type;
  entry.data = CString(wide && hasWideData(line.type) ? narrowed(line.data, lost) : line.data);
  return entry;
}

}  // namespace

bool ReadRegistryText(std::string_view text, std::vector<RegistryEntry> & entries, int & damaged, int & lost)
{
  entries.clear();
  damaged = 0;
  lost = 0;
  std::string const plain = text.starts_with(wideMark) ? narrowed(text.substr(wideMark.size()), lost) : std::string(text);
  bool const wide = plain.starts_with(wideForm);
  if (!wide && !IsRegistryText(plain)) return false;
  WalkRegistryText(plain, [&](RegistryLine const & line) {
    if (line.kind == RegistryLine::Other) {
      if (!isExpected(std::string_view(plain).substr(line.begin, line.end - line.begin))) ++damaged;
    } else if (line.kind != RegistryLine::Key) {
      entries.push_back(entryOf(line, wide, lost));
    }
  });
  return true;
}

std::string WriteRegistryText(std::vector<RegistryEntry> const & entries)
{
  std::string text = "REGEDIT4\r\n";
  std::string_view key;
  for (RegistryEntry const & entry : entries) {
    std::string_view const path = entry.key.View();
    bool const removesKey = entry.kind == RegistryEntry::RemoveKey;
    if (removesKey || path != key) text.append("\r\n[").append(removesKey ? "-" : "").append(path).append("]\r\n");
    key = removesKey ? std::string_view() : path;
    if (entry.kind == RegistryEntry::SetValue)
      text += RegistryValueText(entry.name.View(), entry.type, entry.data.View(), lineEnd);
    if (entry.kind == RegistryEntry::RemoveValue) text += RegistryRemovalText(entry.name.View(), lineEnd);
  }
  return text;
}

}  // namespace zp
