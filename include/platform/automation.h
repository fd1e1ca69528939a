// Automation: identifiers, the two root interfaces, the maps through which a command target answers them, the count that keeps an
// application alive, the tables of servers and of their running objects, and the driver that calls members late-bound. Values are
// in variants.h.
#pragma once

#include <cstdarg>
#include <functional>
#include <span>

#include "types.h"

class CCmdTarget;
class COleException;

using HRESULT = LONG;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006);
inline constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000B);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000E);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154);
inline constexpr HRESULT MK_E_UNAVAILABLE = static_cast<HRESULT>(0x800401E3);
inline constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3);
inline constexpr HRESULT CO_E_OBJNOTCONNECTED = static_cast<HRESULT>(0x800401FD);

constexpr bool SUCCEEDED(HRESULT code)
{
  return code >= 0;
}
constexpr bool FAILED(HRESULT code)
{
  return code < 0;
}

using VARTYPE = WORD;
using LCID = DWORD;
using DISPID = LONG;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;

// What a call does with a member.
inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;

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

// The class of a program identifier, compared without the case of ASCII letters; CO_E_CLASSSTRING if there is none. For an
// identifier that isn't registered the server's module is looked for once, see zp::LoadAutomationServer. "Excel.Application",
// with nothing registered for it, is the class of "Zephlow.Workbooks", the server that comes with the library.
ZP_API HRESULT CLSIDFromProgID(char16_t const * progId, CLSID * id);

// A new object of a registered class, as the interface asked for, which the caller releases. outer must be null; the context is
// this process whatever it says.
ZP_API HRESULT CoCreateInstance(CLSID const & id, IUnknown * outer, DWORD context, IID const & iid, void ** object);
inline constexpr DWORD CLSCTX_INPROC_SERVER = 1;

// The running objects. The table holds a reference to a strong entry; a weak one must be revoked before its object goes. Of
// several objects of a class the one that was registered first is the active one; whoever asks for it releases it.
// MK_E_UNAVAILABLE if there is none.
inline constexpr DWORD ACTIVEOBJECT_STRONG = 0;
inline constexpr DWORD ACTIVEOBJECT_WEAK = 1;
ZP_API HRESULT RegisterActiveObject(IUnknown * object, CLSID const & id, DWORD flags, DWORD * registration);
ZP_API HRESULT RevokeActiveObject(DWORD registration, void * reserved);
ZP_API HRESULT GetActiveObject(CLSID const & id, void * reserved, IUnknown ** object);

// Loads a module from a file, given by its inside path, and counts how often; null, and the system's error number, if it can't be
// loaded. Freeing it as often unloads it.
ZP_API HINSTANCE AfxLoadLibrary(char const * path);
ZP_API BOOL AfxFreeLibrary(HINSTANCE module);

// A link to an automation object: a counted reference, and whether it is given back. Copying shares the object.
class ZP_API COleDispatchDriver {
 public:
  COleDispatchDriver() = default;
  explicit COleDispatchDriver(IDispatch * object, BOOL autoRelease = TRUE);  // takes the reference over
  COleDispatchDriver(COleDispatchDriver const & other);
  COleDispatchDriver & operator=(COleDispatchDriver const & other);
  ~COleDispatchDriver() { ReleaseDispatch(); }

  // A new object of a class, or of a program identifier. 0 with the code in problem, if one is given, and the link as it was.
  BOOL CreateDispatch(CLSID const & id, COleException * problem = nullptr);
  BOOL CreateDispatch(char const * progId, COleException * problem = nullptr);

  // Takes a reference over; the earlier link is released. To attach the pointer that is held is harmless: a second reference to
  // it is given back, an only one stays.
  void AttachDispatch(IDispatch * object, BOOL autoRelease = TRUE);
  IDispatch * DetachDispatch();  // clears the pointer without release, and gives it
  void ReleaseDispatch();        // gives the reference back, if that was wanted, and clears the pointer

  // One late-bound call. The result goes to a slot of type: LONG for VT_I4, double, VARIANT_BOOL, IDispatch *, VARIANT, CString
  // for VT_BSTR; VT_EMPTY wants none, and the slot may be null then. parameters, null for none, has a byte for each argument,
  // ends in a zero, and tells what follows: int or long for VT_I4 and VT_BOOL, double for VT_R8, char16_t const * for VT_BSTR,
  // char const *, a text of the code page, for VT_BSTRA, IDispatch *, and VARIANT const * for VT_VARIANT. Arguments stay the
  // caller's, results become his. A failed call and a result of another type raise COleException with the code (without a link it
  // is CO_E_OBJNOTCONNECTED), what the server tells as an exception COleDispatchException; the slot is untouched then.
  void InvokeHelper(DISPID id, WORD flags, VARTYPE type, void * slot, BYTE const * parameters, ...);
  void InvokeHelperV(DISPID id, WORD flags, VARTYPE type, void * slot, BYTE const * parameters, va_list args);

  IDispatch * m_lpDispatch = nullptr;
  BOOL m_bAutoRelease = TRUE;
};

namespace zp {

// Answers with the target's dispatch interface.
ZP_API IUnknown * DispatchInterfaceOf(CCmdTarget & target);

// Makes a server known to this process: the maker gives a new object with a reference that its caller owns. 0, with the table as
// it was, if the identifier or the class has a maker already. A module unregisters before it is unloaded; unregistering something
// that isn't known so does nothing.
using MakeAutomationObject = std::function<HRESULT(IUnknown ** object)>;
ZP_API int RegisterAutomationServer(char const * progId, CLSID const & id, MakeAutomationObject maker);
ZP_API void UnregisterAutomationServer(char const * progId, CLSID const & id);

// Makes sure that a server is registered: if it isn't, loads its module, the file "<progId>.so" of the folder of servers, whose
// static objects register it. That folder is $ZP_SERVERS, else "zpbase/servers" beside the library. 0 if there is no such module,
// if it can't be loaded, or if it doesn't register the identifier; then it is unloaded again.
ZP_API int LoadAutomationServer(char const * progId);

}  // namespace zp
