// The table of windows, for all threads: handles are numbers that are counted up and never used again.

#include "platform/windows/window_table_internal.h"

#include <mutex>
#include <unordered_map>

namespace zp {
namespace {

struct Entry {
  CWnd * window;
  std::shared_ptr<MessageQueue> queue;
};

struct Table {
  std::mutex mutex;
  std::unordered_map<HWND, Entry> windows;
  uintptr_t last = 0x10000;
};

// Never destroyed: windows of static life outlast it otherwise.
Table & table()
{
  static Table & windows = *new Table;
  return windows;
}

}  // namespace

HWND AddWindow(CWnd & window, std::shared_ptr<MessageQueue> queue)
{
  std::lock_guard const lock(table().mutex);
  auto * const handle = reinterpret_cast<HWND>(++table().last);
  table().windows.emplace(handle, Entry{&window, std::move(queue)});
  return handle;
}

void RemoveWindow(HWND handle)
{
  std::lock_guard const lock(table().mutex);
  table().windows.erase(handle);
}

CWnd * FindWindowObject(HWND handle)
{
  std::lock_guard const lock(table().mutex);
  auto const found = table().windows.find(handle);
  return found != table().windows.end() ? found->second.window : nullptr;
}

std::shared_ptr<MessageQueue> FindWindowQueue(HWND handle)
{
  std::lock_guard const lock(table().mutex);
  auto const found = table().windows.find(handle);
  return found != table().windows.end() ? found->second.queue : nullptr;
}

}  // namespace zp
