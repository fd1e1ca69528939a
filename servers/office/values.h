// Values on their way between the office and automation.
#pragma once

#include <rtl/ustring.hxx>

#include <zpbase/platform/variants.h>

namespace office {

// Values that the caller owns.
VARIANT EmptyValue();
VARIANT NumberValue(double number);
VARIANT TextValue(rtl::OUString const & text);
VARIANT BooleanValue(bool value);
VARIANT ErrorValue(int officeError);  // the office's number of an error

// The formula that gives an error's value, for one that spreadsheets know; #N/A for others.
rtl::OUString ErrorFormula(HRESULT code);

// A value changed to a type, which clears itself; DISP_E_TYPEMISMATCH and its kind as Failure.
class ChangedValue : public VARIANT {
 public:
  ChangedValue(VARIANT const & value, VARTYPE type);
  ~ChangedValue() { VariantClear(this); }
  ChangedValue(ChangedValue const &) = delete;
  ChangedValue & operator=(ChangedValue const &) = delete;
};

}  // namespace office
