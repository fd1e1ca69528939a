// GPObArray: an array of object pointers that owns what it points to. Load and Store are in object_files.cpp. Its stream:
//
//   offset  width   content
//   0       2 or 6  element count in the archive's form
//   2 or 6          each element in index order as an object pointer in the archive's form
//
// An array of one null pointer: 01 00, 00 00.

#include <zpbase/foundation.h>

#include <algorithm>
#include <memory>
#include <utility>

#include <zpbase/platform/archive.h>

#include "foundation/foundation_internal.h"

IMPLEMENT_SERIAL(GPObArray, CObArray, 1)

GPObArray::GPObArray(GPObArray const & other)
{
  Init(other);
}

GPObArray & GPObArray::operator=(GPObArray const & other)
{
  if (this == &other) return *this;
  GPObArray copy(other);
  Empty();
  m_Elements.swap(copy.m_Elements);
  m_nOrder = orderUnknown;
  return *this;
}

GPObArray & GPObArray::operator+=(GPObArray const & other)
{
  if (this != &other) Init(other);
  return *this;
}

GPObArray::~GPObArray()
{
  Empty();
}

void GPObArray::Init(GPObArray const & other)
{
  std::vector<std::unique_ptr<CObject>> clones;
  clones.reserve(other.m_Elements.size());
  for (CObject const * const element : other.m_Elements) clones.emplace_back(zp::CloneElement(element));
  m_Elements.reserve(m_Elements.size() + clones.size());
  m_nOrder = orderUnknown;
  for (auto & clone : clones) m_Elements.push_back(clone.release());
}

void GPObArray::Append(GPObArray * other, int removeFromOther)
{
  size_t const count = other->m_Elements.size();
  m_Elements.reserve(m_Elements.size() + count);
  m_nOrder = orderUnknown;
  for (size_t i = 0; i < count; ++i) m_Elements.push_back(other->m_Elements[i]);
  m_bRepeats |= other->m_bRepeats;
  if (removeFromOther != 0) other->SetSize(0);
}

void GPObArray::DeleteAt(int index)
{
  CObject * const element = GetAt(index);
  RemoveAt(index);
  if (!m_bRepeats || std::find(m_Elements.begin(), m_Elements.end(), element) == m_Elements.end()) delete element;
}

void GPObArray::Empty()
{
  if (std::exchange(m_bRepeats, false)) return zp::DeleteOnce(std::exchange(m_Elements, {}));
  while (!m_Elements.empty()) {
    CObject * const element = m_Elements.back();
    m_Elements.pop_back();
    delete element;
  }
}

void GPObArray::Sort()
{
  m_nOrder = std::min(m_nOrder, orderLent);
  if (GetSize() >= 2) zp::SortObjects(m_Elements);
}

int GPObArray::BSearch(int & index, GPObject const * key) const
{
  index = -1;
  int low = 0;
  int high = GetUpperBound();
  while (low <= high) {
    index = (low + high) / 2;
    int const order = zp::CompareElements(key, m_Elements[static_cast<size_t>(index)]);
    if (order == 0) return 1;
    if (order > 0)
      low = index + 1;
    else
      high = index - 1;
  }
  return 0;
}

void GPObArray::InsertObject(GPObject * object)
{
  int index;
  BSearch(index, object);
  index = std::max(index, 0);
  while (index < GetSize() && zp::CompareElements(object, GetAt(index)) >= 0) ++index;
  InsertAt(index, object);
}

void GPObArray::SerializeElements(CArchive & ar, CRuntimeClass const * elementClass)
{
  if (ar.IsLoading()) Empty();
  SerializeOwned(ar, elementClass);
}

void GPObArray::Serialize(CArchive & ar)
{
  SerializeElements(ar, nullptr);
}
