// GPUIntArray: unsigned numbers as a set, filled by value and by ranges in text.
#include <algorithm>
#include <memory>

#include <zpbase/foundation.h>
#include <zpbase/platform/archive.h>

#include "foundation/foundation_internal.h"

IMPLEMENT_SERIAL(GPUIntArray, CUIntArray, 1)

namespace {

constexpr int maxStreamed = 0xFFFF;  // elements

int signedDifference(UINT a, UINT b)
{
  return static_cast<int>(a - b);
}

void requireStreamable(int count)
{
  if (count > maxStreamed) AfxThrowArchiveException(CArchiveException::genericException);
}

// One end of a range: a number, or 1 where there is none or it is 0.
int rangeEnd(std::string_view text)
{
  int const value = zp::TextToInt(text);
  return value == 0 ? 1 : value;
}

// Heap sort: unlike the library's sort it stays within bounds when the differences are no order, since they wrap.
void sortByDifference(std::vector<UINT> & values)
{
  auto const below = [](UINT a, UINT b) { return signedDifference(a, b) < 0; };
  std::make_heap(values.begin(), values.end(), below);
  std::sort_heap(values.begin(), values.end(), below);
}

}  // namespace

GPUIntArray::GPUIntArray(short const * values, int count)
{
  if (count > 0) m_Elements.assign(values, values + count);
}

GPUIntArray::GPUIntArray(int first, int last)
{
  int64_t const step = first <= last ? 1 : -1;
  for (int64_t value = first; value != last + step; value += step) m_Elements.push_back(static_cast<UINT>(value));
}

GPUIntArray::GPUIntArray(int first, int count, int ascending)
{
  UINT const step = ascending != 0 ? 1U : ~0U;
  UINT value = static_cast<UINT>(first);
  for (int i = 0; i < count; ++i, value += step) m_Elements.push_back(value);
}

GPUIntArray::GPUIntArray(GPUIntArray const & other) : CUIntArray()
{
  Init(other);
}

GPUIntArray & GPUIntArray::operator=(GPUIntArray const & other)
{
  if (this == &other) return *this;
  Empty();
  Init(other);
  return *this;
}

GPUIntArray & GPUIntArray::operator+=(GPUIntArray const & other)
{
  if (this != &other) Init(other);
  return *this;
}

void GPUIntArray::Init(GPUIntArray const & other)
{
  m_Elements.insert(m_Elements.end(), other.m_Elements.begin(), other.m_Elements.end());
}

void GPUIntArray::Serialize(CArchive & ar)
{
  if (ar.IsStoring()) {
    requireStreamable(GetSize());
    ar << static_cast<WORD>(GetSize());
    for (UINT const value : m_Elements) ar << static_cast<WORD>(value);
    return;
  }
  WORD count = 0;
  ar >> count;
  m_Elements.assign(count, 0);
  for (UINT & element : m_Elements) {
    WORD value = 0;
    ar >> value;
    element = value;
  }
}

void GPUIntArray::Sort()
{
  sortByDifference(m_Elements);
}

int GPUIntArray::BSearch(int & index, unsigned int const & value)
{
  index = -1;
  int low = 0;
  int high = GetUpperBound();
  while (low <= high) {
    index = low + (high - low) / 2;
    int const difference = signedDifference(value, GetAt(index));
    if (difference == 0) return 1;
    if (difference > 0) {
      low = index + 1;
    } else {
      high = index - 1;
    }
  }
  return 0;
}

void GPUIntArray::EliminateDuplicates()
{
  if (GetSize() < 2) return;
  Sort();
  m_Elements.erase(std::unique(m_Elements.begin(), m_Elements.end()), m_Elements.end());
}

int GPUIntArray::Contains(unsigned int value) const
{
  return std::find(m_Elements.begin(), m_Elements.end(), value) != m_Elements.end();
}

int GPUIntArray::Remove(unsigned int value)
{
  auto const found = std::find(m_Elements.begin(), m_Elements.end(), value);
  if (found == m_Elements.end()) return 0;
  m_Elements.erase(found);
  return 1;
}

int GPUIntArray::AddUIntVal(unsigned int value, unsigned int flags, GPUIntArray const & valid)
{
  if (!valid.IsEmpty() && !valid.Contains(value)) return 0;
  bool const present = (flags & (addToggles | addUnique)) != 0 && Contains(value);
  if (present) {
    if ((flags & addToggles) != 0) Remove(value);
    return 0;
  }
  auto place = m_Elements.end();
  if ((flags & addSorted) != 0) {
    place = std::find_if(m_Elements.begin(), m_Elements.end(), [value](UINT element) { return element > value; });
  }
  m_Elements.insert(place, value);
  return 1;
}

int GPUIntArray::AddUIntRange(CString const & text, unsigned int flags, GPUIntArray const & valid)
{
  int const sizeBefore = GetSize();
  std::string_view const all = text.View();
  size_t const minus = all.find('-');
  bool const hasMinus = minus != std::string_view::npos;
  int const first = rangeEnd(hasMinus ? all.substr(0, minus) : std::string_view());
  int const last = rangeEnd(hasMinus ? all.substr(minus + 1) : all);
  if (first == last) return 0;
  int64_t const step = first < last ? 1 : -1;
  for (int64_t value = first; value != last + step; value += step) AddUIntVal(static_cast<UINT>(value), flags, valid);
  return GetSize() - sizeBefore;
}

short * GPUIntArray::GetShortIntArray() const
{
  if (m_Elements.empty()) return nullptr;
  auto values = std::make_unique<short[]>(m_Elements.size());
  std::transform(m_Elements.begin(), m_Elements.end(), values.get(), [](UINT value) { return static_cast<short>(value); });
  return values.release();
}

int GPUIntArray::Load(CString const & name)
{
  return zp::LoadObjectFile(name, *this);
}

int GPUIntArray::Store(CString const & name)
{
  return zp::StoreObjectFile(name, *this);
}
