// CControlBar and CToolBar: a bar's two styles and its buttons.

#include <zpbase/platform/bars.h>

#include "platform/windows/bar_resources_internal.h"

IMPLEMENT_DYNAMIC(CControlBar, CWnd)
IMPLEMENT_DYNAMIC(CToolBar, CControlBar)

BOOL CToolBar::Create(CWnd * parent, DWORD style, UINT id)
{
  if (GetSafeHwnd() != nullptr) return FALSE;
  SetBarStyle(style);
  return CWnd::Create("", style & ~DWORD{CBRS_ALL}, parent, id);
}

BOOL CToolBar::LoadToolBar(UINT id)
{
  ToolBarResource const * const found = zp::FindToolBarResource(id);
  if (found == nullptr) return FALSE;
  m_Buttons.assign(found->buttons.begin(), found->buttons.end());
  return TRUE;
}

UINT CToolBar::GetItemID(int index) const
{
  return index >= 0 && index < GetCount() ? m_Buttons[static_cast<size_t>(index)] : 0;
}
