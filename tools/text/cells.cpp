// Cutting cells and reading numbers.

#include "tools/text/cells.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>

#include <fmt/format.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/number_text.h>

#include "tools/text/text_lines.h"

namespace {

constexpr int surelyHeldDigits = DBL_DIG;

bool isBlank(char c)
{
  return c == ' ' || (c >= '\t' && c <= '\f') || c == '\x1A';
}

bool isDelimiter(char c, char delimiter)
{
  return delimiter == blankDelimiter ? isBlank(c) : c == delimiter;
}

// Behind the quoted text at first, which a delimiter, white space or the line's end follows; first if there is none.
size_t behindQuotes(std::string_view line, size_t first, char delimiter)
{
  if (first == line.size() || line[first] != '"') return first;
  size_t end = first + 1;
  for (; end < line.size(); ++end) {
    if (line[end] != '"') continue;
    if (end + 1 == line.size() || line[end + 1] != '"') break;
    ++end;
  }
  if (end >= line.size()) return first;
  ++end;
  return end == line.size() || isDelimiter(line[end], delimiter) || isBlank(line[end]) ? end : first;
}

size_t firstNotBlank(std::string_view line, size_t from, char delimiter)
{
  while (from < line.size() && isBlank(line[from]) && (delimiter == blankDelimiter || line[from] != delimiter)) ++from;
  return from;
}

size_t endOfCell(std::string_view line, size_t first, char delimiter)
{
  size_t end = behindQuotes(line, first, delimiter);
  while (end < line.size() && !isDelimiter(line[end], delimiter)) ++end;
  return end;
}

}  // namespace

void CutCells(std::string_view line, char delimiter, std::vector<Cell> & cells)
{
  cells.clear();
  for (size_t place = 0;; ++place) {
    size_t const first = firstNotBlank(line, place, delimiter);
    if (first == line.size() && delimiter == blankDelimiter) return;
    place = endOfCell(line, first, delimiter);
    std::string_view const text = TrimBlanks(line.substr(first, place - first));
    cells.push_back({text, static_cast<int>(first) + 1});
    if (place == line.size()) return;
  }
}

std::string_view WithoutQuotes(std::string_view text)
{
  bool const isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return isQuoted ? TrimBlanks(text.substr(1, text.size() - 2)) : text;
}

bool NumberReader::HasNumberCharacters(std::string_view text) const
{
  char const point = m_bDecimalComma ? ',' : '.';
  return std::all_of(text.begin(), text.end(), [point](char c) {
    return zp::IsDigit(c) || c == '+' || c == '-' || c == point || (c | 0x20) == 'e' || (c | 0x20) == 'd';
  });
}

std::string_view NumberReader::InPlainForm(std::string_view text)
{
  if (text.find_first_of("dD,") == std::string_view::npos) return text;
  m_strPlain = text;
  for (char & c : m_strPlain) c = c == ',' ? '.' : (c | 0x20) == 'd' ? 'E' : c;
  return m_strPlain;
}

bool NumberReader::Read(std::string_view cell)
{
  m_Text = WithoutQuotes(cell);
  m_dValue = 0.0;
  if (m_Text.empty()) return true;
  if (!HasNumberCharacters(m_Text)) return false;
  m_Text = InPlainForm(m_Text);
  size_t used = 0;
  m_dValue = zp::TextToDouble(m_Text, &used);
  return used == m_Text.size() && std::isfinite(m_dValue);
}

// Every number of at most 15 digits comes back from its double, unless it is too near to zero.
bool NumberReader::IsHeldByDouble() const
{
  std::string_view const mantissa = m_Text.substr(0, m_Text.find_first_of("eE"));
  size_t const first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return true;
  bool const hasPoint = mantissa.find('.') != std::string_view::npos;
  size_t const last = hasPoint ? mantissa.find_last_of("123456789") : mantissa.size() - 1;
  std::string_view const digits = mantissa.substr(first, last + 1 - first);
  auto const count = std::count_if(digits.begin(), digits.end(), [](char c) { return c != '.'; });
  return count <= surelyHeldDigits && std::fabs(m_dValue) >= DBL_MIN;
}

void NumberReader::AppendTo(std::string & csv) const
{
  if (IsMissing()) return;
  if (IsHeldByDouble()) {
    fmt::format_to(std::back_inserter(csv), "{}", m_dValue);
  } else {
    csv += m_Text.substr(m_Text.front() == '+');
  }
}
