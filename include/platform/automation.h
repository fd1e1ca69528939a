// The least of automation that a document needs: identifiers, the two root interfaces, the maps through which a command target
// answers them, and the count that keeps an application alive.
#pragma once

#include <span>

#include "types.h"

class CCmdTarget;

using HRESULT = LONG;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000B);
inline constexpr HRESULT CO_E_OBJNOTCONNECTED = static_cast<HRESULT>(0x800401FD);

using LCID = DWORD;
using DISPID = LONG;
inline constexpr DISPID DISPID_UNKNOWN = -1;

struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  BYTE Data4[8];

  bool operator==(GUID const &) const = default;
};
using IID = GUID;
using CLSID = GUID;

inline constexpr IID IID_NULL{};
inline constexpr IID IID_IUnknown{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

struct tagDISPPARAMS;
struct tagEXCEPINFO;
struct tagVARIANT;
struct ITypeInfo;

// Counted by its holders: whoever gets one by QueryInterface releases it. The counts of AddRef and Release are for diagnosis.
struct IUnknown {
  virtual HRESULT QueryInterface(IID const & iid, void ** object) = 0;
  virtual DWORD AddRef() = 0;
  virtual DWORD Release() = 0;

 protected:
  ~IUnknown() = default;
};

// Names in 16-bit characters become numbers, and members are called by number.
struct IDispatch : IUnknown {
  virtual HRESULT GetTypeInfoCount(UINT * count) = 0;
  virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo ** info) = 0;
  virtual HRESULT GetIDsOfNames(IID const & reserved, char16_t ** names, UINT count, LCID locale, DISPID * ids) = 0;
  virtual HRESULT Invoke(DISPID id, IID const & reserved, LCID locale, WORD flags, tagDISPPARAMS * params, tagVARIANT * result,
                         tagEXCEPINFO * exception, UINT * badArgument) = 0;

 protected:
  ~IDispatch() = default;
};

// What a class of command targets offers by name, and under which identifiers beside those of the root interfaces it answers.
struct AFX_DISPMAP_ENTRY {
  char16_t const * pName;  // compared without the case of ASCII letters
  DISPID nID;
  HRESULT (*pHandler)(CCmdTarget & target, WORD flags, tagDISPPARAMS * params, tagVARIANT * result);
};

struct AFX_DISPMAP {
  AFX_DISPMAP const * (*pfnGetBaseMap)();  // null at the root
  std::span<AFX_DISPMAP_ENTRY const> entries;
};

struct AFX_INTERFACEMAP_ENTRY {
  IID const * piid;
  IUnknown * (*pGetInterface)(CCmdTarget & target);  // borrowed
};

struct AFX_INTERFACEMAP {
  AFX_INTERFACEMAP const * (*pfnGetBaseMap)();
  std::span<AFX_INTERFACEMAP_ENTRY const> entries;
};

// The count of objects for whose sake the application stays alive.
ZP_API void AfxOleLockApp();
ZP_API void AfxOleUnlockApp();
ZP_API BOOL AfxOleCanExitApp();  // TRUE while nothing is locked

namespace zp {

// Answers with the target's dispatch interface.
ZP_API IUnknown * DispatchInterfaceOf(CCmdTarget & target);

}  // namespace zp
