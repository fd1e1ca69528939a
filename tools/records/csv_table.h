// Tables of values between commas, semicolons or tabs.
#pragma once

#include <functional>
#include <istream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct CsvRow {
  size_t line;                      // of the file, from 1, in which the row begins
  bool hasDecimalCommas;            // may have: no comma is between its fields
  std::vector<std::string> fields;  // in UTF-8
};

// Gives take the rows of a table one after the other; comment lines with # before the first row and empty lines are left out.
// Raises Failure for a quote that stands alone, for a row that is longer than any record, and for more in front of the first row
// than comments need; name is the file's.
void ReadCsv(std::istream & input, std::string const & name, std::function<void(CsvRow const & row)> const & take);

// Appends one line with its end; fields are quoted where they must be.
void AppendCsvLine(std::string & text, std::span<std::string_view const> fields);
