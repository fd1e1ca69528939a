// The values of automation: texts of 16-bit characters with their length in front, tagged values, two-dimensional blocks of them,
// and what goes along with a late-bound call. Failures are HRESULT codes; COleVariant raises them as COleException.
#pragma once

#include <string_view>
#include <type_traits>

#include "automation.h"
#include "string.h"
#include "types.h"

// A text that may hold zeroes: its length stands in front of it, a zero behind it. Null is an empty text.
using BSTR = char16_t *;
using DATE = double;  // days since 30 December 1899
using VARIANT_BOOL = int16_t;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// A currency amount in ten-thousandths.
union CY {
  int64_t int64;
};

inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_NULL = 1;
inline constexpr VARTYPE VT_I2 = 2;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_R4 = 4;
inline constexpr VARTYPE VT_R8 = 5;
inline constexpr VARTYPE VT_CY = 6;
inline constexpr VARTYPE VT_DATE = 7;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_DISPATCH = 9;
inline constexpr VARTYPE VT_ERROR = 10;
inline constexpr VARTYPE VT_BOOL = 11;
inline constexpr VARTYPE VT_VARIANT = 12;
inline constexpr VARTYPE VT_UNKNOWN = 13;
inline constexpr VARTYPE VT_BSTRA = 14;  // as the type of a parameter alone: a single-byte text, see InvokeHelper
inline constexpr VARTYPE VT_I1 = 16;
inline constexpr VARTYPE VT_UI1 = 17;
inline constexpr VARTYPE VT_UI2 = 18;
inline constexpr VARTYPE VT_UI4 = 19;
inline constexpr VARTYPE VT_INT = 22;
inline constexpr VARTYPE VT_UINT = 23;
inline constexpr VARTYPE VT_ARRAY = 0x2000;  // or'ed with VT_VARIANT: a SAFEARRAY
inline constexpr VARTYPE VT_BYREF = 0x4000;  // or'ed with a type: an address that belongs to somebody else

struct SAFEARRAYBOUND {
  DWORD cElements;
  LONG lLbound;
};

// The head of a block of tagged values. The bounds stand with the last dimension first, the elements with the first dimension
// running fastest. While it is locked it can't be destroyed.
struct SAFEARRAY {
  WORD cDims;
  WORD fFeatures;
  DWORD cbElements;
  DWORD cLocks;
  void * pvData;
  SAFEARRAYBOUND rgsabound[1];  // cDims of them
};
inline constexpr WORD FADF_VARIANT = 0x0800;

struct tagVARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    CY cyVal;  // none is wider: what clears the first member clears them all
    int8_t cVal;
    BYTE bVal;
    int16_t iVal;
    WORD uiVal;
    LONG lVal;
    DWORD ulVal;
    int intVal;
    UINT uintVal;
    float fltVal;
    double dblVal;
    DATE date;
    VARIANT_BOOL boolVal;
    HRESULT scode;
    BSTR bstrVal;
    IUnknown * punkVal;
    IDispatch * pdispVal;
    SAFEARRAY * parray;
    tagVARIANT * pvarVal;
    void * byref;
  };
};
using VARIANT = tagVARIANT;
using VARIANTARG = tagVARIANT;

// The arguments of a call, the last first; the named ones in front of the others, with their ids.
struct tagDISPPARAMS {
  VARIANTARG * rgvarg;
  DISPID * rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};
using DISPPARAMS = tagDISPPARAMS;

// What a server tells with DISP_E_EXCEPTION. The three texts belong to the caller. A filler that is set is called before the
// record is read.
struct tagEXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  void * pvReserved;
  HRESULT (*pfnDeferredFillIn)(tagEXCEPINFO * record);
  HRESULT scode;
};
using EXCEPINFO = tagEXCEPINFO;

// Texts that the caller frees; null when memory has run out, and for a null text. SysAllocStringLen of null gives zeroes.
ZP_API BSTR SysAllocString(char16_t const * text);
ZP_API BSTR SysAllocStringLen(char16_t const * text, UINT length);
ZP_API void SysFreeString(BSTR text);
ZP_API UINT SysStringLen(BSTR text);  // characters; 0 for null

// A variant is initialised before its first use; clearing frees the text, the block or the reference that it holds and leaves it
// empty. A copy has a text, a block or a reference of its own; on failure the target keeps its value. What VT_BYREF leads to is
// neither copied nor freed. An unknown type is DISP_E_BADVARTYPE.
ZP_API void VariantInit(VARIANTARG * value);
ZP_API HRESULT VariantClear(VARIANTARG * value);
ZP_API HRESULT VariantCopy(VARIANTARG * to, VARIANTARG const * from);

inline constexpr WORD VARIANT_NOVALUEPROP = 1;  // an object isn't asked for its default property
inline constexpr WORD VARIANT_ALPHABOOL = 2;    // Booleans as "True" and "False", not "-1" and "0"

// Gives to the value of from, changed to type; both may be one. On failure to is unchanged.
// - Into integers and currency numbers are rounded, halves to the even neighbour; out of range is DISP_E_OVERFLOW.
// - An empty value is 0, FALSE or an empty text; VT_NULL and VT_ERROR change into nothing: DISP_E_TYPEMISMATCH.
// - The text of a number has up to 15 digits (7 of a VT_R4), a point, and an exponent as in "1E+20", whatever the locale.
//   That of a date is "MM/DD/YYYY HH:MM:SS", without the part that is nothing.
// - Texts of numbers and of Booleans change into numbers and Booleans, other texts don't: DISP_E_TYPEMISMATCH. TRUE is -1.
// - An object gives its default property (DISPID_VALUE), or its other interface.
ZP_API HRESULT VariantChangeType(VARIANTARG * to, VARIANTARG const * from, WORD flags, VARTYPE type);

// Blocks of VARIANT, the only element type there is: null for others, for no dimension, an empty one, one whose last index is
// beyond a LONG, and when memory has run out. Bounds are given with the first dimension first, and dimensions count from 1.
// Destroying clears the elements.
ZP_API SAFEARRAY * SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND const * bounds);
ZP_API HRESULT SafeArrayDestroy(SAFEARRAY * block);  // DISP_E_ARRAYISLOCKED while it is being accessed
ZP_API HRESULT SafeArrayCopy(SAFEARRAY * block, SAFEARRAY ** copy);
ZP_API UINT SafeArrayGetDim(SAFEARRAY const * block);
ZP_API HRESULT SafeArrayGetLBound(SAFEARRAY const * block, UINT dimension, LONG * bound);
ZP_API HRESULT SafeArrayGetUBound(SAFEARRAY const * block, UINT dimension, LONG * bound);
ZP_API HRESULT SafeArrayAccessData(SAFEARRAY * block, void ** data);  // locks it
ZP_API HRESULT SafeArrayUnaccessData(SAFEARRAY * block);

// The place of an element; indices holds one for each dimension, the first first. DISP_E_BADINDEX outside the bounds.
ZP_API HRESULT SafeArrayPtrOfIndex(SAFEARRAY const * block, LONG const * indices, void ** element);

namespace zp {

// A text of the code page as a BSTR that the caller frees, and back. Memory that runs out is std::bad_alloc.
ZP_API BSTR TextToBstr(std::string_view text);
ZP_API CString BstrToText(BSTR text);
inline std::u16string_view ViewOf(BSTR text)
{
  return {text, SysStringLen(text)};
}

// For servers: fills the record of a failure, if the caller has one, with texts of the code page; gives DISP_E_EXCEPTION.
ZP_API HRESULT TellException(EXCEPINFO * record, HRESULT code, std::string_view source, std::string_view description);

}  // namespace zp

// A variant that owns what it holds. What can't be copied or changed raises COleException with the code.
class ZP_API COleVariant : public tagVARIANT {
 public:
  COleVariant() { VariantInit(this); }
  COleVariant(COleVariant const & other) : COleVariant(static_cast<VARIANT const &>(other)) {}
  COleVariant(COleVariant && other) noexcept : tagVARIANT(other.Detach()) {}
  COleVariant(VARIANT const & value);
  explicit COleVariant(char const * text);  // a text of the code page
  explicit COleVariant(CString const & text);
  explicit COleVariant(BYTE value);
  explicit COleVariant(short value, VARTYPE type = VT_I2);  // or VT_BOOL: any but 0 is TRUE
  explicit COleVariant(int value, VARTYPE type = VT_I4);    // or VT_ERROR, VT_BOOL
  explicit COleVariant(long value, VARTYPE type = VT_I4) : COleVariant(static_cast<int>(value), type) {}
  explicit COleVariant(float value);
  explicit COleVariant(double value, VARTYPE type = VT_R8);  // or VT_DATE
  ~COleVariant() { VariantClear(this); }

  COleVariant & operator=(COleVariant const & other) { return *this = static_cast<VARIANT const &>(other); }
  COleVariant & operator=(COleVariant && other) noexcept;
  COleVariant & operator=(VARIANT const & value);
  template <class T>
  COleVariant & operator=(T const & value) requires std::is_constructible_v<COleVariant, T const &>
  {
    return *this = COleVariant(value);
  }

  void Clear() { VariantClear(this); }

  // Changes the own value, or takes over that of from, changed; on failure the value stays.
  void ChangeType(VARTYPE type, VARIANT const * from = nullptr);

  // Takes over what value owns and leaves it empty; gives it away.
  void Attach(VARIANT & value);
  VARIANT Detach();
};
