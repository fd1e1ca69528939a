// The platform's arrays.

#include <zpbase/platform/collections.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/memory_pages.h>

#include "platform/collections/owned_elements_internal.h"

IMPLEMENT_DYNAMIC(CObArray, CObject)
IMPLEMENT_DYNAMIC(CStringArray, CObject)
IMPLEMENT_DYNAMIC(CUIntArray, CObject)

namespace {

// The count, each element and the tag of the smallest object cost at least so many bytes in an archive.
constexpr ULONGLONG tagBytes = 2;

// Room made at once for elements to be read. Beyond it an array grows with what is there: arrays inside arrays may each promise
// as many elements as bytes follow.
constexpr DWORD maxReserved = 64;

void checkRange(int index, int count, int size)
{
  if (index < 0 || count < 0 || index > size || count > size - index) AfxThrowInvalidArgException();
}

// Room for one more, so that an element that was read can't be lost.
// For size elements, and for as many more as there are.
template <class Element>
void makeRoom(std::vector<Element> & elements, size_t size)
{
  if (size > elements.capacity()) elements.reserve(std::max(size, 2 * elements.size() + 1));
}

// The last index of all leaves no number for the size.
void checkGrowth(int index)
{
  if (index < 0 || index == INT32_MAX) AfxThrowInvalidArgException();
}

}  // namespace

size_t CObArray::Checked(int index) const
{
  if (index < 0 || index >= GetSize()) AfxThrowInvalidArgException();
  return static_cast<size_t>(index);
}

void CObArray::SetAt(int index, CObject * element)
{
  m_Elements[Checked(index)] = element;
  m_nOrder = std::min(m_nOrder, orderLent);
}

void CObArray::SetSize(int size, int)
{
  if (size < 0) AfxThrowInvalidArgException();
  m_nOrder = orderUnknown;
  m_Elements.resize(static_cast<size_t>(size), nullptr);
}

void CObArray::SetAtGrow(int index, CObject * element)
{
  checkGrowth(index);
  if (index >= GetSize()) SetSize(index + 1);
  SetAt(index, element);
}

int CObArray::Add(CObject * element)
{
  m_Elements.push_back(element);
  m_nOrder = orderUnknown;
  return GetUpperBound();
}

void CObArray::InsertAt(int index, CObject * element, int count)
{
  if (index < 0 || count < 0) AfxThrowInvalidArgException();
  if (index > GetSize()) {
    makeRoom(m_Elements, static_cast<size_t>(index) + static_cast<size_t>(count));
    SetSize(index);
  }
  m_Elements.insert(m_Elements.begin() + index, static_cast<size_t>(count), element);
  m_nOrder = orderUnknown;
}

void CObArray::RemoveAt(int index, int count)
{
  checkRange(index, count, GetSize());
  m_Elements.erase(m_Elements.begin() + index, m_Elements.begin() + index + count);
}

void CObArray::Serialize(CArchive & ar)
{
  if (ar.IsStoring()) {
    ar.WriteCount(static_cast<DWORD>(GetSize()));
    for (CObject const * const element : m_Elements) ar.WriteObject(element);
    return;
  }
  DWORD const count = ar.ReadCount();
  ar.RequireBytes(count * tagBytes);
  RemoveAll();
  m_Elements.reserve(std::min(count, maxReserved));
  for (DWORD i = 0; i < count; ++i) {
    makeRoom(m_Elements, m_Elements.size() + 1);
    m_Elements.push_back(ar.ReadObject(nullptr));
  }
}

void CObArray::SerializeOwned(CArchive & ar, CRuntimeClass const * elementClass)
{
  if (ar.IsStoring()) return CObArray::Serialize(ar);
  DWORD const count = ar.ReadCount();
  ar.RequireBytes(count * tagBytes);
  RemoveAll();
  m_Elements.reserve(std::min(count, maxReserved));
  m_bRepeats = false;
  zp::OwnedElements elements(ar, elementClass, m_bRepeats);
  auto const forEachRead = [this](auto use) { std::for_each(m_Elements.begin(), m_Elements.end(), use); };
  for (DWORD i = 0; i < count; ++i) {
    makeRoom(m_Elements, m_Elements.size() + 1);
    m_Elements.push_back(elements.Next(forEachRead));
  }
}

template <class Value>
size_t CPlainArray<Value>::Checked(int index) const
{
  if (index < 0 || index >= GetSize()) AfxThrowInvalidArgException();
  return static_cast<size_t>(index);
}

template <class Value>
void CPlainArray<Value>::SetSize(int size, int)
{
  if (size < 0) AfxThrowInvalidArgException();
  m_Elements.resize(static_cast<size_t>(size));
}

template <class Value>
void CPlainArray<Value>::FreeExtra()
{
  size_t const size = m_Elements.size();
  if (m_Elements.capacity() - size > size / 8) m_Elements.shrink_to_fit();
}

template <class Value>
void CPlainArray<Value>::Reserve(int size)
{
  if (size <= 0 || static_cast<size_t>(size) <= m_Elements.capacity()) return;
  m_Elements.reserve(static_cast<size_t>(size));
  zp::PreferLargePages(m_Elements.data(), m_Elements.capacity() * sizeof(Value));
}

template <class Value>
CPlainArray<Value> & CPlainArray<Value>::operator=(CPlainArray const & other)
{
  std::vector<Value> elements(other.m_Elements);
  m_Elements.swap(elements);
  return *this;
}

template <class Value>
void CPlainArray<Value>::SetAtGrow(int index, Value const & value)
{
  checkGrowth(index);
  Value kept = value;  // growing moves the elements
  if (index >= GetSize()) SetSize(index + 1);
  m_Elements[static_cast<size_t>(index)] = std::move(kept);
}

template <class Value>
int CPlainArray<Value>::Add(Value const & value)
{
  m_Elements.push_back(value);
  return GetUpperBound();
}

template <class Value>
int CPlainArray<Value>::Add(Value && value)
{
  m_Elements.push_back(std::move(value));
  return GetUpperBound();
}

template <class Value>
void CPlainArray<Value>::InsertAt(int index, Value const & value, int count)
{
  if (index < 0 || count < 0) AfxThrowInvalidArgException();
  std::vector<Value> added(static_cast<size_t>(count), value);
  makeRoom(m_Elements, std::max(static_cast<size_t>(index), m_Elements.size()) + added.size());
  if (index > GetSize()) m_Elements.resize(static_cast<size_t>(index));
  m_Elements.insert(m_Elements.begin() + index, std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
}

template <class Value>
void CPlainArray<Value>::RemoveAt(int index, int count)
{
  checkRange(index, count, GetSize());
  m_Elements.erase(m_Elements.begin() + index, m_Elements.begin() + index + count);
}

template class CPlainArray<CString>;
template class CPlainArray<UINT>;

void CStringArray::Serialize(CArchive & ar)
{
  if (ar.IsStoring()) {
    ar.WriteCount(static_cast<DWORD>(GetSize()));
    for (CString const & text : m_Elements) ar << text;
    return;
  }
  DWORD const count = ar.ReadCount();
  ar.RequireBytes(count);  // the length of each text costs a byte at least
  std::vector<CString> texts;
  texts.reserve(std::min(count, maxReserved));
  for (DWORD i = 0; i < count; ++i) {
    texts.emplace_back();
    ar >> texts.back();
  }
  m_Elements.swap(texts);
}
