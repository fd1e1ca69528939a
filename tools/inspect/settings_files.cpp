// The two forms in which settings are kept: profile files, and hives of registration entries.

#include "tools/inspect/settings_files.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <zpbase/platform/registry.h>

#include "tools/inspect/each_line.h"
#include "tools/program.h"
#include "tools/text/text_lines.h"
#include "tools/text_marks.h"

namespace {

constexpr std::string_view hiveMark = "REGEDIT4";

// What the lines of a file of settings are.
class SettingsLines {
 public:
  SettingsLines(std::string_view bytes, bool isHive) : m_bHive(isHive)
  {
    ForEachLine(bytes, [this](std::string_view line, size_t length) { Take(TrimBlanks(line), length); });
  }

  // A profile begins with a section, and has settings in most of its other lines.
  bool IsProfile() const { return m_bBegins && m_nSettings > 0 && m_nSettings >= m_nStrange; }

  void Tell(InspectedFile const & file, Inspection & found) const
  {
    found.holds.push_back(
        fmt::format("{}, {}", Counted(m_Parts.size() - 1, m_bHive ? "key" : "section"), Counted(m_nSettings, "setting")));
    if (m_nStrange > 0) found.holds.push_back(Counted(m_nStrange, "line") + " without a meaning");
    if (!file.WantsParts()) return;
    for (auto const & [length, what] : m_Parts) found.AddPart(length, what);
  }

 private:
  void Take(std::string_view line, size_t length)
  {
    bool const isSection = line.starts_with('[') && line.find(']') != std::string_view::npos;
    if (isSection && !m_bGoesOn) {
      m_bBegins |= m_Parts.size() == 1 && m_nStrange == 0;
      m_Parts.emplace_back(0, std::string(line));
    } else if (!m_bGoesOn) {
      Count(line);
    }
    m_bGoesOn = m_bHive && line.ends_with('\\');
    m_Parts.back().first += length;
  }

  void Count(std::string_view line)
  {
    bool const isSetting = m_bHive ? line.starts_with("@=") || line.starts_with('"') : line.find('=', 1) < line.size();
    if (line.empty() || line.starts_with(';') || line == hiveMark) return;
    ++(isSetting && m_Parts.size() > 1 ? m_nSettings : m_nStrange);
  }

  bool m_bHive;
  bool m_bBegins = false;
  bool m_bGoesOn = false;  // in the next line
  size_t m_nSettings = 0;
  size_t m_nStrange = 0;
  std::vector<std::pair<size_t, std::string>> m_Parts = {{0, "in front of the first section"}};
};

// What registry editors write by now, in wide characters or after an editor in others; it is no hive, but can be imported.
bool isRegistryExport(InspectedFile & file, Inspection & found)
{
  constexpr std::string_view mark = "Windows Registry Editor Version ";
  bool const isWide = file.GetHead().starts_with(wideMark);
  std::string begin(file.GetHead().substr(isWide ? wideMark.size() : 0, 2 * mark.size()));
  if (isWide) std::erase(begin, '\0');
  std::vector<zp::RegistryEntry> entries;
  int damaged = 0;
  int lost = 0;
  if (!begin.starts_with(mark) || !file.CanBeRead() || !zp::ReadRegistryText(file.GetBytes(), entries, damaged, lost))
    return false;
  auto const settings = std::ranges::count(entries, zp::RegistryEntry::SetValue, &zp::RegistryEntry::kind);
  found.kind = "registration entries of a registry editor";
  found.version = "5.00";
  found.holds.push_back(fmt::format("{}, {}", Counted(static_cast<size_t>(settings), "setting"),
                                    Counted(entries.size() - static_cast<size_t>(settings), "removal")));
  if (damaged > 0) found.holds.push_back(Counted(static_cast<size_t>(damaged), "line") + " without a meaning");
  if (file.WantsParts()) found.AddPart(file.GetSize(), "registration entries");
  found.GoOn("zp settings import % -c COMPANY -a APPLICATION");
  return true;
}

}  // namespace

bool IsHive(InspectedFile & file, Inspection & found)
{
  if (isRegistryExport(file, found)) return true;
  bool isHive = false;
  ForEachLine(file.GetHead().substr(0, hiveMark.size() + 1), [&](std::string_view line, size_t) { isHive |= line == hiveMark; });
  if (!isHive || !file.CanBeRead()) return false;
  found.kind = "hive of settings, in the form of registration entries";
  found.version = hiveMark;
  SettingsLines(file.GetBytes(), true).Tell(file, found);
  found.GoOn("zp settings list --hive % -c COMPANY -a APPLICATION");
  return true;
}

bool IsProfile(std::string_view text, InspectedFile const & file, Inspection & found)
{
  SettingsLines const lines(text, false);
  if (!lines.IsProfile()) return false;
  found.kind = "profile file of settings";
  lines.Tell(file, found);
  found.GoOn("zp settings list -p %");
  return true;
}
