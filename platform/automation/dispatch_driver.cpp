// COleDispatchDriver: a link to an automation object, and the late-bound call through it.

#include <zpbase/platform/automation.h>

#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <zpbase/platform/dispatch_exception.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/variants.h>

namespace {

// The arguments behind an ellipsis, taken one after the other.
class ArgumentList {
 public:
  explicit ArgumentList(va_list args) { va_copy(m_List, args); }
  ~ArgumentList() { va_end(m_List); }
  ArgumentList(ArgumentList const &) = delete;
  ArgumentList & operator=(ArgumentList const &) = delete;

  template <class T>
  T Next()
  {
    return va_arg(m_List, T);
  }

 private:
  va_list m_List;
};

// The arguments of one call as the server gets them, the last first. Texts are made for the call and freed behind it; what else
// the variants hold is the caller's.
class Arguments {
 public:
  Arguments(BYTE const * types, va_list args)
  {
    size_t const count = types != nullptr ? std::strlen(reinterpret_cast<char const *>(types)) : 0;
    m_Values.resize(count);
    m_Texts.reserve(count);
    ArgumentList list(args);
    for (size_t i = 0; i < count; ++i) Take(m_Values[count - 1 - i], types[i], list);
  }
  ~Arguments() { FreeTexts(); }
  Arguments(Arguments const &) = delete;
  Arguments & operator=(Arguments const &) = delete;

  std::vector<VARIANT> & Values() { return m_Values; }

 private:
  void Take(VARIANT & value, BYTE type, ArgumentList & list);

  void FreeTexts()
  {
    for (BSTR const text : m_Texts) SysFreeString(text);
    m_Texts.clear();
  }

  void KeepText(VARIANT & value, BSTR text)
  {
    value.vt = VT_BSTR;
    value.bstrVal = text;
    m_Texts.push_back(text);
  }

  std::vector<VARIANT> m_Values;
  std::vector<BSTR> m_Texts;
};

void Arguments::Take(VARIANT & value, BYTE type, ArgumentList & list)
{
  value.vt = type;
  switch (type) {
    case VT_UI1:
      value.bVal = static_cast<BYTE>(list.Next<int>());
      return;
    case VT_I2:
      value.iVal = static_cast<int16_t>(list.Next<int>());
      return;
    case VT_I4:
    case VT_ERROR:
      value.lVal = list.Next<int>();
      return;
    case VT_R4:
      value.fltVal = static_cast<float>(list.Next<double>());
      return;
    case VT_R8:
    case VT_DATE:
      value.dblVal = list.Next<double>();
      return;
    case VT_BOOL:
      value.boolVal = list.Next<int>() != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case VT_DISPATCH:
      value.pdispVal = list.Next<IDispatch *>();
      return;
    case VT_UNKNOWN:
      value.punkVal = list.Next<IUnknown *>();
      return;
    case VT_VARIANT:
      value = *list.Next<VARIANT const *>();
      return;
    default:
      break;
  }
  BSTR text = nullptr;
  if (type == VT_BSTRA) {
    char const * const bytes = list.Next<char const *>();
    text = zp::TextToBstr(bytes != nullptr ? bytes : "");
  } else if (type == VT_BSTR) {
    char16_t const * const wide = list.Next<char16_t const *>();
    text = SysAllocString(wide != nullptr ? wide : u"");
    if (text == nullptr) throw std::bad_alloc();
  } else {
    FreeTexts();
    AfxThrowOleException(DISP_E_BADVARTYPE);
  }
  KeepText(value, text);
}

// The record of a server's failure; its texts are freed with it.
struct ExceptionRecord : EXCEPINFO {
  ExceptionRecord() : EXCEPINFO{} {}
  ~ExceptionRecord()
  {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
  ExceptionRecord(ExceptionRecord const &) = delete;
  ExceptionRecord & operator=(ExceptionRecord const &) = delete;
};

[[noreturn]] void raise(HRESULT code, ExceptionRecord & record)
{
  if (code != DISP_E_EXCEPTION) AfxThrowOleException(code);
  if (record.pfnDeferredFillIn != nullptr) record.pfnDeferredFillIn(&record);
  COleDispatchException told(zp::BstrToText(record.bstrDescription), record.dwHelpContext, record.wCode);
  told.m_strSource = zp::BstrToText(record.bstrSource);
  told.m_strHelpFile = zp::BstrToText(record.bstrHelpFile);
  told.m_scError = record.scode;
  std::u16string_view const wide = zp::ViewOf(record.bstrDescription);
  if (zp::TextToWide(told.m_strDescription.View()) != wide) throw new zp::WideDispatchException(told, wide);
  AfxThrowOleDispatchException(told);
}

template <class T>
void put(void * slot, T const & value)
{
  *static_cast<T *>(slot) = value;
}

// Hands a result of its slot's type over.
void give(void * slot, COleVariant & result)
{
  switch (result.vt) {
    case VT_UI1:
      put(slot, result.bVal);
      break;
    case VT_I2:
    case VT_BOOL:
      put(slot, result.iVal);
      break;
    case VT_I4:
    case VT_ERROR:
      put(slot, result.lVal);
      break;
    case VT_R4:
      put(slot, result.fltVal);
      break;
    case VT_R8:
    case VT_DATE:
      put(slot, result.dblVal);
      break;
    case VT_CY:
      put(slot, result.cyVal);
      break;
    case VT_BSTR:
      *static_cast<CString *>(slot) = zp::BstrToText(result.bstrVal);
      break;
    case VT_DISPATCH:
      put(slot, result.Detach().pdispVal);
      break;
    case VT_UNKNOWN:
      put(slot, result.Detach().punkVal);
      break;
    default:
      AfxThrowOleException(DISP_E_BADVARTYPE);
  }
}

}  // namespace

COleDispatchDriver::COleDispatchDriver(IDispatch * object, BOOL autoRelease) : m_lpDispatch(object), m_bAutoRelease(autoRelease)
{
}

COleDispatchDriver::COleDispatchDriver(COleDispatchDriver const & other) : m_lpDispatch(other.m_lpDispatch)
{
  if (m_lpDispatch != nullptr) m_lpDispatch->AddRef();
}

COleDispatchDriver & COleDispatchDriver::operator=(COleDispatchDriver const & other)
{
  if (this == &other) return *this;
  IDispatch * const object = other.m_lpDispatch;
  if (object != nullptr) object->AddRef();
  ReleaseDispatch();
  m_lpDispatch = object;
  m_bAutoRelease = TRUE;
  return *this;
}

BOOL COleDispatchDriver::CreateDispatch(CLSID const & id, COleException * problem)
{
  void * object = nullptr;
  HRESULT const code = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object);
  if (problem != nullptr) problem->m_sc = code;
  if (FAILED(code)) return FALSE;
  AttachDispatch(static_cast<IDispatch *>(object));
  return TRUE;
}

BOOL COleDispatchDriver::CreateDispatch(char const * progId, COleException * problem)
{
  CLSID id;
  HRESULT const code = CLSIDFromProgID(zp::TextToWide(progId != nullptr ? progId : "").c_str(), &id);
  if (SUCCEEDED(code)) return CreateDispatch(id, problem);
  if (problem != nullptr) problem->m_sc = code;
  return FALSE;
}

void COleDispatchDriver::AttachDispatch(IDispatch * object, BOOL autoRelease)
{
  if (object != m_lpDispatch) {
    ReleaseDispatch();
    m_lpDispatch = object;
  } else if (object != nullptr && m_bAutoRelease != FALSE) {
    object->AddRef();
    if (object->Release() > 1) object->Release();
  }
  m_bAutoRelease = autoRelease;
}

IDispatch * COleDispatchDriver::DetachDispatch()
{
  return std::exchange(m_lpDispatch, nullptr);
}

void COleDispatchDriver::ReleaseDispatch()
{
  IDispatch * const object = std::exchange(m_lpDispatch, nullptr);
  if (object != nullptr && m_bAutoRelease != FALSE) object->Release();
}

void COleDispatchDriver::InvokeHelper(DISPID id, WORD flags, VARTYPE type, void * slot, BYTE const * parameters, ...)
{
  struct List {
    ~List() { va_end(args); }
    va_list args;
  } list;
  va_start(list.args, parameters);
  InvokeHelperV(id, flags, type, slot, parameters, list.args);
}

void COleDispatchDriver::InvokeHelperV(DISPID id, WORD flags, VARTYPE type, void * slot, BYTE const * parameters, va_list args)
{
  if (m_lpDispatch == nullptr) AfxThrowOleException(CO_E_OBJNOTCONNECTED);
  Arguments arguments(parameters, args);
  DISPID newValue = DISPID_PROPERTYPUT;
  bool const isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS params{arguments.Values().data(), isPut ? &newValue : nullptr, static_cast<UINT>(arguments.Values().size()),
                    isPut ? 1u : 0u};
  COleVariant result;
  ExceptionRecord record;
  UINT badArgument = ~0u;
  HRESULT const code =
      m_lpDispatch->Invoke(id, IID_NULL, 0, flags, &params, type != VT_EMPTY ? &result : nullptr, &record, &badArgument);
  if (FAILED(code)) raise(code, record);
  if (type == VT_EMPTY) return;
  if (type == VT_VARIANT) {
    put(slot, result.Detach());
  } else {
    result.ChangeType(type);
    give(slot, result);
  }
}
