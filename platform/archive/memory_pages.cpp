// The host's pages behind large blocks of memory.

#include <zpbase/platform/memory_pages.h>

#include <cstdint>

#include <zpbase/platform/host_calls.h>

namespace zp {

// A read into fresh memory costs more in page faults than in copying when each fault brings 4 KB.
void PreferLargePages(void * block, size_t size)
{
  constexpr uintptr_t pageSize = uintptr_t{2} << 20;
  auto const address = reinterpret_cast<uintptr_t>(block);
  uintptr_t const first = (address + pageSize - 1) / pageSize * pageSize;
  uintptr_t const last = (address + size) / pageSize * pageSize;
  if (first < last) GetHostCalls().UseLargePages(reinterpret_cast<void *>(first), last - first);
}

}  // namespace zp
