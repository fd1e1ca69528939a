// Tables of comma-separated values.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

struct CsvRow {
  size_t line;  // of the file, from 1, in which the row begins
  std::vector<std::string> fields;
};

// The rows of a table; comment lines with # before the first row and empty lines are left out. Raises Failure for a quote that
// stands alone; name is the file's.
std::vector<CsvRow> ReadCsv(std::string_view text, std::string const & name);

// One line with its end; fields are quoted where they must be.
std::string CsvLine(std::span<std::string_view const> fields);
