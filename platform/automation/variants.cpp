// Variants: what they own, and COleVariant, which raises what goes wrong.

#include <zpbase/platform/variants.h>

#include <new>
#include <utility>

#include <zpbase/platform/exceptions.h>

namespace {

constexpr VARTYPE flagBits = 0xF000;

bool isKnown(VARTYPE type)
{
  VARTYPE const base = type & static_cast<VARTYPE>(~flagBits);
  VARTYPE const flags = type & flagBits;
  if (flags == VT_ARRAY) return base == VT_VARIANT;
  if (flags == VT_BYREF) return base != VT_EMPTY && base != VT_NULL && base <= VT_UINT;
  return flags == 0 &&
         ((base <= VT_UNKNOWN && base != VT_VARIANT) || (base >= VT_I1 && base <= VT_UI4) || base == VT_INT || base == VT_UINT);
}

bool isArray(VARTYPE type)
{
  return type == (VT_ARRAY | VT_VARIANT);
}

void requireDone(HRESULT code)
{
  if (code == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(code)) AfxThrowOleException(code);
}

// Makes copy, which has the bits of value, independent of it.
HRESULT takeOwn(VARIANT & copy, VARIANT const & value)
{
  if (value.vt == VT_BSTR && value.bstrVal != nullptr) {
    copy.bstrVal = SysAllocStringLen(value.bstrVal, SysStringLen(value.bstrVal));
    return copy.bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
  }
  if (isArray(value.vt)) return SafeArrayCopy(value.parray, &copy.parray);
  if ((value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) && value.punkVal != nullptr) value.punkVal->AddRef();
  return S_OK;
}

}  // namespace

void VariantInit(VARIANTARG * value)
{
  *value = {};
}

HRESULT VariantClear(VARIANTARG * value)
{
  if (!isKnown(value->vt)) return DISP_E_BADVARTYPE;
  if (isArray(value->vt)) {
    if (HRESULT const code = SafeArrayDestroy(value->parray); FAILED(code)) return code;
    VariantInit(value);
    return S_OK;
  }
  VARIANT const old = std::exchange(*value, VARIANT{});  // whatever a released object does, it finds the variant empty
  if (old.vt == VT_BSTR) SysFreeString(old.bstrVal);
  if ((old.vt == VT_DISPATCH || old.vt == VT_UNKNOWN) && old.punkVal != nullptr) old.punkVal->Release();
  return S_OK;
}

HRESULT VariantCopy(VARIANTARG * to, VARIANTARG const * from)
{
  if (to == from) return S_OK;
  if (!isKnown(from->vt)) return DISP_E_BADVARTYPE;
  VARIANT copy = *from;
  if (HRESULT const code = takeOwn(copy, *from); FAILED(code)) return code;
  if (HRESULT const code = VariantClear(to); FAILED(code)) {
    VariantClear(&copy);
    return code;
  }
  *to = copy;
  return S_OK;
}

COleVariant::COleVariant(VARIANT const & value) : COleVariant()
{
  requireDone(VariantCopy(this, &value));
}

COleVariant::COleVariant(char const * text) : COleVariant()
{
  bstrVal = zp::TextToBstr(text != nullptr ? text : "");
  vt = VT_BSTR;
}

COleVariant::COleVariant(CString const & text) : COleVariant()
{
  bstrVal = zp::TextToBstr(text.View());
  vt = VT_BSTR;
}

COleVariant::COleVariant(BYTE value) : COleVariant()
{
  vt = VT_UI1;
  bVal = value;
}

COleVariant::COleVariant(short value, VARTYPE type) : COleVariant()
{
  if (type != VT_I2 && type != VT_BOOL) AfxThrowOleException(E_INVALIDARG);
  vt = type;
  iVal = value;
  if (type == VT_BOOL) boolVal = value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
}

COleVariant::COleVariant(int value, VARTYPE type) : COleVariant()
{
  if (type != VT_I4 && type != VT_ERROR && type != VT_BOOL) AfxThrowOleException(E_INVALIDARG);
  vt = type;
  if (type == VT_BOOL) {
    boolVal = value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
  } else {
    lVal = value;
  }
}

COleVariant::COleVariant(float value) : COleVariant()
{
  vt = VT_R4;
  fltVal = value;
}

COleVariant::COleVariant(double value, VARTYPE type) : COleVariant()
{
  if (type != VT_R8 && type != VT_DATE) AfxThrowOleException(E_INVALIDARG);
  vt = type;
  dblVal = value;
}

COleVariant & COleVariant::operator=(COleVariant && other) noexcept
{
  if (this == &other) return *this;
  VariantClear(this);
  static_cast<VARIANT &>(*this) = other.Detach();
  return *this;
}

COleVariant & COleVariant::operator=(VARIANT const & value)
{
  requireDone(VariantCopy(this, &value));
  return *this;
}

void COleVariant::ChangeType(VARTYPE type, VARIANT const * from)
{
  requireDone(VariantChangeType(this, from != nullptr ? from : this, 0, type));
}

void COleVariant::Attach(VARIANT & value)
{
  if (this == &value) return;
  requireDone(VariantClear(this));
  static_cast<VARIANT &>(*this) = std::exchange(value, VARIANT{});
}

VARIANT COleVariant::Detach()
{
  VARIANT const value = *this;
  VariantInit(this);
  return value;
}
