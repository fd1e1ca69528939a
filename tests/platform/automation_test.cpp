// Servers: the tables of those known and of their running objects, and modules that are found by identifier.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <utility>

#include <zpbase/platform/automation.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/variants.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr CLSID someClass{1, 2, 3, {4}};
constexpr CLSID otherClass{2, 2, 3, {4}};

HRESULT refuse(IUnknown **)
{
  return E_FAIL;
}

LONG codeOf(char const * progId)
{
  COleException problem;
  COleDispatchDriver driver;
  BOOL const made = driver.CreateDispatch(progId, &problem);
  EXPECT_EQ(made != FALSE, problem.m_sc == S_OK);
  return problem.m_sc;
}

// Gives each call's last argument back.
struct Echo final : IDispatch {
  HRESULT QueryInterface(IID const &, void ** object) override
  {
    *object = this;
    return AddRef(), S_OK;
  }
  DWORD AddRef() override { return ++m_nCount; }
  DWORD Release() override { return --m_nCount; }
  HRESULT GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(IID const &, char16_t **, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
  HRESULT Invoke(DISPID, IID const &, LCID, WORD, DISPPARAMS * params, VARIANT * result, EXCEPINFO *, UINT *) override
  {
    return VariantCopy(result, params->rgvarg);
  }
  DWORD m_nCount = 1;
};

template <class Result, class Argument>
Result echoed(COleDispatchDriver & driver, BYTE kind, Argument argument, VARTYPE type)
{
  BYTE const parameters[] = {kind, 0};
  Result result{};
  driver.InvokeHelper(7, DISPATCH_METHOD, type, &result, parameters, argument);
  return result;
}

TEST(DispatchDriver, PassesAndGivesEveryKind)
{
  Echo echo;
  COleDispatchDriver driver(&echo, FALSE);
  EXPECT_EQ(echoed<BYTE>(driver, VT_UI1, 200, VT_UI1), 200);
  EXPECT_EQ(echoed<short>(driver, VT_I2, -5, VT_I2), -5);
  EXPECT_EQ(echoed<short>(driver, VT_BOOL, 7, VT_BOOL), VARIANT_TRUE);
  EXPECT_EQ(echoed<int>(driver, VT_I4, -70000, VT_I4), -70000);
  EXPECT_EQ(echoed<int>(driver, VT_ERROR, 9, VT_ERROR), 9);
  EXPECT_EQ(echoed<float>(driver, VT_R4, 1.5, VT_R4), 1.5F);
  EXPECT_EQ(echoed<double>(driver, VT_R8, -2.5, VT_R8), -2.5);
  EXPECT_EQ(echoed<double>(driver, VT_DATE, 3.0, VT_DATE), 3.0);
  EXPECT_EQ(echoed<CY>(driver, VT_R8, 1.25, VT_CY).int64, 12500);
  EXPECT_EQ(echoed<CString>(driver, VT_BSTR, u"wide", VT_BSTR), "wide");
  EXPECT_EQ(echoed<CString>(driver, VT_BSTR, static_cast<char16_t const *>(nullptr), VT_BSTR), "");
  EXPECT_EQ(echoed<CString>(driver, VT_BSTRA, "narrow", VT_BSTR), "narrow");
  COleVariant const number(4.5);
  EXPECT_EQ(echoed<double>(driver, VT_VARIANT, static_cast<VARIANT const *>(&number), VT_R8), 4.5);
  EXPECT_EQ(echoed<VARIANT>(driver, VT_I2, 3, VT_VARIANT).iVal, 3);
  EXPECT_EQ(echoed<IDispatch *>(driver, VT_DISPATCH, static_cast<IDispatch *>(&echo), VT_DISPATCH), &echo);
  EXPECT_EQ(echoed<IUnknown *>(driver, VT_UNKNOWN, static_cast<IUnknown *>(&echo), VT_UNKNOWN), &echo);
  EXPECT_EQ(echoed<IDispatch *>(driver, VT_UNKNOWN, static_cast<IUnknown *>(&echo), VT_DISPATCH), &echo);
  EXPECT_EQ(echo.m_nCount, 4U) << "what is given is held";
  for (auto const & [kind, type] : {std::pair(BYTE{VT_CY}, VT_I4), std::pair(BYTE{VT_I2}, VARTYPE{99})}) {
    int const code = CodeOf<COleException>([&driver, k = kind, t = type] { echoed<int>(driver, k, 1, t); });
    EXPECT_EQ(code, DISP_E_BADVARTYPE);
  }
}

TEST(AutomationServers, TheFirstKeepsAnIdentifierAndAClass)
{
  EXPECT_EQ(zp::RegisterAutomationServer("Some.Server", someClass, refuse), 1);
  EXPECT_EQ(zp::RegisterAutomationServer("SOME.server", otherClass, refuse), 0);
  EXPECT_EQ(zp::RegisterAutomationServer("Other.Server", someClass, refuse), 0);
  CLSID id;
  EXPECT_EQ(CLSIDFromProgID(u"some.SERVER", &id), S_OK);
  EXPECT_EQ(id, someClass);
  EXPECT_EQ(codeOf("Some.Server"), E_FAIL);
  zp::UnregisterAutomationServer("Some.Server", otherClass);
  EXPECT_EQ(codeOf("Some.Server"), E_FAIL);
  zp::UnregisterAutomationServer("Some.Server", someClass);
  EXPECT_EQ(codeOf("Some.Server"), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(u"Some.Server", &id), CO_E_CLASSSTRING);
  EXPECT_EQ(id, IID_NULL);
  void * object = &id;
  EXPECT_EQ(CoCreateInstance(someClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(object, nullptr);
}

TEST(AutomationServers, AreNoModulesOfAnyOtherKind)
{
  TempFolder folder;
  setenv("ZP_SERVERS", folder.Path().c_str(), 1);
  folder.Write("Text.so", "no module");
  mkdir((folder.Path() / "Folder.so").c_str(), 0700);
  mkfifo((folder.Path() / "Pipe.so").c_str(), 0600);  // would be waited for
  for (char const * none : {"Text", "Folder", "Pipe"}) EXPECT_EQ(zp::LoadAutomationServer(none), 0) << none;
  unsetenv("ZP_SERVERS");
}

TEST(AutomationServers, AreLoadedByTheirIdentifierAndTellTheirRunningObjects)
{
  setenv("ZP_SERVERS", ZP_BINARY_DIR "/tests/servers", 1);
  for (char const * none : {"", "Zephlow.None", "../servers/Zephlow.Sample", ".Zephlow"})
    EXPECT_EQ(zp::LoadAutomationServer(none), 0) << none;
  CString const file = FromHostPath(ZP_BINARY_DIR "/tests/servers/Zephlow.Sample.so");
  HINSTANCE const module = AfxLoadLibrary(file);
  ASSERT_NE(module, nullptr);
  char path[1024];
  GetModuleFileName(module, path, sizeof path);
  EXPECT_EQ(CString(path), file);
  EXPECT_EQ(codeOf("Zephlow.Sample"), S_OK);
  EXPECT_TRUE(AfxFreeLibrary(module));  // the static object has taken the server off
  unsetenv("ZP_SERVERS");
  EXPECT_EQ(codeOf("Zephlow.Sample"), CO_E_CLASSSTRING);
  setenv("ZP_SERVERS", ZP_BINARY_DIR "/tests/servers", 1);

  COleDispatchDriver sample;
  ASSERT_TRUE(sample.CreateDispatch("Zephlow.Sample"));
  auto const objects = [&sample] {
    LONG count = 0;
    sample.InvokeHelper(1, DISPATCH_PROPERTYGET, VT_I4, &count, nullptr);
    return count;
  };
  EXPECT_EQ(objects(), 1);
  DWORD registration = 0;
  COleDispatchDriver second;
  ASSERT_TRUE(second.CreateDispatch("Zephlow.Sample"));
  EXPECT_EQ(RegisterActiveObject(second.m_lpDispatch, someClass, ACTIVEOBJECT_STRONG, &registration), S_OK);
  second.ReleaseDispatch();
  EXPECT_EQ(objects(), 2);
  IUnknown * active = nullptr;
  EXPECT_EQ(GetActiveObject(otherClass, nullptr, &active), MK_E_UNAVAILABLE);
  ASSERT_EQ(GetActiveObject(someClass, nullptr, &active), S_OK);
  EXPECT_EQ(RevokeActiveObject(registration, nullptr), S_OK);
  EXPECT_EQ(RevokeActiveObject(registration, nullptr), E_INVALIDARG);
  EXPECT_EQ(objects(), 2);
  active->Release();
  EXPECT_EQ(objects(), 1);
  unsetenv("ZP_SERVERS");
}

}  // namespace
