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

// The first cell of a line that is neither a number nor empty.
struct Misfit {
  int line;
  int column;
  std::string text;
};

struct TextSurvey {
  int lines = 0;
  int numeric = 0;
  int blank = 0;
  int comments = 0;
  int other = 0;
  int longest = 0;       // characters of a line behind the skipped ones
  int fewestValues = 0;  // cells of a numeric line, empty ones between delimiters too
  int mostValues = 0;
  int firstNumeric = 0;  // line, from 1; 0 if there is none
  int lastOther = 0;
  std::vector<Misfit> misfits;  // the first ones, as many as were asked for
  std::bitset<static_cast<size_t>(Hint::Count)> hints;
};

// How often a command reads all lines, given its options.
int PassesOf(TextOptions const & options);

// A comma, tab or semicolon, whichever makes most lines numeric, or blankDelimiter; 0 if none has numbers on both its sides. It
// is the one that the options name if they do; that raises Failure if they name none.
char ChooseDelimiter(TextLines & text, TextOptions const & options);

std::string NameOf(char delimiter);

// Called for every numeric line.
using TakeCells = std::function<void(std::vector<Cell> const & cells)>;

TextSurvey SurveyLines(TextLines & text, char delimiter, TextOptions const & options, TakeCells const & take);
