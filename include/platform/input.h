// Keys and the pointer: accelerators, which turn keys into commands, the state of the shift keys, and cursors. Accelerator tables
// and cursors are resources by number; the application's modules are asked first, the last registered before the others.
#pragma once

#include <span>

#include "messages.h"
#include "types.h"

// The name of a numbered resource: the number itself in a pointer, which is never to be read.
inline char const * MAKEINTRESOURCEA(UINT id)
{
  return reinterpret_cast<char const *>(static_cast<uintptr_t>(id & 0xFFFF));
}

// How an accelerator's key is meant: as a key, with these shift keys down and no others, or as a character.
enum AcceleratorFlag : BYTE { FVIRTKEY = 1, FSHIFT = 4, FCONTROL = 8, FALT = 16 };

struct tagACCEL {
  BYTE fVirt;  // of AcceleratorFlag
  WORD key;
  WORD cmd;
};
using ACCEL = tagACCEL;

struct AcceleratorTable {
  UINT id;
  std::span<ACCEL const> keys;
};
using HACCEL = AcceleratorTable const *;

struct CursorResource {
  UINT id;
  char const * name;  // for those who show cursors
};
using HCURSOR = CursorResource const *;

// The standard cursors, numbers that are no names of characters.
inline char const * const IDC_ARROW = MAKEINTRESOURCEA(32512);
inline char const * const IDC_IBEAM = MAKEINTRESOURCEA(32513);
inline char const * const IDC_WAIT = MAKEINTRESOURCEA(32514);
inline char const * const IDC_CROSS = MAKEINTRESOURCEA(32515);

// The table of that number, or null. The module doesn't matter: all are asked.
ZP_API HACCEL LoadAcceleratorsA(HINSTANCE module, char const * name);

// If the message is the press of a key or a character of the table, sends the window WM_COMMAND with the command, and 1 above it:
// non-zero. Keys of a disabled window are taken, but send nothing.
ZP_API int TranslateAcceleratorA(HWND window, HACCEL table, MSG const * message);

// Negative if that shift key (VK_SHIFT, VK_CONTROL, VK_MENU) was down when the thread's last message was taken from the queue.
ZP_API short GetKeyState(UINT key);

// Shows the thread's cursor, null for none, and gives the former one.
ZP_API HCURSOR SetCursor(HCURSOR cursor);
ZP_API HCURSOR GetCursor();

namespace zp {

using FindAccelerators = AcceleratorTable const * (*)(UINT id);
using FindCursor = CursorResource const * (*)(UINT id);

// Put a module in front of those registered before, or take it out again.
ZP_API void RegisterAcceleratorModule(FindAccelerators find);
ZP_API void UnregisterAcceleratorModule(FindAccelerators find);
ZP_API void RegisterCursorModule(FindCursor find);
ZP_API void UnregisterCursorModule(FindCursor find);

}  // namespace zp
