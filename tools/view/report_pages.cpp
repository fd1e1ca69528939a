// Pages, search and shown characters.

#include "tools/view/report_pages.h"

#include <algorithm>
#include <functional>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/encoding.h>

namespace {

constexpr std::string_view breakMark = "\x01";
constexpr unsigned char deleteCharacter = 0x7F;

bool isControl(unsigned char c)
{
  return c < 0x20 || c == deleteCharacter;
}

// The places of the code page that hold no character, but would be controls outside it.
bool isUnassigned(unsigned char c)
{
  return c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
}

void appendPicture(std::string & shown, unsigned char c)
{
  shown += "\xE2\x90";
  shown += static_cast<char>(c == deleteCharacter ? 0xA1 : 0x80 + c);
}

char asciiOf(unsigned char c)
{
  if (isControl(c)) return '.';
  return c < 0x80 ? static_cast<char>(c) : '?';
}

}  // namespace

ReportPages::ReportPages(CStringArray const & entries) : m_Entries(entries)
{
  int const count = entries.GetSize();
  for (int entry = 0; entry < count; ++entry)
    if (entries.GetAt(entry).View() == breakMark) m_Breaks.push_back(entry);
  if (m_Breaks.empty() || m_Breaks.front() != 0) m_Starts.push_back(0);
  for (int const entry : m_Breaks) m_Starts.push_back(entry + 1);
}

int ReportPages::GetEntryCount() const
{
  return m_Entries.GetSize();
}

bool ReportPages::IsBreak(int entry) const
{
  return std::binary_search(m_Breaks.begin(), m_Breaks.end(), entry);
}

int ReportPages::GetPageOf(int entry) const
{
  auto const next = std::upper_bound(m_Starts.begin(), m_Starts.end(), IsBreak(entry) ? entry + 1 : entry);
  return static_cast<int>(next - m_Starts.begin()) - 1;
}

int ReportPages::GetLineOf(int entry) const
{
  return entry - static_cast<int>(std::lower_bound(m_Breaks.begin(), m_Breaks.end(), entry) - m_Breaks.begin());
}

int ReportPages::GetFirstEntry(int page) const
{
  return m_Starts[static_cast<size_t>(page)];
}

int ReportPages::GetEndEntry(int page) const
{
  return page + 1 < GetPageCount() ? m_Starts[static_cast<size_t>(page) + 1] - 1 : GetEntryCount();
}

std::string_view ReportPages::GetText(int entry) const
{
  return m_Entries.GetAt(entry).View();
}

int ReportPages::Find(std::string_view pattern, int start, bool forward) const
{
  int const count = GetEntryCount();
  if (count == 0 || pattern.empty()) return -1;
  int entry = std::clamp(start, 0, count - 1);
  for (int looked = 0; looked < count; ++looked) {
    if (!IsBreak(entry) && FindIn(GetText(entry), pattern) != std::string_view::npos) return entry;
    entry = forward ? (entry + 1) % count : (entry + count - 1) % count;
  }
  return -1;
}

size_t ReportPages::FindIn(std::string_view line, std::string_view pattern)
{
  bool const countsCase = zp::ToLower(pattern) != pattern;
  if (countsCase) return line.find(pattern);
  auto const same = [](char a, char b) { return zp::ToLower(a) == b; };
  auto const found = std::search(line.begin(), line.end(), pattern.begin(), pattern.end(), same);
  return found != line.end() ? static_cast<size_t>(found - line.begin()) : std::string_view::npos;
}

std::string ShownText(std::string_view text, ShownIn where)
{
  std::string shown;
  if (where == ShownIn::ascii) {
    shown.resize(text.size());
    std::transform(text.begin(), text.end(), shown.begin(), [](char c) { return asciiOf(static_cast<unsigned char>(c)); });
    return shown;
  }
  size_t begin = 0;
  for (size_t at = 0; at <= text.size(); ++at) {
    auto const c = at < text.size() ? static_cast<unsigned char>(text[at]) : deleteCharacter;
    if (!isControl(c) && !isUnassigned(c)) continue;
    shown += zp::TextToUtf8(text.substr(begin, at - begin));
    if (at == text.size()) break;
    if (isControl(c))
      appendPicture(shown, c);
    else
      shown += "\xEF\xBF\xBD";
    begin = at + 1;
  }
  return shown;
}
