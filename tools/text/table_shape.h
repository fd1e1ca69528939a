// What the columns of a text file are: numbers or texts, their names, and which of them are asked for.
#pragma once

#include <string>
#include <vector>

#include "tools/text/line_survey.h"

// A column is text if more of its cells are than are numbers, in the lines of that width which most lines with a number have. The
// head is the line without a number in front of the first line of numbers and as wide, or narrower by the names of the rows.
// Raises Failure for columns that the file doesn't have.
TableShape FindShape(TextLines & text, TextForm const & form, TextOptions const & options);
