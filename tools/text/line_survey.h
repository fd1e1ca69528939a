// What the lines of a numeric text file are: the delimiter that fits them best, their kinds, and what isn't numeric.
#pragma once

#include <bitset>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/text/cells.h"
#include "tools/text/hints.h"
#include "tools/text/text_lines.h"

// The first cell of a line that is neither a number nor missing.
struct Misfit {
  int line;
  int column;
  std::string text;
  bool isBehindNumber;  // of its line
};

struct TextSurvey {
  int lines = 0;
  int numeric = 0;
  int blank = 0;
  int comments = 0;
  int heads = 0;  // 1 if there is one
  int other = 0;
  int longest = 0;       // characters of a line behind the skipped ones
  int fewestValues = 0;  // cells of a numeric line, empty ones between delimiters too
  int mostValues = 0;
  int firstNumeric = 0;  // line, from 1; 0 if there is none
  int firstOfTable = 0;  // the same, or the head's
  int lastOther = 0;
  std::vector<Misfit> misfits;  // the first ones, as many as were asked for
  std::bitset<static_cast<size_t>(Hint::Count)> hints;
};

// What the values of a text stand between, and whether some columns may be texts.
struct TextForm {
  char delimiter = '\0';  // 0 where a line has one value
  bool decimalComma = false;
  bool mayHaveTexts = false;

  char Delimiter() const { return delimiter == '\0' ? blankDelimiter : delimiter; }
};

struct TableShape {
  std::vector<bool> texts;  // for each column; none if all are numbers
  int headLine = 0;         // from 1; 0 if there is none
  std::vector<std::string> head;
  std::vector<size_t> chosen;  // the columns that are looked at, in this order; none: all

  bool IsText(size_t column) const { return column < texts.size() && texts[column]; }
  size_t ColumnOf(size_t place) const { return chosen.empty() ? place : chosen[place]; }
};

// Tells of lines whether they are numeric: numbers and missing values alone, in columns of texts anything.
class LineReader {
 public:
  // All of them must outlive this.
  LineReader(TextForm const & form, TextOptions const & options, TableShape const & shape);

  // The first cell of the line that is no number, or null.
  Cell const * FindMisfit(std::string_view line);

  std::vector<Cell> const & Cells() const { return m_Cells; }
  int CountNumbers() const { return m_nNumbers; }  // in front of the misfit

 private:
  void Choose();

  TextForm const & m_Form;
  TableShape const & m_Shape;
  NumberReader m_Numbers;
  std::vector<Cell> m_Cells;
  std::vector<Cell> m_All;
  int m_nNumbers = 0;
};

// How often a command reads all lines, given its options.
int PassesOf(TextOptions const & options);

// A comma, tab or semicolon, whichever makes most lines numeric, or blankDelimiter; 0 if none has numbers on both its sides. It
// is the one that the options name if they do; that raises Failure if they name none. Between tabs and semicolons numbers have
// decimal commas if more lines are numeric then.
TextForm FindForm(TextLines & text, TextOptions const & options);

std::string NameOf(char delimiter);

// Called for every numeric line, with the chosen cells.
using TakeCells = std::function<void(std::vector<Cell> const & cells)>;

TextSurvey SurveyLines(TextLines & text, TextForm const & form, TextOptions const & options, TableShape const & shape,
                       TakeCells const & take);
