// What every object that a server hands out has in common: counting, members by number and by name, and failures told in the
// published way, whatever was raised.
#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include <zpbase/platform/automation.h>
#include <zpbase/platform/variants.h>

#include "servers/common/model.h"

namespace servers {

// A late-bound call: its arguments, counted from the first one, and the place of its result.
class Call {
 public:
  Call(DISPPARAMS const & params, VARIANT * result) : m_Params(params), m_pResult(result) {}

  // Arguments that are left out, or marked as missing, don't count.
  bool Has(UINT index) const;
  VARIANT const & Get(UINT index) const;  // DISP_E_BADPARAMCOUNT as Failure if it isn't there
  bool GetFlag(UINT index) const;
  std::u16string GetText(UINT index) const;
  size_t GetIndex(UINT index, size_t count) const;  // from 1 in the call, from 0 here; DISP_E_BADINDEX beyond count

  // Takes the value over.
  void Return(VARIANT value);
  void Return(IDispatch * object);  // with its reference
  void ReturnNumber(uint64_t number);
  void ReturnText(std::u16string_view text);

 private:
  DISPPARAMS const & m_Params;
  VARIANT * m_pResult;
};

class DispatchObject : public IDispatch {
 public:
  explicit DispatchObject(std::shared_ptr<Spreadsheet> spreadsheet) : m_pSpreadsheet(std::move(spreadsheet)) {}
  DispatchObject(DispatchObject const &) = delete;
  DispatchObject & operator=(DispatchObject const &) = delete;

  HRESULT QueryInterface(IID const & iid, void ** object) final;
  DWORD AddRef() final { return ++m_nReferences; }
  DWORD Release() final;
  HRESULT GetTypeInfoCount(UINT * count) final;
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo **) final { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(IID const & reserved, char16_t ** names, UINT count, LCID locale, DISPID * ids) final;
  HRESULT Invoke(DISPID id, IID const & reserved, LCID locale, WORD flags, tagDISPPARAMS * params, tagVARIANT * result,
                 tagEXCEPINFO * exception, UINT * badArgument) final;

 protected:
  virtual ~DispatchObject() = default;

  std::shared_ptr<Spreadsheet> const & GetSpreadsheet() const { return m_pSpreadsheet; }

  virtual bool CallMember(DISPID id, WORD flags, Call & call) = 0;  // false if there is none
  virtual DISPID FindMember(std::u16string_view name) const = 0;

  // Whether what the object belongs to is no more; asked after a call that failed.
  virtual bool HasGone() const { return false; }

 private:
  HRESULT TellCurrent(EXCEPINFO * record) const;

  std::atomic<DWORD> m_nReferences = 1;
  std::shared_ptr<Spreadsheet> m_pSpreadsheet;
};

// A row of a class's table of members.
template <class Self>
struct Member {
  DISPID id;
  std::u16string_view name;
  WORD flags;
  void (Self::*handler)(Call & call);
  bool isReading = false;  // only looks at cells
};

bool IsSameName(std::u16string_view one, std::u16string_view other);  // without the case of ASCII letters

// A class with a table of members: Self::Members().
template <class Self>
class ObjectOf : public DispatchObject {
 public:
  using DispatchObject::DispatchObject;

 private:
  bool CallMember(DISPID id, WORD flags, Call & call) final
  {
    for (Member<Self> const & member : Self::Members()) {
      if (member.id != id || (member.flags & flags) == 0) continue;
      GetSpreadsheet()->Enter(member.isReading);
      (static_cast<Self *>(this)->*member.handler)(call);
      return true;
    }
    return false;
  }

  DISPID FindMember(std::u16string_view name) const final
  {
    for (Member<Self> const & member : Self::Members())
      if (IsSameName(member.name, name)) return member.id;
    return DISPID_UNKNOWN;
  }
};

// One over a part of a workbook, with which it goes.
template <class Self, class Model>
class ObjectOver : public ObjectOf<Self> {
 public:
  ObjectOver(std::shared_ptr<Spreadsheet> spreadsheet, std::shared_ptr<Model> model)
      : ObjectOf<Self>(std::move(spreadsheet)), m_pModel(std::move(model))
  {
  }

 protected:
  bool HasGone() const final { return m_pModel->HasGone(); }

  std::shared_ptr<Model> m_pModel;
};

}  // namespace servers
