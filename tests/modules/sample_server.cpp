// A module of an automation server that knows itself as "Zephlow.Sample" and makes one kind of object, which answers the number
// of its module's objects to every call.

#include <zpbase/platform/variants.h>

namespace {

constexpr CLSID sampleClass{0x5A504C57, 0x0001, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 1}};
int g_nObjects = 0;

class Sample : public IDispatch {
 public:
  Sample() { ++g_nObjects; }
  Sample(Sample const &) = delete;
  Sample & operator=(Sample const &) = delete;
  virtual ~Sample() { --g_nObjects; }

  HRESULT QueryInterface(IID const & iid, void ** object) override
  {
    if (iid != IID_IDispatch && iid != IID_IUnknown) return E_NOINTERFACE;
    AddRef();
    *object = this;
    return S_OK;
  }
  DWORD AddRef() override { return ++m_nReferences; }
  DWORD Release() override
  {
    DWORD const left = --m_nReferences;
    if (left == 0) delete this;
    return left;
  }
  HRESULT GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(IID const &, char16_t **, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID, IID const &, LCID, WORD, DISPPARAMS *, VARIANT * result, EXCEPINFO *, UINT *) override
  {
    *result = COleVariant(g_nObjects).Detach();
    return S_OK;
  }

 private:
  DWORD m_nReferences = 1;
};

HRESULT makeSample(IUnknown ** object)
{
  *object = new Sample;
  return S_OK;
}

struct Registration {
  Registration() { zp::RegisterAutomationServer("Zephlow.Sample", sampleClass, makeSample); }
  ~Registration() { zp::UnregisterAutomationServer("Zephlow.Sample", sampleClass); }
  Registration(Registration const &) = delete;
  Registration & operator=(Registration const &) = delete;
} const registration;

}  // namespace
