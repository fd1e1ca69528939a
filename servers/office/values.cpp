// Making automation's values, and the table of errors.
#include "values.h"

#include <array>
#include <new>
#include <string_view>

#include "failure.h"
#include "office_text.h"

namespace office {
namespace {

constexpr HRESULT errorsFrom = static_cast<HRESULT>(0x800A0000);  // and the number of the error

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
constexpr int notAvailable = 2042;
// Formulas that the office computes to its error of the same name.
constexpr std::array errorRows = {ErrorRow{nullError, "=#NULL!"},   ErrorRow{divisionError, "=#DIV/0!"},
                                  ErrorRow{valueError, "=#VALUE!"}, ErrorRow{referenceError, "=#REF!"},
                                  ErrorRow{nameError, "=#NAME?"},   ErrorRow{numberError, "=#NUM!"},
                                  ErrorRow{notAvailable, "=#N/A"}};

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
      return notAvailable;
    default:
      return valueError;
  }
}

}  // namespace

VARIANT EmptyValue()
{
  VARIANT value{};
  VariantInit(&value);
  return value;
}

VARIANT NumberValue(double number)
{
  VARIANT value = EmptyValue();
  value.vt = VT_R8;
  value.dblVal = number;
  return value;
}

VARIANT TextValue(rtl::OUString const & text)
{
  VARIANT value = EmptyValue();
  value.bstrVal = SysAllocStringLen(ViewOf(text).data(), static_cast<UINT>(text.getLength()));
  if (value.bstrVal == nullptr) throw std::bad_alloc();
  value.vt = VT_BSTR;
  return value;
}

VARIANT BooleanValue(bool isTrue)
{
  VARIANT value = EmptyValue();
  value.vt = VT_BOOL;
  value.boolVal = isTrue ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT ErrorValue(int officeError)
{
  VARIANT value = EmptyValue();
  value.vt = VT_ERROR;
  value.scode = errorsFrom + codeOf(officeError);
  return value;
}

rtl::OUString ErrorFormula(HRESULT code)
{
  for (ErrorRow const & row : errorRows)
    if (errorsFrom + row.code == code) return rtl::OUString::createFromAscii(row.formula);
  return rtl::OUString::createFromAscii(errorRows.back().formula);
}

ChangedValue::ChangedValue(VARIANT const & value, VARTYPE type) : VARIANT(EmptyValue())
{
  HRESULT const code = VariantChangeType(this, &value, 0, type);
  if (FAILED(code)) Fail(code);
}

}  // namespace office
