// CWnd: the life of a window, its family, focus and text, and the way of a message to its handler.

#include <zpbase/platform/message_map.h>

#include <algorithm>
#include <utility>

#include "platform/messages/message_queue_internal.h"
#include "platform/windows/window_table_internal.h"

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

namespace {

thread_local HWND t_hFocus = nullptr;
thread_local HWND t_hForeground = nullptr;

// The innermost message that the thread is handling.
class HandledMessage {
 public:
  explicit HandledMessage(MSG const & message) : m_Message(message), m_pOuter(std::exchange(t_pCurrent, &m_Message)) {}
  ~HandledMessage() { t_pCurrent = m_pOuter; }
  HandledMessage(HandledMessage const &) = delete;
  HandledMessage & operator=(HandledMessage const &) = delete;

  static MSG const & Current()
  {
    static MSG const none;
    return t_pCurrent != nullptr ? *t_pCurrent : none;
  }

 private:
  static thread_local MSG const * t_pCurrent;

  MSG m_Message;
  MSG const * m_pOuter;
};

thread_local MSG const * HandledMessage::t_pCurrent = nullptr;

}  // namespace

CWnd::~CWnd()
{
  CWnd::DestroyWindow();
}

BOOL CWnd::Create(char const * title, DWORD style, CWnd * parent, UINT id, void * param)
{
  if (m_hWnd != nullptr) return FALSE;
  if (parent != nullptr && parent->m_hWnd == nullptr) {
    PostNcDestroy();
    return FALSE;
  }
  m_hWnd = zp::AddWindow(*this, zp::GetThreadQueue());
  m_strText = title;
  m_nStyle = style;
  m_nID = id;
  m_bEnabled = TRUE;
  m_pParent = parent;
  m_Placement = {};
  m_Placement.length = sizeof m_Placement;
  m_Placement.showCmd = SW_SHOWNORMAL;
  if (parent != nullptr) parent->m_Children.push_back(this);

  CREATESTRUCT create{param, parent != nullptr ? parent->m_hWnd : nullptr, style, title};
  HWND const window = m_hWnd;
  if (SendMessage(WM_CREATE, 0, reinterpret_cast<LPARAM>(&create)) != -1) return FromHandle(window) != nullptr;
  if (FromHandle(window) != nullptr) DestroyWindow();
  return FALSE;
}

BOOL CWnd::DestroyWindow()
{
  if (m_hWnd == nullptr || m_bDestroying) return FALSE;
  m_bDestroying = TRUE;
  SendMessage(WM_DESTROY);
  while (!m_Children.empty()) m_Children.back()->DestroyWindow();
  if (m_pParent != nullptr) std::erase(m_pParent->m_Children, this);
  m_pParent = nullptr;
  if (t_hFocus == m_hWnd) t_hFocus = nullptr;
  if (t_hForeground == m_hWnd) t_hForeground = nullptr;
  if (CWinThread * const thread = AfxGetThread(); thread != nullptr && thread->m_pMainWnd == this) thread->m_pMainWnd = nullptr;
  zp::FindWindowQueue(m_hWnd)->ForgetWindow(m_hWnd);
  zp::RemoveWindow(std::exchange(m_hWnd, nullptr));
  m_bDestroying = FALSE;
  PostNcDestroy();
  return TRUE;
}

CWnd * CWnd::FromHandle(HWND window)
{
  return zp::FindWindowObject(window);
}

CWnd * CWnd::GetFocus()
{
  return FromHandle(t_hFocus);
}

CWnd * CWnd::GetForegroundWindow()
{
  return FromHandle(t_hForeground);
}

CWnd * CWnd::SetFocus()
{
  return FromHandle(std::exchange(t_hFocus, m_hWnd));
}

BOOL CWnd::SetForegroundWindow()
{
  if (m_hWnd == nullptr) return FALSE;
  t_hForeground = m_hWnd;
  return TRUE;
}

CWnd * CWnd::GetParentOwner()
{
  CWnd * window = this;
  while ((window->m_nStyle & WS_CHILD) != 0 && window->m_pParent != nullptr) window = window->m_pParent;
  return window;
}

CWnd * CWnd::GetDlgItem(int id) const
{
  auto const found = std::find_if(m_Children.begin(), m_Children.end(), [id](CWnd const * child) {
    return (child->m_nStyle & WS_CHILD) != 0 && child->GetDlgCtrlID() == id;
  });
  return found != m_Children.end() ? *found : nullptr;
}

BOOL CWnd::EnableWindow(BOOL enable)
{
  return !std::exchange(m_bEnabled, enable);
}

void CWnd::SetDlgItemText(int id, char const * text)
{
  if (CWnd * const control = GetDlgItem(id); control != nullptr) control->SetWindowText(text);
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
  return WindowProc(message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
  return m_hWnd != nullptr && PostMessageA(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PreTranslateMessage(MSG *)
{
  return FALSE;
}

BOOL CWnd::WalkPreTranslateTree(HWND stop, MSG * message)
{
  for (CWnd * window = FromHandle(message->hwnd); window != nullptr; window = window->m_pParent) {
    HWND const handle = window->m_hWnd;
    if (window->PreTranslateMessage(message)) return TRUE;
    if (handle == stop || FromHandle(handle) == nullptr) break;
  }
  return FALSE;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
  HandledMessage const handled({.hwnd = m_hWnd, .message = message, .wParam = wParam, .lParam = lParam});
  if (message == WM_COMMAND) return OnCommand(wParam, lParam) ? 1 : DefWindowProc(message, wParam, lParam);
  LRESULT answer = 0;
  return CallHandler(message, wParam, lParam, answer) ? answer : DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT, WPARAM, LPARAM)
{
  return 0;
}

LRESULT CWnd::Default()
{
  MSG const & message = HandledMessage::Current();
  return DefWindowProc(message.message, message.wParam, message.lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
  auto const id = static_cast<UINT>(wParam & 0xFFFF);
  bool const fromControl = lParam != 0;
  if (!fromControl) {
    CCmdUI item(id);
    OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &item, nullptr);
    if (!item.IsEnabled()) return TRUE;
  }
  int const code = fromControl ? static_cast<int>(wParam >> 16 & 0xFFFF) : CN_COMMAND;
  return OnCmdMsg(id, code, nullptr, nullptr);
}

int CWnd::OnCreate(CREATESTRUCT *)
{
  return static_cast<int>(Default());
}

void CWnd::OnDestroy()
{
  Default();
}

BOOL CWnd::OnSetCursor(CWnd *, UINT, UINT)
{
  return static_cast<BOOL>(Default());
}

HBRUSH CWnd::OnCtlColor(CDC *, CWnd *, UINT)
{
  return nullptr;
}

AFX_MSGMAP const * CWnd::GetThisMessageMap()
{
  static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCtlColor<&CWnd::OnCtlColor>()};
  static constexpr AFX_MSGMAP map{&CCmdTarget::GetThisMessageMap, entries};
  return &map;
}

AFX_MSGMAP const * CWnd::GetMessageMap() const
{
  return GetThisMessageMap();
}
