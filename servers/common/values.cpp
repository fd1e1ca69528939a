// Making automation's values.

#include "servers/common/values.h"

#include <algorithm>
#include <new>

#include <zpbase/spreadsheet.h>

#include "servers/common/failure.h"
#include "servers/common/wide_text.h"

namespace servers {
namespace {

BSTR checked(BSTR text)
{
  if (text == nullptr) throw std::bad_alloc();
  return text;
}

VARIANT ownedText(BSTR text)
{
  VARIANT value = EmptyValue();
  value.vt = VT_BSTR;
  value.bstrVal = text;
  return value;
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

VARIANT TextValue(std::u16string_view text)
{
  return ownedText(checked(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))));
}

VARIANT TextValue(std::string_view utf8)
{
  bool const isAscii = std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!isAscii) return TextValue(ToWide(utf8));
  BSTR const text = checked(SysAllocStringLen(nullptr, static_cast<UINT>(utf8.size())));
  std::copy(utf8.begin(), utf8.end(), text);
  return ownedText(text);
}

VARIANT BooleanValue(bool isTrue)
{
  VARIANT value = EmptyValue();
  value.vt = VT_BOOL;
  value.boolVal = isTrue ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT ErrorValue(int number)
{
  VARIANT value = EmptyValue();
  value.vt = VT_ERROR;
  value.scode = zp::cellErrorBase + number;
  return value;
}

ChangedValue::ChangedValue(VARIANT const & value, VARTYPE type) : VARIANT(EmptyValue())
{
  Check(VariantChangeType(this, &value, 0, type));
}

}  // namespace servers
