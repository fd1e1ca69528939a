// A line's cells, and the numbers in them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/number_reader.h>

// Packed, as a line may have millions.
struct Cell {
  std::string_view text;  // without white space around it
  uint64_t mantissa = 0;  // with the exponent the number that the whole cell is
  int column = 0;         // of its first character, or of its delimiter if it is empty, from 1
  int16_t exponent = 0;   // of ten
  bool isExact = false;   // whether it is such a number with a point

  zp::Decimal GetNumber() const { return {.mantissa = mantissa, .exponent = exponent, .isExact = isExact}; }
};

constexpr char blankDelimiter = ' ';  // blanks and tabs in any mixture

// The cells between single delimiters, or between runs of blanks. A cell in double quotes keeps the delimiters in it.
void CutCells(std::string_view line, char delimiter, std::vector<Cell> & cells);

// The text between the quotes around it, or itself.
std::string_view WithoutQuotes(std::string_view text);

// Takes cells one after the other as the numbers that they are. A number is decimal, finite and the whole cell; it may stand in
// quotes and have Fortran's D for an E.
class NumberReader {
 public:
  // Words of missing values are NA, nan, NaN and -, and those in missing, which may look like numbers and must outlive this.
  explicit NumberReader(bool decimalComma, std::span<std::string const> missing = {})
      : m_bDecimalComma(decimalComma), m_Missing(missing)
  {
  }

  // False if the cell is neither a number nor missing.
  bool Read(Cell const & cell);
  bool IsMissing() const { return m_Text.empty(); }
  bool IsNumber(Cell const & cell) { return Read(cell) && !IsMissing(); }
  double GetValue() const { return m_Number.isExact ? zp::ExactValue(m_Text.data(), m_Number) : m_dValue; }

  // The last cell's number in the shortest form that gives the same double; as it stands if it has more digits than a double.
  void AppendTo(std::string & csv) const;

 private:
  bool ReadText();
  bool ReadNumber();
  bool ReadMissing();
  std::string_view InPlainForm(std::string_view text);
  bool IsHeldByDouble() const;

  bool m_bDecimalComma;
  std::span<std::string const> m_Missing;
  std::string m_strPlain;
  std::string_view m_Text;  // of the last cell, in plain form
  zp::Decimal m_Number;     // its number, if that is exact
  double m_dValue = 0.0;    // otherwise
};
