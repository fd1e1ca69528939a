// The table of errors.
#include "errors.h"

#include <array>

#include <zpbase/spreadsheet.h>

#include "servers/common/values.h"

namespace office {
namespace {

struct ErrorRow {
  int code;
  char const * formula;
};
constexpr int nullError = 2000;
constexpr int divisionError = 2007;
constexpr int valueError = 2015;
constexpr int referenceError = 2023;
constexpr int nameError = 2029;
constexpr int numberError = 2036;
// Formulas that the office computes to its error of the same name.
constexpr std::array errorRows = {ErrorRow{nullError, "=#NULL!"},
                                  ErrorRow{divisionError, "=#DIV/0!"},
                                  ErrorRow{valueError, "=#VALUE!"},
                                  ErrorRow{referenceError, "=#REF!"},
                                  ErrorRow{nameError, "=#NAME?"},
                                  ErrorRow{numberError, "=#NUM!"},
                                  ErrorRow{servers::notAvailableError, "=#N/A"}};

int codeOf(int officeError)
{
  switch (officeError) {
    case 521:
      return nullError;
    case 532:
      return divisionError;
    case 524:
      return referenceError;
    case 525:
      return nameError;
    case 502:
    case 503:
    case 523:
      return numberError;
    case 32767:
      return servers::notAvailableError;
    default:
      return valueError;
  }
}

}  // namespace

VARIANT ErrorValueOf(int officeError)
{
  return servers::ErrorValue(codeOf(officeError));
}

rtl::OUString ErrorFormula(HRESULT code)
{
  for (ErrorRow const & row : errorRows)
    if (zp::cellErrorBase + row.code == code) return rtl::OUString::createFromAscii(row.formula);
  return rtl::OUString::createFromAscii(errorRows.back().formula);
}

}  // namespace office
