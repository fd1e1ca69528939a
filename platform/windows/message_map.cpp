// CCmdTarget: finding a message's or a command's handler in the maps of a class and its bases; CCmdUI: the state of an item.

#include <zpbase/platform/commands.h>

#include <zpbase/platform/messages.h>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

namespace {

constexpr AFX_MSGMAP rootMap{nullptr, {}};
constexpr UINT lowWord = 0xFFFF;

bool takes(AFX_MSGMAP_ENTRY const & entry, UINT message, WPARAM wParam)
{
  if (entry.nMessage != message) return false;
  auto const id = static_cast<UINT>(wParam & lowWord);
  return (message & lowWord) != WM_COMMAND || (id >= entry.nID && id <= entry.nLastID);
}

// Codes stand in the high word of an entry's message, where a notification 0xFFFF would pass for an update.
bool isCode(int code)
{
  return code == CN_UPDATE_COMMAND_UI || (code >= 0 && static_cast<UINT>(code) < lowWord);
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

AFX_MSGMAP_ENTRY const * CCmdTarget::FindEntry(UINT message, WPARAM wParam) const
{
  for (AFX_MSGMAP const * map = GetMessageMap(); map != nullptr;
       map = map->pfnGetBaseMap != nullptr ? map->pfnGetBaseMap() : nullptr) {
    for (AFX_MSGMAP_ENTRY const & entry : map->entries)
      if (takes(entry, message, wParam)) return &entry;
  }
  return nullptr;
}

bool CCmdTarget::CallHandler(UINT message, WPARAM wParam, LPARAM lParam, LRESULT & answer)
{
  if (message > lowWord) return false;  // would pass for a command with a code
  AFX_MSGMAP_ENTRY const * const entry = FindEntry(message, wParam);
  if (entry == nullptr) return false;
  answer = entry->pHandler(*this, wParam, lParam);
  return true;
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info)
{
  if (!isCode(code)) return FALSE;
  AFX_MSGMAP_ENTRY const * const entry = FindEntry(WM_COMMAND | static_cast<UINT>(code) << 16, id);
  if (entry == nullptr) return FALSE;
  if (info != nullptr)
    *info = {this, entry};
  else
    entry->pHandler(*this, id, reinterpret_cast<LPARAM>(extra));
  return TRUE;
}

void CCmdUI::Enable(BOOL on)
{
  m_bEnableChanged = TRUE;
  m_bEnabled = on;
}

void CCmdUI::SetCheck(int check)
{
  m_nCheck = check;
}

void CCmdUI::SetText(char const * text)
{
  m_strText = text;
}

BOOL CCmdUI::DoUpdate(CCmdTarget * target, BOOL disableIfNoHandler)
{
  m_bEnableChanged = FALSE;
  BOOL const updated = target->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
  if (disableIfNoHandler && !m_bEnableChanged) {
    AFX_CMDHANDLERINFO info;
    Enable(target->OnCmdMsg(m_nID, CN_COMMAND, this, &info));
  }
  return updated;
}
