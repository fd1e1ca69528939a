// Reads and changes profile files. A change touches its own line alone: comments, blank lines and lines that are neither a
// section nor an entry stay, and so do the spelling of names and the ends of lines.

#include "platform/application/profile_file_internal.h"

#include <algorithm>

namespace zp {
namespace {

constexpr std::string_view blanks = " \t\r\v\f";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view trimmed(std::string_view text)
{
  size_t const first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view trimmedLine(std::string_view line)
{
  return trimmed(line.ends_with('\n') ? line.substr(0, line.size() - 1) : line);
}

bool isQuoted(std::string_view text)
{
  return text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
}

std::string_view unquoted(std::string_view text)
{
  return isQuoted(text) ? text.substr(1, text.size() - 2) : text;
}

// Reading trims and takes one pair of quotes away, so a text that would lose by that is written in quotes.
std::string quotedAtNeed(std::string_view value)
{
  bool const needed = isQuoted(value) || trimmed(value).size() != value.size();
  return needed ? '"' + std::string(value) + '"' : std::string(value);
}

bool fitsOneLine(std::string_view text)
{
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool canBeSection(std::string_view name)
{
  return fitsOneLine(name) && name.find(']') == std::string_view::npos;
}

bool canBeKey(std::string_view name)
{
  return !name.empty() && fitsOneLine(name) && name.front() != ';' && name.front() != '[' &&
         name.find('=') == std::string_view::npos;
}

bool sameName(std::string_view a, std::string_view b)
{
  return EqualsNoCase(trimmed(a), trimmed(b));
}

// "Misc\\Sub" is of "Misc".
bool isOfSection(std::string_view name, std::string_view section)
{
  std::string_view const own = trimmed(name);
  std::string_view const above = trimmed(section);
  bool const fits = own.size() == above.size() || (own.size() > above.size() && own[above.size()] == '\\');
  return fits && EqualsNoCase(own.substr(0, above.size()), above);
}

std::string_view lineEndOf(std::string_view text)
{
  size_t const end = text.find('\n');
  return end != std::string_view::npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

void classify(std::string_view text, ProfileLine & line, std::string_view & section, bool & inSection)
{
  if (text.empty() || text.front() == ';') return;
  if (text.front() == '[') {
    size_t const end = text.find(']');
    if (end == std::string_view::npos) return;
    section = trimmed(text.substr(1, end - 1));
    inSection = true;
    line.m_Kind = ProfileLine::Section;
    line.m_Section = section;
    return;
  }
  size_t const equals = text.find('=');
  if (equals == std::string_view::npos || !inSection) return;
  line.m_Key = trimmed(text.substr(0, equals));
  line.m_Value = trimmed(text.substr(equals + 1));
  line.m_Section = section;
  if (!line.m_Key.empty()) line.m_Kind = ProfileLine::Entry;
}

size_t offsetIn(std::string_view text, std::string_view part)
{
  return static_cast<size_t>(part.data() - text.data());
}

// Where an entry's value stands, or where a new line of its section belongs: behind its last entry.
struct Place {
  bool m_bEntry = false;
  bool m_bSection = false;
  size_t m_nBegin = 0;
  size_t m_nLength = 0;
};

Place findPlace(std::string_view text, std::string_view section, std::string_view key)
{
  Place place;
  bool closed = false;  // only the first section of the name takes new lines
  WalkProfile(text, [&](ProfileLine const & line) {
    if (place.m_bEntry || line.m_Kind == ProfileLine::Other) return;
    bool const inside = sameName(line.m_Section, section);
    if (inside && line.m_Kind == ProfileLine::Entry && sameName(line.m_Key, key)) {
      place = {true, true, offsetIn(text, line.m_Value), line.m_Value.size()};
    } else if (inside && !closed && (line.m_Kind == ProfileLine::Entry || !place.m_bSection)) {
      place = {false, true, offsetIn(text, line.m_Line) + line.m_Line.size(), 0};
    } else if (place.m_bSection && line.m_Kind == ProfileLine::Section) {
      closed = true;
    }
  });
  return place;
}

std::string withEntry(std::string_view text, std::string_view section, std::string_view key, std::string_view value)
{
  std::string const written = quotedAtNeed(value);
  std::string_view const lineEnd = lineEndOf(text);
  std::string const line = std::string(trimmed(key)) + '=' + written + std::string(lineEnd);
  std::string changed(text);
  Place place = findPlace(text, section, key);
  if (place.m_bEntry) return changed.replace(place.m_nBegin, place.m_nLength, written);
  bool const atEnd = !place.m_bSection || place.m_nBegin == text.size();
  std::string added;
  if (atEnd && !text.empty() && text.back() != '\n') added += lineEnd;
  if (!place.m_bSection) {
    if (!text.empty()) added += lineEnd;
    added.append("[").append(trimmed(section)).append("]").append(lineEnd);
    place.m_nBegin = text.size();
  }
  return changed.insert(place.m_nBegin, added + line);
}

}  // namespace

void WalkProfile(std::string_view text, std::function<void(ProfileLine const &)> const & visit)
{
  std::string_view section;
  bool inSection = false;
  for (size_t begin = 0; begin < text.size();) {
    size_t const end = std::min(text.find('\n', begin), text.size() - 1);
    ProfileLine line;
    line.m_Line = text.substr(begin, end + 1 - begin);
    bool const marked = begin == 0 && text.starts_with(byteOrderMark);
    classify(trimmedLine(marked ? line.m_Line.substr(byteOrderMark.size()) : line.m_Line), line, section, inSection);
    visit(line);
    begin = end + 1;
  }
}

void ProfileFile::Index()
{
  m_Values.clear();
  WalkProfile(m_Text.GetText(), [this](ProfileLine const & line) {
    if (line.m_Kind == ProfileLine::Entry) m_Values.emplace(NamePair{line.m_Section, line.m_Key}, unquoted(line.m_Value));
  });
}

void ProfileFile::Refresh()
{
  if (m_Text.Refresh()) Index();
}

std::optional<std::string_view> ProfileFile::Find(std::string_view section, std::string_view key)
{
  Refresh();
  auto const found = m_Values.find(NamePair{trimmed(section), trimmed(key)});
  if (found == m_Values.end()) return std::nullopt;
  return found->second;
}

// A file that can't be read isn't replaced: its content would be lost.
bool ProfileFile::Change(std::function<std::string(std::string_view)> const & change)
{
  std::string const target = FollowLinks(m_Text.GetFile());
  if (MakeFoldersFor(target) != 0) return false;
  FolderLock const lock(target);
  if (lock.GetError() != 0) return false;
  Refresh();
  if (m_Text.GetError() != 0) return false;
  std::string changed = change(m_Text.GetText());
  if (changed == m_Text.GetText()) return true;
  bool const replaced = m_Text.Replace(lock, target, std::move(changed)) == 0;
  if (replaced) Index();
  return replaced;
}

bool ProfileFile::Set(std::string_view section, std::string_view key, std::string_view value)
{
  if (!canBeSection(section) || !canBeKey(trimmed(key)) || !fitsOneLine(value)) return false;
  return Change([&](std::string_view text) { return withEntry(text, section, key, value); });
}

bool ProfileFile::Remove(std::string_view section, std::string_view key)
{
  return Change([&](std::string_view text) {
    std::string kept;
    WalkProfile(text, [&](ProfileLine const & line) {
      bool const gone = line.m_Kind == ProfileLine::Entry && sameName(line.m_Section, section) && sameName(line.m_Key, key);
      if (!gone) kept += line.m_Line;
    });
    return kept;
  });
}

bool ProfileFile::RemoveSection(std::string_view section)
{
  if (trimmed(section).empty()) return false;
  return Change([&](std::string_view text) {
    std::string kept;
    WalkProfile(text, [&](ProfileLine const & line) {
      if (line.m_Kind == ProfileLine::Other || !isOfSection(line.m_Section, section)) kept += line.m_Line;
    });
    return kept;
  });
}

void ProfileFile::List(std::function<void(std::string_view section, std::string_view key, std::string_view value)> const & visit)
{
  Refresh();
  WalkProfile(m_Text.GetText(), [&](ProfileLine const & line) {
    if (line.m_Kind != ProfileLine::Entry) return;
    auto const found = m_Values.find(NamePair{line.m_Section, line.m_Key});
    if (found != m_Values.end() && found->second.data() == unquoted(line.m_Value).data())
      visit(line.m_Section, line.m_Key, found->second);
  });
}

}  // namespace zp
