// The host's pages behind large blocks of memory.
#pragma once

#include <cstddef>
#include <memory>

#include "types.h"

namespace zp {

// Says that a block is going to be filled as a whole, so that the system may back a large one with large pages.
ZP_API void PreferLargePages(void * block, size_t size);

// Memory for what is read as a whole: bytes without content. Of the large blocks that have gone, up to 64 MiB, the last one is
// kept for the next that fills a quarter of it or more, so that the system needn't clear its pages again; it may take them back
// when memory runs short. Blocks may come and go in any thread.
class ZP_API PageBlock {
 public:
  PageBlock() = default;
  explicit PageBlock(size_t size);  // raises std::bad_alloc
  ~PageBlock();
  PageBlock(PageBlock const &) = delete;
  PageBlock & operator=(PageBlock const &) = delete;
  PageBlock(PageBlock && other) noexcept = default;
  PageBlock & operator=(PageBlock && other) noexcept;

  char * Get() const { return m_pBlock ? m_pBlock->bytes.get() : nullptr; }

 private:
  struct Block {
    size_t size;
    std::unique_ptr<char[]> bytes;
  };
  struct Kept;

  std::unique_ptr<Block> m_pBlock;
};

}  // namespace zp
