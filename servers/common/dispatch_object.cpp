// Calls, and how failures leave them.

#include "servers/common/dispatch_object.h"

#include <algorithm>
#include <filesystem>
#include <new>

#include "servers/common/failure.h"
#include "servers/common/values.h"
#include "servers/common/wide_text.h"

namespace servers {
namespace {

VARIANT const & behindReference(VARIANT const & value)
{
  return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

char16_t lower(char16_t c)
{
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

}  // namespace

HRESULT TellSentence(Spreadsheet const & spreadsheet, EXCEPINFO * record, HRESULT code, std::string_view sentence)
{
  HRESULT const told = zp::TellException(record, code, spreadsheet.GetProgId(), {});
  if (record == nullptr) return told;
  std::u16string const wide = ToWide(sentence);  // names of files go beyond the code page
  SysFreeString(record->bstrDescription);
  record->bstrDescription = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  return told;
}

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

bool Call::GetFlag(UINT index) const
{
  return ChangedValue(Get(index), VT_BOOL).boolVal != VARIANT_FALSE;
}

std::u16string Call::GetText(UINT index) const
{
  VARIANT const & value = Get(index);
  if (value.vt == VT_BSTR) return std::u16string(zp::ViewOf(value.bstrVal));
  return std::u16string(zp::ViewOf(ChangedValue(value, VT_BSTR).bstrVal));
}

size_t Call::GetIndex(UINT index, size_t count) const
{
  LONG const number = ChangedValue(Get(index), VT_I4).lVal;
  if (number < 1 || static_cast<size_t>(number) > count) Fail(DISP_E_BADINDEX);
  return static_cast<size_t>(number) - 1;
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

void Call::ReturnNumber(uint64_t number)
{
  if (number > INT32_MAX) Fail(DISP_E_OVERFLOW);
  VARIANT value = EmptyValue();
  value.vt = VT_I4;
  value.lVal = static_cast<LONG>(number);
  Return(value);
}

void Call::ReturnText(std::u16string_view text)
{
  Return(TextValue(text));
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
  if (left == 0 && !m_pSpreadsheet->IsOutOfReach()) delete this;
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

// What is being handled, as a code and, where there is a sentence, as a record.
HRESULT DispatchObject::TellCurrent(EXCEPINFO * record) const
{
  try {
    throw;
  } catch (Failure const & failure) {
    return failure.sentence.empty() ? failure.code : TellSentence(*m_pSpreadsheet, record, failure.code, failure.sentence);
  } catch (std::filesystem::filesystem_error const & error) {
    return TellSentence(*m_pSpreadsheet, record, applicationError,
                        error.path1().string() + ": " + TextOfError(error.code().value()));
  } catch (std::bad_alloc const &) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return m_pSpreadsheet->TellCurrent(record, [this] { return HasGone(); });
  }
}

HRESULT DispatchObject::Invoke(DISPID id, IID const &, LCID, WORD flags, tagDISPPARAMS * params, tagVARIANT * result,
                               tagEXCEPINFO * exception, UINT *)
{
  try {
    static DISPPARAMS const nothing{};
    if (result != nullptr) VariantInit(result);
    Call call(params != nullptr ? *params : nothing, result);
    return CallMember(id, flags, call) ? S_OK : DISP_E_MEMBERNOTFOUND;
  } catch (...) {
    return TellCurrent(exception);
  }
}

}  // namespace servers
