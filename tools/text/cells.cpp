// Cutting cells and reading numbers.

#include "tools/text/cells.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <iterator>

#include <fmt/format.h>
#include <zpbase/platform/number_text.h>

#include "tools/text/character_set.h"
#include "tools/text/text_lines.h"

namespace {

constexpr int surelyHeldDigits = DBL_DIG;

constexpr CharacterSet blanks(" \t\n\v\f\x1A");
constexpr CharacterSet pointNumbers("0123456789+-.eEdD");
constexpr CharacterSet commaNumbers("0123456789+-,eEdD");
constexpr CharacterSet otherForms("dD,");

bool isBlank(char c)
{
  return blanks.Has(c);
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

// The significant digits of a number, and how many of them stand in front of its point.
struct Digits {
  explicit Digits(zp::Decimal const & number)
  {
    char const * end = std::to_chars(text, std::end(text), number.mantissa).ptr;
    point = static_cast<int>(end - text + number.exponent);
    while (end - text > 1 && end[-1] == '0') --end;
    count = static_cast<int>(end - text);
  }

  char text[20];
  int count;
  int point;
};

// As a double of at most 15 digits is written in its shortest form, which has those digits: places as they stand, or an exponent
// where the first digit stands for less than 10^-4 or at least 10^16.
void appendShortest(std::string & csv, zp::Decimal const & number, bool negative)
{
  Digits const digits(number);
  auto const count = static_cast<size_t>(digits.count);
  if (negative) csv += '-';
  if (number.mantissa == 0) {
    csv += '0';
  } else if (digits.point < -3 || digits.point > 16) {
    csv += digits.text[0];
    if (count > 1) csv.append(1, '.').append(digits.text + 1, count - 1);
    fmt::format_to(std::back_inserter(csv), "e{:+03}", digits.point - 1);
  } else if (digits.point <= 0) {
    csv.append("0.000", static_cast<size_t>(2 - digits.point)).append(digits.text, count);
  } else {
    auto const whole = static_cast<size_t>(digits.point);
    csv.append(digits.text, std::min(whole, count));
    if (whole >= count) csv.append(whole - count, '0');
    if (whole < count) csv.append(1, '.').append(digits.text + whole, count - whole);
  }
}

}  // namespace

// Most cells are numbers that a delimiter follows: reading them tells where they end.
void CutCells(std::string_view line, char delimiter, std::vector<Cell> & cells)
{
  cells.clear();
  char const * const text = line.data();
  for (size_t place = 0;; ++place) {
    size_t const first = firstNotBlank(line, place, delimiter);
    if (first == line.size() && delimiter == blankDelimiter) return;
    zp::Decimal number = zp::GatherDecimal(text + first, zp::ViewEnd{text + line.size()});
    place = number.isExact ? static_cast<size_t>(number.end - text) : first;
    number.isExact = number.isExact && (place == line.size() || isDelimiter(line[place], delimiter));
    if (!number.isExact) place = endOfCell(line, first, delimiter);
    std::string_view const cell = line.substr(first, place - first);
    cells.push_back({number.isExact ? cell : TrimBlanks(cell), number.mantissa, static_cast<int>(first) + 1,
                     static_cast<int16_t>(number.exponent), number.isExact});
    if (place == line.size()) return;
  }
}

std::string_view WithoutQuotes(std::string_view text)
{
  bool const isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return isQuoted ? TrimBlanks(text.substr(1, text.size() - 2)) : text;
}

std::string_view NumberReader::InPlainForm(std::string_view text)
{
  if (std::none_of(text.begin(), text.end(), [](char c) { return otherForms.Has(c); })) return text;
  m_strPlain = text;
  for (char & c : m_strPlain) c = c == ',' ? '.' : (c | 0x20) == 'd' ? 'E' : c;
  return m_strPlain;
}

bool NumberReader::Read(Cell const & cell)
{
  m_Number = cell.GetNumber();
  m_Number.isExact = m_Number.isExact && !m_bDecimalComma;
  m_Text = m_Number.isExact ? cell.text : WithoutQuotes(cell.text);
  if (!m_Missing.empty() && std::find(m_Missing.begin(), m_Missing.end(), m_Text) != m_Missing.end()) return ReadMissing();
  return m_Number.isExact || ReadText();
}

bool NumberReader::ReadText()
{
  m_dValue = 0.0;
  if (m_Text.empty()) return true;
  std::string_view const text = m_Text;
  if (ReadNumber()) return true;
  constexpr std::string_view usual[] = {"NA", "nan", "NaN", "-"};
  return std::find(std::begin(usual), std::end(usual), text) != std::end(usual) && ReadMissing();
}

bool NumberReader::ReadMissing()
{
  m_Text = {};
  m_Number = {};
  m_dValue = 0.0;
  return true;
}

bool NumberReader::ReadNumber()
{
  if (!(m_bDecimalComma ? commaNumbers : pointNumbers).HasAll(m_Text)) return false;
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
  if (m_Number.isExact) {
    appendShortest(csv, m_Number, m_Text.front() == '-');
  } else if (IsHeldByDouble()) {
    fmt::format_to(std::back_inserter(csv), "{}", m_dValue);
  } else {
    csv += m_Text.substr(m_Text.front() == '+');
  }
}
