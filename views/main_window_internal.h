// The window that look-ups and commands go to.

#pragma once

#include <zpbase/platform/windows.h>

namespace zp {

// The main window of the calling thread, or null.
CWnd * GetThreadMainWindow();

}  // namespace zp
