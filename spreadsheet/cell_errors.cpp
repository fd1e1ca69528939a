// The error values of spreadsheets, by number and by text.

#include <zpbase/spreadsheet.h>

#include <algorithm>
#include <iterator>

namespace {

struct CellError {
  int number;
  char const * text;
};

constexpr CellError errors[] = {
    {2000, "#NULL!"},    {2007, "#DIV/0!"},   {2015, "#VALUE!"},       {2023, "#REF!"},   {2029, "#NAME?"},
    {2036, "#NUM!"},     {2042, "#N/A"},      {2043, "#GETTING_DATA"}, {2045, "#SPILL!"}, {2046, "#CONNECT!"},
    {2047, "#BLOCKED!"}, {2048, "#UNKNOWN!"}, {2049, "#FIELD!"},       {2050, "#CALC!"},
};

}  // namespace

namespace zp {

char const * CellErrorText(int number)
{
  auto const found =
      std::find_if(std::begin(errors), std::end(errors), [=](CellError const & each) { return each.number == number; });
  return found != std::end(errors) ? found->text : nullptr;
}

int CellErrorNumber(std::string_view text)
{
  auto const found =
      std::find_if(std::begin(errors), std::end(errors), [=](CellError const & each) { return text == each.text; });
  return found != std::end(errors) ? found->number : 0;
}

}  // namespace zp
