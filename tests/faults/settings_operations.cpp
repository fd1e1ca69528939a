// Settings in a profile file and in a registry hive.

#include <cstdlib>

#include <zpbase/platform/application.h>
#include <zpbase/platform/registry.h>

#include "tests/faults/Operations.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr char const * longText = "a value that is longer than a string holds in itself";

struct Settings {
  Settings() : app("test")
  {
    setenv("ZP_USER_HIVE", (folder.Path() / "user.reg").c_str(), 1);
    setenv("ZP_DEFAULT_HIVE", (folder.Path() / "default.reg").c_str(), 1);
  }
  State Look() const
  {
    State state;
    for (char const * const name : {"test.ini", "user.reg"}) state[name] = folder.Has(name) ? folder.Read(name) : "-";
    return state;
  }

  TempFolder folder;
  CWinApp app;
};

// In a store of its own that has one setting.
Operation on(char const * name, bool inHive, std::function<void(CWinApp &)> step)
{
  auto prepare = [inHive, step] {
    auto const settings = std::make_shared<Settings>();
    if (inHive)
      settings->app.SetRegistryKey("Acme");
    else
      settings->app.SetProfileFile(settings->folder.Name("test.ini"));
    settings->app.WriteProfileString("Misc", "Key", longText);
    return Trial{[settings, step] { step(settings->app); }, [settings] { return settings->Look(); }};
  };
  Operation operation{.name = name, .prepare = prepare, .mayStandBetween = true};
  operation.leavesCache = inHive;
  return operation;
}

}  // namespace

std::vector<Operation> SettingsOperations()
{
  auto const read = [](CWinApp & app) { app.GetProfileString("Misc", "Key"); };
  auto const write = [](CWinApp & app) { app.WriteProfileString("Misc", "Other", longText); };
  auto const remove = [](CWinApp & app) { app.WriteProfileString("Misc", "Key", nullptr); };
  return {
      on("read from a profile", false, read), on("read from a hive", true, read),         on("write to a profile", false, write),
      on("write to a hive", true, write),     on("remove from a profile", false, remove), on("remove from a hive", true, remove),
  };
}
