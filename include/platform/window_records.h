// The records and constants of windows: styles, places, position changes, creation.
#pragma once

#include "drawing.h"
#include "types.h"

enum WindowStyle : DWORD { WS_OVERLAPPED = 0, WS_VISIBLE = 0x10000000, WS_CHILD = 0x40000000 };

enum ShowCommand : UINT { SW_HIDE = 0, SW_SHOWNORMAL = 1, SW_SHOWMINIMIZED = 2, SW_SHOWMAXIMIZED = 3 };

// What SetWindowPos leaves as it is.
enum WindowPosFlag : UINT { SWP_NOSIZE = 1, SWP_NOMOVE = 2, SWP_NOZORDER = 4 };

struct tagWINDOWPLACEMENT {
  UINT length;  // 44, the size of the record
  UINT flags;
  UINT showCmd;
  POINT ptMinPosition;
  POINT ptMaxPosition;
  RECT rcNormalPosition;  // on the screen, a child's in its parent
};
using WINDOWPLACEMENT = tagWINDOWPLACEMENT;
static_assert(sizeof(WINDOWPLACEMENT) == 44);

struct tagWINDOWPOS {
  HWND hwnd;
  HWND hwndInsertAfter;
  int x;
  int y;
  int cx;
  int cy;
  UINT flags;
};
using WINDOWPOS = tagWINDOWPOS;

struct tagCREATESTRUCTA {
  void * lpCreateParams;  // what the creator hands on; a frame's views get a CCreateContext
  HWND hwndParent;
  DWORD style;
  char const * lpszName;
};
using CREATESTRUCT = tagCREATESTRUCTA;

// Ids of windows that frames know.
inline constexpr UINT AFX_IDW_TOOLBAR = 0xE800;
inline constexpr UINT AFX_IDW_STATUS_BAR = 0xE801;
inline constexpr UINT AFX_IDW_PANE_FIRST = 0xE900;
