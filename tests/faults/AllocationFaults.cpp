#include "tests/faults/AllocationFaults.h"

#include <cstdlib>
#include <new>

namespace {

long g_nLive = 0;
long g_nLeft = 0;
bool g_bCounts = false;
bool g_bForGood = false;
bool g_bFailed = false;

void * allocate(size_t size)
{
  if (g_bCounts && (--g_nLeft == 0 || (g_bForGood && g_bFailed))) {
    g_bFailed = true;
    throw std::bad_alloc();
  }
  void * const block = std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  ++g_nLive;
  return block;
}

void release(void * block)
{
  if (block != nullptr) --g_nLive;
  std::free(block);
}

}  // namespace

AllocationFaults::AllocationFaults(long n, bool forGood)
{
  g_nLeft = n;
  g_bForGood = forGood;
  g_bFailed = false;
  g_bCounts = true;
}

AllocationFaults::~AllocationFaults()
{
  g_bCounts = false;
}

long AllocationFaults::GetCount()
{
  return -g_nLeft;
}

long AllocationFaults::LiveBlocks()
{
  return g_nLive;
}

void * operator new(size_t size)
{
  return allocate(size);
}
void * operator new[](size_t size)
{
  return allocate(size);
}
void * operator new(size_t size, std::nothrow_t const &) noexcept
{
  try {
    return allocate(size);
  } catch (std::bad_alloc const &) {
    return nullptr;
  }
}
void operator delete(void * block) noexcept
{
  release(block);
}
void operator delete[](void * block) noexcept
{
  release(block);
}
void operator delete(void * block, size_t) noexcept
{
  release(block);
}
void operator delete[](void * block, size_t) noexcept
{
  release(block);
}
