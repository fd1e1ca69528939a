// CCmdTarget as an automation object: the interface that it shows, and the maps that answer it.

#include <zpbase/platform/automation.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <zpbase/platform/commands.h>

namespace {

constexpr AFX_DISPMAP rootDispatchMap{nullptr, {}};
constexpr AFX_INTERFACEMAP_ENTRY rootInterfaces[] = {{&IID_IDispatch, &zp::DispatchInterfaceOf},
                                                     {&IID_IUnknown, &zp::DispatchInterfaceOf}};
constexpr AFX_INTERFACEMAP rootInterfaceMap{nullptr, rootInterfaces};

char16_t lower(char16_t c)
{
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

bool sameName(std::u16string_view a, std::u16string_view b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) { return lower(x) == lower(y); });
}

// The first entry of a map or its bases that fits, or null.
template <class Map, class Fits>
auto findEntry(Map const * map, Fits const & fits) -> decltype(map->entries.data())
{
  for (; map != nullptr; map = map->pfnGetBaseMap != nullptr ? map->pfnGetBaseMap() : nullptr)
    for (auto const & entry : map->entries)
      if (fits(entry)) return &entry;
  return nullptr;
}

}  // namespace

namespace zp {

// The interface that holders of a target have in their hands. It counts one reference for its target, and outlives the target as
// long as others hold it.
class AutomationPart : public IDispatch {
 public:
  explicit AutomationPart(CCmdTarget & target) : m_pTarget(&target) {}
  AutomationPart(AutomationPart const &) = delete;
  AutomationPart & operator=(AutomationPart const &) = delete;
  virtual ~AutomationPart() = default;

  void Disconnect()
  {
    m_pTarget = nullptr;
    AutomationPart::Release();
  }

  HRESULT QueryInterface(IID const & iid, void ** object) override;
  DWORD AddRef() override { return ++m_nReferences; }
  DWORD Release() override
  {
    DWORD const left = --m_nReferences;
    if (left == 0) delete this;
    return left;
  }

  HRESULT GetTypeInfoCount(UINT * count) override;
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo ** info) override;
  HRESULT GetIDsOfNames(IID const &, char16_t ** names, UINT count, LCID, DISPID * ids) override;
  HRESULT Invoke(DISPID id, IID const &, LCID, WORD flags, tagDISPPARAMS * params, tagVARIANT * result, tagEXCEPINFO *,
                 UINT *) override;

 private:
  CCmdTarget * m_pTarget;
  DWORD m_nReferences = 1;
};

HRESULT AutomationPart::QueryInterface(IID const & iid, void ** object)
{
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (m_pTarget == nullptr) return CO_E_OBJNOTCONNECTED;
  auto const * const entry = findEntry(m_pTarget->GetInterfaceMap(), [&](auto const & row) { return *row.piid == iid; });
  if (entry == nullptr) return E_NOINTERFACE;
  IUnknown * const found = entry->pGetInterface(*m_pTarget);
  found->AddRef();
  *object = found;
  return S_OK;
}

HRESULT AutomationPart::GetTypeInfoCount(UINT * count)
{
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT AutomationPart::GetTypeInfo(UINT, LCID, ITypeInfo ** info)
{
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

// Only a member's own name is known, which comes first; behind it stand names of arguments.
HRESULT AutomationPart::GetIDsOfNames(IID const &, char16_t ** names, UINT count, LCID, DISPID * ids)
{
  if (m_pTarget == nullptr) return CO_E_OBJNOTCONNECTED;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  if (names[0] == nullptr) return E_POINTER;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  auto const * const entry =
      findEntry(m_pTarget->GetDispatchMap(), [&](auto const & row) { return sameName(row.pName, names[0]); });
  if (entry == nullptr) return DISP_E_UNKNOWNNAME;
  ids[0] = entry->nID;
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT AutomationPart::Invoke(DISPID id, IID const &, LCID, WORD flags, tagDISPPARAMS * params, tagVARIANT * result,
                               tagEXCEPINFO *, UINT *)
{
  if (m_pTarget == nullptr) return CO_E_OBJNOTCONNECTED;
  auto const * const entry = findEntry(m_pTarget->GetDispatchMap(), [&](auto const & row) { return row.nID == id; });
  return entry != nullptr ? entry->pHandler(*m_pTarget, flags, params, result) : DISP_E_MEMBERNOTFOUND;
}

IUnknown * DispatchInterfaceOf(CCmdTarget & target)
{
  return target.GetIDispatch(FALSE);
}

}  // namespace zp

CCmdTarget::CCmdTarget() = default;

CCmdTarget::~CCmdTarget()
{
  if (m_pAutomation != nullptr) m_pAutomation->Disconnect();
}

void CCmdTarget::EnableAutomation()
{
  if (m_pAutomation == nullptr) m_pAutomation = new zp::AutomationPart(*this);
}

IDispatch * CCmdTarget::GetIDispatch(BOOL addRef)
{
  if (m_pAutomation != nullptr && addRef) m_pAutomation->AddRef();
  return m_pAutomation;
}

AFX_DISPMAP const * CCmdTarget::GetThisDispatchMap()
{
  return &rootDispatchMap;
}

AFX_DISPMAP const * CCmdTarget::GetDispatchMap() const
{
  return GetThisDispatchMap();
}

AFX_INTERFACEMAP const * CCmdTarget::GetThisInterfaceMap()
{
  return &rootInterfaceMap;
}

AFX_INTERFACEMAP const * CCmdTarget::GetInterfaceMap() const
{
  return GetThisInterfaceMap();
}
