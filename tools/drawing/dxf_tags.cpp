// Reading a DXF file's pairs of lines, and the numbers in them.

#include "tools/drawing/dxf_tags.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

namespace {

constexpr double largestReal = 1e12;

std::string_view trimmed(std::string_view text)
{
  size_t const first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

template <class Number>
bool isNumber(std::string_view value, Number & number)
{
  value = trimmed(value);
  auto const [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  return error == std::errc() && end == value.data() + value.size();
}

}  // namespace

void DxfProblems::Add(unsigned long long line, std::string what)
{
  ++m_nCount;
  if (m_Kept.size() < mostKept) m_Kept.push_back({line, std::move(what)});
}

DxfTagReader::DxfTagReader(Source source, DxfProblems & problems)
    : m_Source(std::move(source)), m_Problems(problems), m_Buffer(4 * longestLine)
{
}

bool DxfTagReader::Stop(std::string what)
{
  m_Problems.Add(m_nLine, std::move(what));
  m_bStopped = true;
  return false;
}

// Moves what is left to the begin and fills the rest; false if there is nothing more or no room.
bool DxfTagReader::Refill()
{
  if (m_bDrained) return false;
  std::memmove(m_Buffer.data(), m_Buffer.data() + m_nBegin, m_nEnd - m_nBegin);
  m_nEnd -= m_nBegin;
  m_nBegin = 0;
  size_t const count = m_Source(m_Buffer.data() + m_nEnd, m_Buffer.size() - m_nEnd);
  m_nEnd += count;
  m_bDrained = count == 0;
  return count != 0;
}

std::string_view DxfTagReader::WithoutLineEnd(std::string_view line)
{
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  } else if (!m_bToldLineEnd) {
    m_Problems.Add(m_nLine, "the line doesn't end with CR LF");
    m_bToldLineEnd = true;
  }
  return line;
}

// What was searched before a refill isn't searched again.
bool DxfTagReader::NextLine(std::string_view & line)
{
  for (size_t looked = 0;;) {
    char const * const begin = m_Buffer.data() + m_nBegin;
    size_t const count = m_nEnd - m_nBegin;
    auto const * const found = static_cast<char const *>(std::memchr(begin + looked, '\n', count - looked));
    if (found != nullptr || (m_bDrained && count != 0)) {
      size_t const length = found != nullptr ? static_cast<size_t>(found - begin) : count;
      ++m_nLine;
      m_nBegin += std::min(length + 1, count);
      line = WithoutLineEnd({begin, length});
      return line.size() <= longestLine || Stop("the line is longer than 65,536 characters");
    }
    if (count > longestLine + 2) {
      ++m_nLine;
      return Stop("the line is longer than 65,536 characters");
    }
    looked = count;
    if (!Refill() && m_nBegin == m_nEnd) return false;
  }
}

bool DxfTagReader::Next(DxfTag & tag)
{
  std::string_view line;
  if (m_bStopped || !NextLine(line)) return false;
  if (!DxfInteger(line, tag.code)) return Stop(fmt::format("\"{}\" is no group code", DxfShown(line)));
  if (!NextLine(tag.value)) return m_bStopped ? false : Stop("the file ends between a group code and its value");
  tag.line = m_nLine;
  constexpr std::string_view lineBreakers("\0\r\x1A", 3);
  if (tag.value.find_first_of(lineBreakers) != std::string_view::npos)
    m_Problems.Add(m_nLine, "a character in the value ends a line for some readers");
  return true;
}

bool DxfInteger(std::string_view value, int & number)
{
  return isNumber(value, number);
}

bool DxfReal(std::string_view value, double & number)
{
  return isNumber(value, number) && std::isfinite(number) && std::abs(number) <= largestReal;
}

std::string DxfShown(std::string_view value)
{
  constexpr size_t most = 40;
  std::string text(value.substr(0, most));
  for (char & c : text)
    if (static_cast<unsigned char>(c) < 0x20) c = '.';
  return zp::TextToUtf8(text) + (value.size() > most ? "..." : "");
}
