// The table of windows, for all threads: handles are numbers that are counted up and never used again.

#include "platform/windows/window_table_internal.h"

#include <mutex>
#include <unordered_map>

namespace zp {
namespace {

struct Entry {
  CWnd * pWindow;
  std::shared_ptr<MessageQueue> pQueue;
};

struct Table {
  std::mutex m_Mutex;
  std::unordered_map<HWND, Entry> m_Windows;
  uintptr_t m_nLast = 0x10000;
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
  std::lock_guard const lock(table().m_Mutex);
  auto * const handle = reinterpret_cast<HWND>(++table().m_nLast);
  table().m_Windows.emplace(handle, Entry{&window, std::move(queue)});
  return handle;
}

void RemoveWindow(HWND handle)
{
  std::lock_guard const lock(table().m_Mutex);
  table().m_Windows.erase(handle);
}

CWnd * FindWindowObject(HWND handle)
{
  std::lock_guard const lock(table().m_Mutex);
  auto const found = table().m_Windows.find(handle);
  return found != table().m_Windows.end() ? found->second.pWindow : nullptr;
}

std::shared_ptr<MessageQueue> FindWindowQueue(HWND handle)
{
  std::lock_guard const lock(table().m_Mutex);
  auto const found = table().m_Windows.find(handle);
  return found != table().m_Windows.end() ? found->second.pQueue : nullptr;
}

}  // namespace zp
