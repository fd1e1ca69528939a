// The registered modules of dialog templates; our stand-in for the application's module stands at their end.

#include <zpbase/platform/windows.h>

#include <algorithm>

#include "platform/resources/resources_internal.h"
#include "platform/windows/dialog_internal.h"

namespace {

zp::ModuleList<zp::FindDialogTemplate> & modules()
{
  static zp::ModuleList<zp::FindDialogTemplate> registered;
  return registered;
}

}  // namespace

namespace zp {

void RegisterTemplateModule(FindDialogTemplate find)
{
  modules().Register(find);
}

void UnregisterTemplateModule(FindDialogTemplate find)
{
  modules().Unregister(find);
}

DialogTemplate const * FindTemplate(UINT id)
{
  if (DialogTemplate const * const found = modules().Ask(id); found != nullptr) return found;
  auto const * const end = applicationTemplates + applicationTemplateCount;
  auto const * const found =
      std::find_if(applicationTemplates, end, [id](DialogTemplate const & candidate) { return candidate.id == id; });
  return found != end ? found : nullptr;
}

}  // namespace zp
