// Error values between the office and automation.
#pragma once

#include <rtl/ustring.hxx>

#include <zpbase/platform/variants.h>

namespace office {

// The value of an error by the office's number of it.
VARIANT ErrorValueOf(int officeError);

// The formula that gives an error's value, for one that spreadsheets know; #N/A for others.
rtl::OUString ErrorFormula(HRESULT code);

}  // namespace office
