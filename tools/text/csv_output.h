// The values of lines as CSV on standard output.
#pragma once

#include <string>
#include <vector>

#include "tools/text/line_survey.h"

// Written in pieces large enough to go out as they are.
class CsvOutput {
 public:
  CsvOutput(TextForm const & form, TextOptions const & options, TableShape const & shape)
      : m_Reader(form.decimalComma, options.missing), m_Shape(shape)
  {
  }

  void AddHead();  // if there is one
  void Add(std::vector<Cell> const & cells);
  void Flush();

 private:
  void AppendText(std::string const & text);

  NumberReader m_Reader;
  TableShape const & m_Shape;
  std::string m_strPiece;
};
