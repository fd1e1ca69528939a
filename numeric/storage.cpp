// The blocks under the containers. The raw block is a little longer than its elements, so that they can begin on a boundary.

#include "numeric/storage_internal.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

#include <zpbase/platform/memory_pages.h>

namespace zp {

namespace {

constexpr std::size_t cacheLine = 64;
constexpr std::size_t smallBlock = 128;                   // bytes below which the allocator's own alignment serves
constexpr std::size_t largeBlock = std::size_t{4} << 20;  // bytes from which small pages cost more than the filling

}  // namespace

DoubleBlock::DoubleBlock(std::size_t count) : m_nCount(count)
{
  if (count == 0) return;
  if (count > PTRDIFF_MAX / sizeof(double)) throw std::bad_array_new_length();
  std::size_t const bytes = count * sizeof(double);
  std::size_t const alignment = bytes < smallBlock ? sizeof(double) : cacheLine;
  m_pBlock = std::make_unique_for_overwrite<unsigned char[]>(bytes + alignment - sizeof(double));
  if (bytes >= largeBlock) PreferLargePages(m_pBlock.get(), bytes);
  auto const address = reinterpret_cast<std::uintptr_t>(m_pBlock.get());
  m_pData = reinterpret_cast<double *>(m_pBlock.get() + (-address & (alignment - 1)));
}

DoubleBlock::DoubleBlock(DoubleBlock const & other) : DoubleBlock(other.Count())
{
  std::copy_n(other.Get(), Count(), Get());
}

DoubleBlock & DoubleBlock::operator=(DoubleBlock const & other)
{
  if (this != &other) *this = DoubleBlock(other);
  return *this;
}

IntBlock::IntBlock(int size) : m_nSize(std::max(size, 0))
{
  if (GetSize() > 0) m_pData = std::make_unique_for_overwrite<int[]>(Count());
}

IntBlock::IntBlock(int size, int value) : IntBlock(size)
{
  std::fill_n(m_pData.get(), Count(), value);
}

IntBlock::IntBlock(int size, int const * values) : IntBlock(size)
{
  if (values) {
    std::copy_n(values, Count(), m_pData.get());
  } else {
    std::fill_n(m_pData.get(), Count(), 0);
  }
}

IntBlock::IntBlock(IntBlock const & other) : IntBlock(other.m_nSize, other.m_pData.get()) {}

IntBlock & IntBlock::operator=(IntBlock const & other)
{
  if (this != &other) *this = IntBlock(other);
  return *this;
}

// The old block goes last: values may point into it.
void IntBlock::ChangeSize(int size, int const * values)
{
  IntBlock changed(size);
  std::size_t const kept = std::min(values ? changed.Count() : Count(), changed.Count());
  std::copy_n(values ? values : m_pData.get(), kept, changed.m_pData.get());
  std::fill_n(changed.m_pData.get() + kept, changed.Count() - kept, 0);
  *this = std::move(changed);
}

GPVector ElementAccess::MakeVector(int size)
{
  GPVector vector;
  vector.m_Block = DoubleBlock(static_cast<std::size_t>(std::max(size, 0)));
  return vector;
}

GPIntVector ElementAccess::MakeIntVector(int size)
{
  GPIntVector vector;
  vector.m_Elements = IntBlock(size);
  return vector;
}

GPMatrix ElementAccess::MakeMatrix(int rows, int cols)
{
  GPMatrix matrix;
  matrix.m_nRows = std::max(rows, 0);
  matrix.m_nCols = std::max(cols, 0);
  matrix.m_Block = DoubleBlock(static_cast<std::size_t>(matrix.GetRows()) * static_cast<std::size_t>(matrix.GetCols()));
  return matrix;
}

}  // namespace zp
