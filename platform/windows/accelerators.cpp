// Accelerators: from a key's message to a command, with the state of the shift keys.

#include <zpbase/platform/input.h>

#include <algorithm>
#include <utility>

#include <zpbase/platform/windows.h>

#include "platform/windows/key_state_internal.h"

namespace {

constexpr std::pair<UINT, BYTE> shiftKeys[] = {{VK_SHIFT, FSHIFT}, {VK_CONTROL, FCONTROL}, {VK_MENU, FALT}};
constexpr BYTE shiftMask = FSHIFT | FCONTROL | FALT;

thread_local BYTE t_nDown = 0;  // of AcceleratorFlag

BYTE flagOf(WPARAM key)
{
  auto const * const found =
      std::find_if(std::begin(shiftKeys), std::end(shiftKeys), [key](auto const & row) { return row.first == key; });
  return found != std::end(shiftKeys) ? found->second : BYTE{0};
}

bool fits(ACCEL const & key, MSG const & message)
{
  if (key.key != message.wParam) return false;
  bool const press = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
  if ((key.fVirt & FVIRTKEY) != 0) return press && (key.fVirt & shiftMask) == t_nDown;
  return message.message == ((key.fVirt & FALT) != 0 ? WM_SYSCHAR : WM_CHAR);
}

}  // namespace

namespace zp {

void NoteKey(MSG const & message)
{
  if (message.message < WM_KEYDOWN || message.message > WM_SYSKEYUP) return;
  BYTE const flag = flagOf(message.wParam);
  if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) t_nDown |= flag;
  if (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) t_nDown &= static_cast<BYTE>(~flag);
}

}  // namespace zp

short GetKeyState(UINT key)
{
  return (t_nDown & flagOf(key)) != 0 ? short{-128} : short{0};
}

int TranslateAcceleratorA(HWND window, HACCEL table, MSG const * message)
{
  CWnd * const target = CWnd::FromHandle(window);
  if (target == nullptr || table == nullptr) return 0;
  auto const found = std::find_if(table->keys.begin(), table->keys.end(), [&](ACCEL const & key) { return fits(key, *message); });
  if (found == table->keys.end()) return 0;
  constexpr WPARAM fromAccelerator = 0x10000;
  if (target->IsWindowEnabled()) target->SendMessage(WM_COMMAND, found->cmd | fromAccelerator);
  return 1;
}
