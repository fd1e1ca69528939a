// GPUIntArray: unsigned numbers as a set, filled by value and by ranges in text. Its stream:
//
//   offset  width      content
//   0       2          element count, unsigned
//   2       2 x count  the low 16 bits of the elements in index order
//
// The array (1, 70000): 02 00, 01 00, 70 11.

#include <zpbase/foundation.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/number_text.h>

#include "foundation/foundation_internal.h"

IMPLEMENT_SERIAL(GPUIntArray, CUIntArray, 1)

namespace {

// Elements beyond which no range takes an array: sixteen times what a stream holds, and 4 MiB.
constexpr int64_t maxFilled = 0x100000;

using Values = std::vector<UINT>;

int signedDifference(UINT a, UINT b)
{
  return static_cast<int>(a - b);
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

struct Range {
  int first;
  int last;
};

// The ends of a text such as "5-9".
Range rangeOf(std::string_view text)
{
  size_t const minus = text.find('-');
  bool const hasMinus = minus != std::string_view::npos;
  return {rangeEnd(hasMinus ? text.substr(0, minus) : std::string_view()), rangeEnd(hasMinus ? text.substr(minus + 1) : text)};
}

// The values of the range in its order.
Values valuesOf(Range range)
{
  Values values;
  int64_t const step = range.first < range.last ? 1 : -1;
  for (int64_t value = range.first; value != range.last + step; value += step) values.push_back(static_cast<UINT>(value));
  return values;
}

// Those values of the range that are valid, in its order, each once.
Values valuesOf(Range range, Values const & valid)
{
  auto const [low, high] = std::minmax(range.first, range.last);
  Values values;
  for (UINT const value : valid)
    if (static_cast<int>(value) >= low && static_cast<int>(value) <= high) values.push_back(value);
  std::sort(values.begin(), values.end(), [](UINT a, UINT b) { return static_cast<int>(a) < static_cast<int>(b); });
  values.erase(std::unique(values.begin(), values.end()), values.end());
  if (range.first > range.last) std::reverse(values.begin(), values.end());
  return values;
}

// Takes those values that the elements hold out of values, and gives them in ascending order.
Values takePresent(Values & values, Values elements)
{
  std::sort(elements.begin(), elements.end());
  auto const isPresent = [&elements](UINT value) { return std::binary_search(elements.begin(), elements.end(), value); };
  Values present;
  std::copy_if(values.begin(), values.end(), std::back_inserter(present), isPresent);
  std::erase_if(values, isPresent);
  std::sort(present.begin(), present.end());
  return present;
}

// Takes the first occurrence of each of the values, which ascend, out of the elements.
void removeFirsts(Values & elements, Values const & values)
{
  std::vector<bool> isGone(values.size());
  std::erase_if(elements, [&](UINT element) {
    auto const found = std::lower_bound(values.begin(), values.end(), element);
    if (found == values.end() || *found != element) return false;
    auto const place = static_cast<size_t>(found - values.begin());
    bool const isFirst = !isGone[place];
    isGone[place] = true;
    return isFirst;
  });
}

// Each value in front of the first larger element. One merge does it for elements in any order: none that follows a larger one
// is the first that is larger than anything.
void insertSorted(Values & elements, Values values)
{
  std::sort(values.begin(), values.end());
  Values merged;
  merged.reserve(elements.size() + values.size());
  auto next = values.begin();
  for (UINT const element : elements) {
    while (next != values.end() && *next < element) merged.push_back(*next++);
    merged.push_back(element);
  }
  merged.insert(merged.end(), next, values.end());
  elements = std::move(merged);
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
  m_Elements = other.m_Elements;
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
    if (GetSize() > maxStreamed) AfxThrowArchiveException(CArchiveException::genericException);
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
  if ((flags & addToggles) != 0 && Remove(value) != 0) return 0;
  if ((flags & addUnique) != 0 && (flags & addToggles) == 0 && Contains(value)) return 0;
  auto place = m_Elements.end();
  if ((flags & addSorted) != 0) {
    place = std::find_if(m_Elements.begin(), m_Elements.end(), [value](UINT element) { return element > value; });
  }
  m_Elements.insert(place, value);
  return 1;
}

// The values of a range all differ, so none meets another on its way: they are sorted out together, with the result of one
// AddUIntVal after the other.
int GPUIntArray::AddUIntRange(CString const & text, unsigned int flags, GPUIntArray const & valid)
{
  Range const range = rangeOf(text.View());
  int64_t const length = std::abs(int64_t{range.first} - range.last) + 1;
  if (length == 1 || (valid.IsEmpty() && length > maxFilled)) return 0;
  Values added = valid.IsEmpty() ? valuesOf(range) : valuesOf(range, valid.m_Elements);
  Values present;
  if ((flags & (addToggles | addUnique)) != 0) present = takePresent(added, m_Elements);
  if ((flags & addToggles) == 0) present.clear();
  size_t const sizeBefore = m_Elements.size();
  size_t const sizeAfter = sizeBefore - present.size() + added.size();
  if (!added.empty() && sizeAfter > maxFilled) return 0;
  Values elements = m_Elements;
  removeFirsts(elements, present);
  if ((flags & addSorted) != 0)
    insertSorted(elements, std::move(added));
  else
    elements.insert(elements.end(), added.begin(), added.end());
  m_Elements.swap(elements);
  return static_cast<int>(static_cast<int64_t>(sizeAfter) - static_cast<int64_t>(sizeBefore));
}

short * GPUIntArray::GetShortIntArray() const
{
  if (m_Elements.empty()) return nullptr;
  auto values = std::make_unique<short[]>(m_Elements.size());
  std::transform(m_Elements.begin(), m_Elements.end(), values.get(), [](UINT value) { return static_cast<short>(value); });
  return values.release();
}
