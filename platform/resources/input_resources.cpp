// The registered modules of accelerators, cursors and tool bars. Our stand-in for the application's module stands behind the
// accelerators; the standard cursors are the platform's own.

#include <zpbase/platform/input.h>

#include <algorithm>

#include <zpbase/platform/application.h>
#include <zpbase/platform/bars.h>

#include "platform/resources/resources_internal.h"
#include "platform/windows/bar_resources_internal.h"

namespace {

constexpr UINT noName = 0x10000;  // names below are numbers

constexpr CursorResource standardCursors[] = {{32512, "arrow"}, {32513, "ibeam"}, {32514, "wait"}, {32515, "cross"}};

template <class Find>
zp::ModuleList<Find> & modules()
{
  static zp::ModuleList<Find> registered;
  return registered;
}

template <class Table>
auto findNumber(Table const & table, UINT id) -> decltype(&*std::begin(table))
{
  auto const found = std::find_if(std::begin(table), std::end(table), [id](auto const & row) { return row.id == id; });
  return found != std::end(table) ? &*found : nullptr;
}

}  // namespace

HACCEL LoadAcceleratorsA(HINSTANCE, char const * name)
{
  auto const number = reinterpret_cast<uintptr_t>(name);
  if (number >= noName) return nullptr;
  auto const id = static_cast<UINT>(number);
  HACCEL const found = modules<zp::FindAccelerators>().Ask(id);
  return found != nullptr ? found : findNumber(std::span(zp::applicationAccelerators, zp::applicationAcceleratorCount), id);
}

HCURSOR CWinApp::LoadCursor(UINT id) const
{
  return modules<zp::FindCursor>().Ask(id);
}

HCURSOR CWinApp::LoadStandardCursor(char const * name) const
{
  auto const number = reinterpret_cast<uintptr_t>(name);
  return number < noName ? findNumber(standardCursors, static_cast<UINT>(number)) : nullptr;
}

namespace zp {

void RegisterAcceleratorModule(FindAccelerators find)
{
  modules<FindAccelerators>().Register(find);
}

void UnregisterAcceleratorModule(FindAccelerators find)
{
  modules<FindAccelerators>().Unregister(find);
}

void RegisterCursorModule(FindCursor find)
{
  modules<FindCursor>().Register(find);
}

void UnregisterCursorModule(FindCursor find)
{
  modules<FindCursor>().Unregister(find);
}

void RegisterToolBarModule(FindToolBar find)
{
  modules<FindToolBar>().Register(find);
}

void UnregisterToolBarModule(FindToolBar find)
{
  modules<FindToolBar>().Unregister(find);
}

ToolBarResource const * FindToolBarResource(UINT id)
{
  return modules<FindToolBar>().Ask(id);
}

}  // namespace zp
