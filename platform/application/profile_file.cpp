// Reads and changes profile files. A change touches its own line alone: comments, blank lines and lines that are neither a
// section nor an entry stay, and so do the spelling of names and the ends of lines.

#include "platform/application/profile_file_internal.h"

#include <algorithm>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/system_error.h>

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

// A line that stands in front of all sections, or is neither a section nor an entry, is kept and means nothing.
void classify(std::string_view text, ProfileLine & line, std::string_view & section, bool & inSection)
{
  if (text.empty() || text.front() == ';') return;
  if (text.front() == '[') {
    size_t const end = text.find(']');
    if (end == std::string_view::npos) return;
    section = trimmed(text.substr(1, end - 1));
    inSection = true;
    line.kind = ProfileLine::Section;
    line.section = section;
    return;
  }
  size_t const equals = text.find('=');
  if (equals == std::string_view::npos || !inSection) return;
  line.key = trimmed(text.substr(0, equals));
  line.value = trimmed(text.substr(equals + 1));
  line.section = section;
  if (!line.key.empty()) line.kind = ProfileLine::Entry;
}

size_t offsetIn(std::string_view text, std::string_view part)
{
  return static_cast<size_t>(part.data() - text.data());
}

// Where an entry's value stands, or where a new line of its section belongs: behind its last entry.
struct Place {
  bool isEntry = false;
  bool hasSection = false;
  size_t begin = 0;
  size_t length = 0;
};

Place findPlace(std::string_view text, std::string_view section, std::string_view key)
{
  Place place;
  bool closed = false;  // only the first section of the name takes new lines
  WalkProfile(text, [&](ProfileLine const & line) {
    if (place.isEntry || line.kind == ProfileLine::Other) return;
    bool const inside = sameName(line.section, section);
    if (inside && line.kind == ProfileLine::Entry && sameName(line.key, key)) {
      place = {true, true, offsetIn(text, line.value), line.value.size()};
    } else if (inside && !closed && (line.kind == ProfileLine::Entry || !place.hasSection)) {
      place = {false, true, offsetIn(text, line.line) + line.line.size(), 0};
    } else if (place.hasSection && line.kind == ProfileLine::Section) {
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
  if (place.isEntry) return changed.replace(place.begin, place.length, written);
  bool const atEnd = !place.hasSection || place.begin == text.size();
  std::string added;
  if (atEnd && !text.empty() && text.back() != '\n') added += lineEnd;
  if (!place.hasSection) {
    if (!text.empty()) added += lineEnd;
    added.append("[").append(trimmed(section)).append("]").append(lineEnd);
    place.begin = text.size();
  }
  return changed.insert(place.begin, added + line);
}

}  // namespace

void WalkProfile(std::string_view text, std::function<void(ProfileLine const &)> const & visit)
{
  std::string_view section;
  bool inSection = false;
  for (size_t begin = 0; begin < text.size();) {
    size_t const end = std::min(text.find('\n', begin), text.size() - 1);
    ProfileLine line;
    line.line = text.substr(begin, end + 1 - begin);
    bool const marked = begin == 0 && text.starts_with(byteOrderMark);
    classify(trimmedLine(marked ? line.line.substr(byteOrderMark.size()) : line.line), line, section, inSection);
    visit(line);
    begin = end + 1;
  }
}

void ProfileFile::Index()
{
  m_Values.clear();
  WalkProfile(m_Text.GetText(), [this](ProfileLine const & line) {
    if (line.kind == ProfileLine::Entry) m_Values.emplace(NamePair{line.section, line.key}, unquoted(line.value));
  });
}

std::optional<std::string_view> ProfileFile::Find(std::string_view section, std::string_view key)
{
  m_Text.Refresh();
  auto const found = m_Values.find(NamePair{trimmed(section), trimmed(key)});
  if (found == m_Values.end()) return std::nullopt;
  return found->second;
}

bool ProfileFile::Change(std::function<std::string(std::string_view)> const & change)
{
  return m_Text.Change([&](std::string & changed) {
    changed = change(m_Text.GetText());
    return true;
  }) == 0;
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
      bool const gone = line.kind == ProfileLine::Entry && sameName(line.section, section) && sameName(line.key, key);
      if (!gone) kept += line.line;
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
      if (line.kind == ProfileLine::Other || !isOfSection(line.section, section)) kept += line.line;
    });
    return kept;
  });
}

void ProfileFile::List(std::function<void(std::string_view section, std::string_view key, std::string_view value)> const & visit)
{
  m_Text.Refresh();
  if (int const error = m_Text.GetError(); error != 0) {
    AfxThrowFileException(CauseOfError(error), SystemErrorOfError(error), FromHostPath(m_Text.GetFile()));
  }
  WalkProfile(m_Text.GetText(), [&](ProfileLine const & line) {
    if (line.kind != ProfileLine::Entry) return;
    auto const found = m_Values.find(NamePair{line.section, line.key});
    if (found != m_Values.end() && found->second.data() == unquoted(line.value).data())
      visit(line.section, line.key, found->second);
  });
}

}  // namespace zp
