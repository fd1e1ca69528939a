// Makers of message map entries, one for each shape of handler:
//
//   AFX_MSGMAP const * Window::GetMessageMap() const
//   {
//     static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCreate<&Window::OnCreate>(), zp::OnCommand<&Window::OnStop>(990)};
//     static constexpr AFX_MSGMAP map{&CWnd::GetThisMessageMap, entries};
//     return &map;
//   }
#pragma once

#include "commands.h"
#include "messages.h"
#include "windows.h"

namespace zp {

template <class Member>
struct HandlerOf;

template <class Target, class Result, class... Args>
struct HandlerOf<Result (Target::*)(Args...)> {
  using Class = Target;
};

template <auto handler>
typename HandlerOf<decltype(handler)>::Class & TargetOf(CCmdTarget & target)
{
  return static_cast<typename HandlerOf<decltype(handler)>::Class &>(target);
}

// LRESULT (WPARAM, LPARAM)
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnMessage(UINT message)
{
  return {message, 0, 0, [](CCmdTarget & target, WPARAM wParam, LPARAM lParam) -> LRESULT {
            return (TargetOf<handler>(target).*handler)(wParam, lParam);
          }};
}

// void ()
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCommand(UINT first, UINT last)
{
  return {WM_COMMAND, first, last, [](CCmdTarget & target, WPARAM, LPARAM) -> LRESULT {
            (TargetOf<handler>(target).*handler)();
            return 0;
          }};
}

template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCommand(UINT id)
{
  return OnCommand<handler>(id, id);
}

// void (CCmdUI *): the update of the item that stands for the command
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnUpdateCommandUI(UINT id)
{
  constexpr UINT message = WM_COMMAND | static_cast<UINT>(CN_UPDATE_COMMAND_UI) << 16;
  return {message, id, id, [](CCmdTarget & target, WPARAM, LPARAM lParam) -> LRESULT {
            (TargetOf<handler>(target).*handler)(reinterpret_cast<CCmdUI *>(lParam));
            return 0;
          }};
}

// int (CREATESTRUCT *): -1 gives the window up
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCreate()
{
  return {WM_CREATE, 0, 0, [](CCmdTarget & target, WPARAM, LPARAM lParam) -> LRESULT {
            return (TargetOf<handler>(target).*handler)(reinterpret_cast<CREATESTRUCT *>(lParam));
          }};
}

// void (): a message without arguments, such as WM_DESTROY and WM_CLOSE
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnPlain(UINT message)
{
  return {message, 0, 0, [](CCmdTarget & target, WPARAM, LPARAM) -> LRESULT {
            (TargetOf<handler>(target).*handler)();
            return 0;
          }};
}

// BOOL (CWnd * window, UINT hitTest, UINT message): non-zero if the cursor has been set
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnSetCursor()
{
  return {WM_SETCURSOR, 0, 0, [](CCmdTarget & target, WPARAM wParam, LPARAM lParam) -> LRESULT {
            auto const words = static_cast<UINT>(lParam);
            CWnd * const window = CWnd::FromHandle(reinterpret_cast<HWND>(wParam));
            return (TargetOf<handler>(target).*handler)(window, words & 0xFFFF, words >> 16);
          }};
}

// void (WINDOWPOS *): WM_WINDOWPOSCHANGING and WM_WINDOWPOSCHANGED
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnWindowPos(UINT message)
{
  return {message, 0, 0, [](CCmdTarget & target, WPARAM, LPARAM lParam) -> LRESULT {
            (TargetOf<handler>(target).*handler)(reinterpret_cast<WINDOWPOS *>(lParam));
            return 0;
          }};
}

// HBRUSH (CDC *, CWnd *, UINT)
template <auto handler>
constexpr AFX_MSGMAP_ENTRY OnCtlColor()
{
  return {
      WM_CTLCOLOR, 0, 0, [](CCmdTarget & target, WPARAM, LPARAM lParam) -> LRESULT {
        auto const & question = *reinterpret_cast<AFX_CTLCOLOR const *>(lParam);
        return reinterpret_cast<LRESULT>((TargetOf<handler>(target).*handler)(question.pDC, question.pWnd, question.nCtlType));
      }};
}

}  // namespace zp
