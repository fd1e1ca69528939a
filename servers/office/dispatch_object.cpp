// Calls, and how failures leave them.
#include "dispatch_object.h"

#include <algorithm>
#include <new>
#include <string>

#include <com/sun/star/lang/DisposedException.hpp>
#include <com/sun/star/uno/Exception.hpp>

#include <zpbase/platform/encoding.h>

#include "failure.h"
#include "office_text.h"
#include "values.h"

namespace office {
namespace {

VARIANT const & behindReference(VARIANT const & value)
{
  return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

HRESULT tell(EXCEPINFO * record, rtl::OUString const & sentence)
{
  std::string text;
  zp::AppendWide(text, ViewOf(sentence));
  return zp::TellException(record, applicationError, "Zephlow.Office", text);
}

// What is being handled, as a code and, where there is a sentence, as a record.
HRESULT tellCurrent(Link & link, EXCEPINFO * record)
{
  try {
    throw;
  } catch (Failure const & failure) {
    return failure.sentence.empty() ? failure.code : tell(record, FromUtf8(failure.sentence));
  } catch (css::lang::DisposedException const &) {
    return link.HasBroken() ? serverUnavailable : CO_E_OBJNOTCONNECTED;
  } catch (css::uno::Exception const & exception) {
    if (link.HasBroken()) return serverUnavailable;
    return tell(record, exception.Message.isEmpty() ? rtl::OUString("The office refuses this") : exception.Message);
  } catch (std::bad_alloc const &) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

char16_t lower(char16_t c)
{
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

}  // namespace

bool IsSameName(std::u16string_view one, std::u16string_view other)
{
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char16_t a, char16_t b) { return lower(a) == lower(b); });
}

bool Call::Has(UINT index) const
{
  if (index >= m_Params.cArgs) return false;
  VARIANT const & value = m_Params.rgvarg[m_Params.cArgs - 1 - index];
  return value.vt != VT_ERROR || value.scode != DISP_E_PARAMNOTFOUND;
}

VARIANT const & Call::Get(UINT index) const
{
  if (!Has(index)) Fail(DISP_E_BADPARAMCOUNT);
  return behindReference(m_Params.rgvarg[m_Params.cArgs - 1 - index]);
}

LONG Call::GetNumber(UINT index) const
{
  return ChangedValue(Get(index), VT_I4).lVal;
}

bool Call::GetFlag(UINT index) const
{
  return ChangedValue(Get(index), VT_BOOL).boolVal != VARIANT_FALSE;
}

rtl::OUString Call::GetText(UINT index) const
{
  VARIANT const & value = Get(index);
  if (value.vt == VT_BSTR) return FromWide(zp::ViewOf(value.bstrVal));
  return FromWide(zp::ViewOf(ChangedValue(value, VT_BSTR).bstrVal));
}

void Call::Return(VARIANT value)
{
  if (m_pResult != nullptr)
    *m_pResult = value;
  else
    VariantClear(&value);
}

void Call::Return(IDispatch * object)
{
  VARIANT value = EmptyValue();
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  Return(value);
}

void Call::Return(LONG number)
{
  VARIANT value = EmptyValue();
  value.vt = VT_I4;
  value.lVal = number;
  Return(value);
}

HRESULT DispatchObject::QueryInterface(IID const & iid, void ** object)
{
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IDispatch *>(this);
  return S_OK;
}

DWORD DispatchObject::Release()
{
  DWORD const left = --m_nReferences;
  if (left == 0) delete this;
  return left;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT * count)
{
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::GetIDsOfNames(IID const &, char16_t ** names, UINT count, LCID, DISPID * ids)
{
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  std::fill_n(ids, count, DISPID_UNKNOWN);  // parameters have no names
  if (names[0] != nullptr) ids[0] = FindMember(names[0]);
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT DispatchObject::Invoke(DISPID id, IID const &, LCID, WORD flags, tagDISPPARAMS * params, tagVARIANT * result,
                               tagEXCEPINFO * exception, UINT *)
{
  try {
    static DISPPARAMS const nothing{};
    if (result != nullptr) VariantInit(result);
    if (GetLink().IsBroken()) return serverUnavailable;
    Call call(params != nullptr ? *params : nothing, result);
    return CallMember(id, flags, call) ? S_OK : DISP_E_MEMBERNOTFOUND;
  } catch (...) {
    return tellCurrent(GetLink(), exception);
  }
}

}  // namespace office
