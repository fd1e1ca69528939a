// The table of windows: which object and which thread's queue a handle leads to.

#pragma once

#include <memory>

#include <zpbase/platform/windows.h>

namespace zp {

class MessageQueue;

HWND AddWindow(CWnd & window, std::shared_ptr<MessageQueue> queue);
void RemoveWindow(HWND handle);
CWnd * FindWindowObject(HWND handle);
std::shared_ptr<MessageQueue> FindWindowQueue(HWND handle);  // null for a window that is gone

}  // namespace zp
