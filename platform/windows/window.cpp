// CWnd: the life of a window, its family, focus and text, and the way of a message to its handler.

#include <zpbase/platform/windows.h>

#include <algorithm>
#include <utility>

#include "platform/messages/message_queue_internal.h"
#include "platform/windows/window_table_internal.h"

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

namespace {

thread_local HWND t_hFocus = nullptr;
thread_local HWND t_hForeground = nullptr;

}  // namespace

CWnd::~CWnd()
{
  CWnd::DestroyWindow();
}

BOOL CWnd::Create(char const * title, DWORD style, CWnd * parent, UINT id)
{
  if (m_hWnd != nullptr || (parent != nullptr && parent->m_hWnd == nullptr)) return FALSE;
  m_hWnd = zp::AddWindow(*this, zp::GetThreadQueue());
  m_strText = title;
  m_nStyle = style;
  m_nID = id;
  m_bEnabled = TRUE;
  m_pParent = parent;
  if (parent != nullptr) parent->m_Children.push_back(this);
  return TRUE;
}

BOOL CWnd::DestroyWindow()
{
  if (m_hWnd == nullptr) return FALSE;
  while (!m_Children.empty()) m_Children.back()->DestroyWindow();
  if (m_pParent != nullptr) std::erase(m_pParent->m_Children, this);
  m_pParent = nullptr;
  if (t_hFocus == m_hWnd) t_hFocus = nullptr;
  if (t_hForeground == m_hWnd) t_hForeground = nullptr;
  zp::FindWindowQueue(m_hWnd)->ForgetWindow(m_hWnd);
  zp::RemoveWindow(std::exchange(m_hWnd, nullptr));
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

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
  LRESULT answer = 0;
  return CallHandler(message, wParam, lParam, answer) ? answer : DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT, WPARAM, LPARAM)
{
  return 0;
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
