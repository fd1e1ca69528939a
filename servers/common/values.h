// Making and changing automation's values.
#pragma once

#include <string_view>

#include <zpbase/platform/variants.h>

namespace servers {

inline constexpr int notAvailableError = 2042;  // #N/A

// Values that the caller owns.
VARIANT EmptyValue();
VARIANT NumberValue(double number);
VARIANT TextValue(std::u16string_view text);
VARIANT TextValue(std::string_view utf8);
VARIANT BooleanValue(bool value);
VARIANT ErrorValue(int number);  // such as 2042 for #N/A

// A value changed to a type, which clears itself; DISP_E_TYPEMISMATCH and its kind as Failure.
class ChangedValue : public VARIANT {
 public:
  ChangedValue(VARIANT const & value, VARTYPE type);
  ~ChangedValue() { VariantClear(this); }
  ChangedValue(ChangedValue const &) = delete;
  ChangedValue & operator=(ChangedValue const &) = delete;
};

}  // namespace servers
