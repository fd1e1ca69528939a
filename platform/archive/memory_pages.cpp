// The host's pages behind large blocks of memory.

#include <zpbase/platform/memory_pages.h>

#include <atomic>
#include <cstdint>
#include <utility>

#include <zpbase/platform/host_calls.h>

namespace zp {

namespace {

constexpr uintptr_t largePage = uintptr_t{2} << 20;
constexpr uintptr_t anyPage = uintptr_t{1} << 16;  // a multiple of every usual page's size
constexpr size_t leastKept = size_t{1} << 20;
constexpr size_t mostKept = size_t{64} << 20;

using Call = int (*)(void * pages, size_t size);

// Calls with those whole pages that lie inside the block.
void withPages(Call call, void * block, size_t size, uintptr_t page)
{
  auto const address = reinterpret_cast<uintptr_t>(block);
  uintptr_t const first = (address + page - 1) / page * page;
  uintptr_t const last = (address + size) / page * page;
  if (first < last) call(reinterpret_cast<void *>(first), last - first);
}

}  // namespace

// A read into fresh memory costs more in page faults than in copying when each fault brings 4 KB.
void PreferLargePages(void * block, size_t size)
{
  withPages(GetHostCalls().UseLargePages, block, size, largePage);
}

// The block that is kept. Taking and giving exchange the one pointer, so threads never share a block.
struct PageBlock::Kept {
  static std::unique_ptr<Block> Exchange(std::unique_ptr<Block> block)
  {
    static constinit std::atomic<Block *> kept = nullptr;
    return std::unique_ptr<Block>(kept.exchange(block.release()));
  }

  static bool IsWorthIt(size_t size) { return size >= leastKept && size <= mostKept; }
};

PageBlock::PageBlock(size_t size)
{
  if (Kept::IsWorthIt(size)) m_pBlock = Kept::Exchange(nullptr);
  if (m_pBlock && m_pBlock->size >= size && m_pBlock->size / 4 <= size) return;
  m_pBlock.reset();
  m_pBlock.reset(new Block{size, std::make_unique_for_overwrite<char[]>(size)});
  PreferLargePages(Get(), size);
}

PageBlock::~PageBlock()
{
  if (!m_pBlock || !Kept::IsWorthIt(m_pBlock->size)) return;
  withPages(GetHostCalls().OfferPages, Get(), m_pBlock->size, anyPage);
  Kept::Exchange(std::move(m_pBlock));
}

PageBlock & PageBlock::operator=(PageBlock && other) noexcept
{
  std::swap(m_pBlock, other.m_pBlock);
  return *this;
}

}  // namespace zp
