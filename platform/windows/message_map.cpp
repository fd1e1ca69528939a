// CCmdTarget: finding a message's handler in the maps of a class and its bases.

#include <zpbase/platform/windows.h>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

namespace {

constexpr AFX_MSGMAP rootMap{nullptr, {}};

bool takes(AFX_MSGMAP_ENTRY const & entry, UINT message, WPARAM wParam)
{
  if (entry.nMessage != message) return false;
  auto const id = static_cast<UINT>(wParam & 0xFFFF);
  return message != WM_COMMAND || (id >= entry.nID && id <= entry.nLastID);
}

}  // namespace

AFX_MSGMAP const * CCmdTarget::GetThisMessageMap()
{
  return &rootMap;
}

AFX_MSGMAP const * CCmdTarget::GetMessageMap() const
{
  return GetThisMessageMap();
}

bool CCmdTarget::CallHandler(UINT message, WPARAM wParam, LPARAM lParam, LRESULT & answer)
{
  for (AFX_MSGMAP const * map = GetMessageMap(); map != nullptr;
       map = map->pfnGetBaseMap != nullptr ? map->pfnGetBaseMap() : nullptr) {
    for (AFX_MSGMAP_ENTRY const & entry : map->entries) {
      if (!takes(entry, message, wParam)) continue;
      answer = entry.pHandler(*this, wParam, lParam);
      return true;
    }
  }
  return false;
}
