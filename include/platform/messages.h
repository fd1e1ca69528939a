// Messages: one queue for each thread, its thread object, and timers of a steady clock.
//
// A queue gives posted messages in their order, then a posted quit, then timers that are due. Every thread may post to every
// window; a window's messages go to the queue of the thread that created it.
#pragma once

#include "commands.h"
#include "types.h"

class CWnd;

enum WindowMessage : UINT {
  WM_CREATE = 0x0001,  // lParam: a CREATESTRUCT; the answer -1 gives the window up
  WM_DESTROY = 0x0002,
  WM_CLOSE = 0x0010,
  WM_QUIT = 0x0012,
  WM_CTLCOLOR = 0x0019,           // lParam: an AFX_CTLCOLOR; the answer is a brush
  WM_SETCURSOR = 0x0020,          // wParam: the window under the cursor; lParam: the hit test, and the mouse message above it
  WM_WINDOWPOSCHANGING = 0x0046,  // lParam: a WINDOWPOS, as of the next
  WM_WINDOWPOSCHANGED = 0x0047,
  WM_NCPAINT = 0x0085,
  WM_KEYDOWN = 0x0100,  // wParam: the key, one of WindowKey or a capital letter or digit
  WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102,  // wParam: the character
  WM_SYSKEYDOWN = 0x0104,
  WM_SYSKEYUP = 0x0105,
  WM_SYSCHAR = 0x0106,
  WM_KEYLAST = 0x0109,
  WM_INITDIALOG = 0x0110,
  WM_COMMAND = 0x0111,  // wParam: the command in its low 16 bits, above it where it comes from; lParam: the control, or 0
  WM_TIMER = 0x0113,    // wParam: the timer's id
  WM_RBUTTONDOWN = 0x0204,
  WM_RBUTTONUP = 0x0205,
  WM_SETMESSAGESTRING = 0x0362,  // to a frame; lParam: the text of the first pane of the status bar, or wParam: its resource
  WM_INITIALUPDATE = 0x0364,     // to a frame's views, when document and frame are there
  WM_USER = 0x0400
};

enum WindowKey : UINT {
  VK_BACK = 0x08,
  VK_TAB = 0x09,
  VK_RETURN = 0x0D,
  VK_SHIFT = 0x10,
  VK_CONTROL = 0x11,
  VK_MENU = 0x12,  // Alt
  VK_ESCAPE = 0x1B,
  VK_PRIOR = 0x21,  // page up
  VK_NEXT = 0x22,
  VK_END = 0x23,
  VK_HOME = 0x24,
  VK_LEFT = 0x25,
  VK_UP = 0x26,
  VK_RIGHT = 0x27,
  VK_DOWN = 0x28
};

// The buttons that are down in wParam of a mouse message.
inline constexpr WPARAM MK_RBUTTON = 2;

struct tagMSG {
  HWND hwnd = nullptr;  // null for a message to the thread itself
  UINT message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
  DWORD time = 0;  // milliseconds of the steady clock, wrapped
};
using MSG = tagMSG;

// What a timer calls: its window, WM_TIMER, its id, the time in milliseconds.
using TIMERPROC = void (*)(HWND window, unsigned int message, unsigned int id, unsigned long time);

// The thread's object: its pump and its main window. Constructing one makes it the object of the thread that constructs it.
class ZP_API CWinThread : public CCmdTarget {
  DECLARE_DYNAMIC(CWinThread)
 public:
  CWinThread();
  ~CWinThread() override;

  // Delivers messages, with idle work while there are none, until the quit, whose exit code it gives.
  virtual int Run();

  virtual CWnd * GetMainWnd() { return m_pMainWnd; }

  // Waits for a message and delivers it; 0 if it was the quit.
  virtual BOOL PumpMessage();

  // Work for the time without messages, called with 0, 1, ...; non-zero asks for another call.
  virtual BOOL OnIdle(LONG count);

  // Non-zero if the message has been dealt with and goes no further. Asks the window that it is for, those above it, and the main
  // window.
  virtual BOOL PreTranslateMessage(MSG * message);

  CWnd * m_pMainWnd = nullptr;
};

// The calling thread's object, or null.
ZP_API CWinThread * AfxGetThread();

// The calling thread's next message, without waiting: 0 if there is none. PM_REMOVE takes it out of the queue. GetMessageA waits
// for one and takes it: 0 for the quit. DispatchMessageA delivers a message to its window or its timer's procedure.
inline constexpr UINT PM_NOREMOVE = 0;
inline constexpr UINT PM_REMOVE = 1;
ZP_API BOOL PeekMessageA(MSG * message, UINT remove);
ZP_API BOOL GetMessageA(MSG * message);
ZP_API LRESULT DispatchMessageA(MSG const * message);

// Puts a message in the queue of the window's thread, or for null in the calling thread's; 0 for a window that is gone.
ZP_API BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Ends the calling thread's pump when all its other messages are done; exitCode is the quit's wParam.
ZP_API void PostQuitMessage(int exitCode);

// A timer of the calling thread that is due every interval milliseconds, 10 at least. One of the same window and id is replaced;
// without a window a new id is given. The result is the id. What is due several times over gives one message.
ZP_API UINT SetTimer(HWND window, UINT id, UINT interval, TIMERPROC callback);
ZP_API BOOL KillTimer(HWND window, UINT id);

// The id, from 0xC000 to 0xFFFF, of a message named by a string, which counts byte for byte. It follows from the string alone, so
// that every process gives the same; only a string that meets the id of one registered before it in its process has the next free
// one there. 0 for an empty string, one of more than 255 characters, and when all ids are taken.
ZP_API UINT RegisterWindowMessageA(char const * name);

namespace zp {

// Waits until a message has been posted to the calling thread or one of its timers is due, at most that many milliseconds. Timers
// don't count while a quit is pending, which goes before them.
ZP_API void WaitForMessage(int milliseconds);

}  // namespace zp
