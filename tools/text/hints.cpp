// Telling kinds of cells that are no numbers.

#include "tools/text/hints.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/number_text.h>

#include "tools/text/cells.h"
#include "tools/text/text_lines.h"

namespace {

constexpr std::string_view decimalDigits = "0123456789";

constexpr std::array<std::string_view, static_cast<size_t>(Hint::Count)> hintTexts = {
    "",
    "--decimal-comma reads the comma in a number as its decimal sign; one between thousands must go",
    "commas between groups of digits have no place in a number; take them out",
    "where numbers have decimal commas, a point has no place in one",
    "--comment TEXT leaves out the rest of a line from TEXT on, such as --comment '#'",
    "--delimiter CHAR cuts at another character, such as --delimiter '|'",
    "some lines have another delimiter; --delimiter reads those and reports the others",
    "infinite and undefined values are no numbers here; --missing WORD takes such a word for no value",
    "beyond 1.8e308 there is no number of double precision",
    "hexadecimal numbers aren't read; write them in decimal",
    "dates and times are no numbers; zp text numbers --columns leaves their columns out",
    "two numbers run together, or an exponent lacks its E; put a blank or the E between",
    "asterisks stand for a number that was too wide for its field; write the file with wider fields",
};

bool consistsOf(std::string_view text, std::string_view characters)
{
  return text.find_first_not_of(characters) == std::string_view::npos;
}

bool startsComment(std::string_view cell)
{
  return cell.front() == '#' || cell.front() == '%' || cell.front() == '!' || cell.starts_with("//");
}

bool isNotFinite(std::string_view number)
{
  if (number.find(".#") != std::string_view::npos && zp::IsDigit(number.front())) return true;  // as in 1.#QNAN
  std::string const letters = zp::ToLower(number);
  return letters == "inf" || letters == "infinity" || letters.starts_with("nan");
}

// Day, month and year, or the other way round, in digits.
bool isDateOfPoints(std::string_view cell)
{
  size_t const first = cell.find('.');
  size_t const second = cell.rfind('.');
  if (first == second || !consistsOf(cell, "0123456789.")) return false;
  auto const isPart = [](size_t digits) { return digits == 1 || digits == 2; };
  size_t const last = cell.size() - 1 - second;
  return isPart(second - first - 1) && ((isPart(first) && (last == 2 || last == 4)) || (first == 4 && isPart(last)));
}

bool isDate(std::string_view cell)
{
  if (isDateOfPoints(cell)) return true;
  auto const marks = std::count_if(cell.begin(), cell.end(), [](char c) { return c == '-' || c == '/' || c == ':'; });
  return marks >= 1 && consistsOf(cell, "0123456789-/:.TZ") && zp::IsDigit(cell.front()) &&
         (cell.find_first_of("/:") != std::string_view::npos || (marks == 2 && cell.find('.') == std::string_view::npos));
}

bool runsTogether(std::string_view cell)
{
  return consistsOf(cell, "0123456789.+-eEdD") && cell.find('.') != std::string_view::npos &&
         cell.find_first_of("+-", 1) != std::string_view::npos && cell.find_first_of(decimalDigits) != std::string_view::npos;
}

// Several numbers, each without a comma, between blanks or single delimiters.
bool isNumbers(std::string_view cell)
{
  if (!consistsOf(cell, "0123456789.+-eEdD ,;\t")) return false;
  NumberReader reader(false);
  std::vector<Cell> parts;
  for (char const delimiter : {blankDelimiter, ';', '\t'}) {
    CutCells(cell, delimiter, parts);
    bool const areNumbers =
        std::all_of(parts.begin(), parts.end(), [&](Cell const & part) { return reader.Read(part) && !reader.IsMissing(); });
    if (areNumbers && parts.size() > 1) return true;
  }
  return false;
}

// One point, or several that part groups of three digits, as in 1.234.567,8.
bool hasPointsOfNumber(std::string_view cell)
{
  size_t const first = cell.find('.');
  if (first == cell.rfind('.')) return true;
  std::string_view const groups = cell.substr(first, cell.find_first_not_of("0123456789.", first) - first);
  for (size_t i = 0; i < groups.size(); ++i) {
    if ((groups[i] == '.') != (i % 4 == 0)) return false;
  }
  return groups.size() % 4 == 0;
}

// Of the kinds of cells that hold digits, a point, a comma and an exponent alone.
Hint hintForComma(std::string_view cell, bool decimalComma)
{
  if (!consistsOf(cell, "0123456789.,+-eEdD") || cell.find_first_of(decimalDigits) == std::string_view::npos) return Hint::None;
  auto const commas = std::count(cell.begin(), cell.end(), ',');
  bool const hasPoint = cell.find('.') != std::string_view::npos;
  if (decimalComma) return hasPoint && hasPointsOfNumber(cell) ? Hint::PointInsteadOfComma : Hint::None;
  if (commas == 1 && !hasPoint) return Hint::DecimalComma;
  return commas > 0 ? Hint::DigitGroups : Hint::None;
}

bool isTooLarge(std::string_view cell)
{
  size_t used = 0;
  double const value = zp::TextToDouble(cell, &used);
  return used == cell.size() && std::isinf(value) && consistsOf(cell, "0123456789.+-eE");
}

}  // namespace

Hint HintFor(std::string_view cell, bool decimalComma)
{
  cell = WithoutQuotes(cell);
  if (cell.empty()) return Hint::None;
  if (isNumbers(cell)) return Hint::MixedDelimiters;
  if (cell.find(';') == cell.size() - 1) return Hint::Comment;  // a statement's end
  cell = TrimBlanks(cell.substr(0, cell.find(';')));            // which had no part in cutting the line
  if (cell.empty()) return Hint::None;
  if (startsComment(cell)) return Hint::Comment;
  if (consistsOf(cell, "*")) return Hint::Overflowed;
  if (cell.find('|') != std::string_view::npos) return Hint::OtherDelimiter;
  if (isDate(cell)) return Hint::Date;
  if (isTooLarge(cell)) return Hint::TooLarge;
  if (runsTogether(cell)) return Hint::RunTogether;
  if (Hint const hint = hintForComma(cell, decimalComma); hint != Hint::None) return hint;
  std::string_view const unsignedCell = cell.substr(cell.front() == '+' || cell.front() == '-');
  if (unsignedCell.size() > 2 && unsignedCell[0] == '0' && (unsignedCell[1] | 0x20) == 'x') return Hint::Hexadecimal;
  return !unsignedCell.empty() && isNotFinite(unsignedCell) ? Hint::NotFinite : Hint::None;
}

std::string_view TextOf(Hint hint)
{
  return hintTexts[static_cast<size_t>(hint)];
}
