// Servers: the tables of those known and of their running objects, and modules that are found by identifier.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include <zpbase/platform/automation.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>
#include <zpbase/platform/variants.h>

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
  setenv("ZP_SERVERS", ZP_SERVER_FOLDER, 1);
  for (char const * none : {"", "Zephlow.None", "../servers/Zephlow.Sample", ".Zephlow"})
    EXPECT_EQ(zp::LoadAutomationServer(none), 0) << none;
  CString const file = FromHostPath(ZP_SERVER_FOLDER "/Zephlow.Sample.so");
  HINSTANCE const module = AfxLoadLibrary(file);
  ASSERT_NE(module, nullptr);
  char path[1024];
  GetModuleFileName(module, path, sizeof path);
  EXPECT_EQ(CString(path), file);
  EXPECT_EQ(codeOf("Zephlow.Sample"), S_OK);
  EXPECT_TRUE(AfxFreeLibrary(module));  // the static object has taken the server off
  unsetenv("ZP_SERVERS");
  EXPECT_EQ(codeOf("Zephlow.Sample"), CO_E_CLASSSTRING);
  setenv("ZP_SERVERS", ZP_SERVER_FOLDER, 1);

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
