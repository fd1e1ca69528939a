// GPObList: a linked list of object pointers that owns what it points to. Load and Store are in object_files.cpp. Its stream is
// that of a GPObArray, from head to tail.

#include <zpbase/foundation.h>

#include <utility>

#include <zpbase/platform/archive.h>

#include "foundation/foundation_internal.h"

IMPLEMENT_SERIAL(GPObList, CObList, 1)

GPObList::GPObList(GPObList const & other) : CObList(10)
{
  Init(other);
}

GPObList & GPObList::operator=(GPObList const & other)
{
  if (this == &other) return *this;
  Empty();
  Init(other);
  return *this;
}

GPObList & GPObList::operator+=(GPObList const & other)
{
  if (this != &other) Init(other);
  return *this;
}

GPObList::~GPObList()
{
  Empty();
}

void GPObList::Init(GPObList const & other)
{
  for (POSITION position = other.GetHeadPosition(); position != nullptr;)
    if (CObject const * const element = other.GetNext(position); element != nullptr) AddTail(zp::CloneElement(element));
}

void GPObList::Append(GPObList * other, int removeFromOther)
{
  POSITION position = other->GetHeadPosition();
  for (int count = other->GetCount(); count > 0; --count) AddTail(other->GetNext(position));
  m_bRepeats |= other->m_bRepeats;
  if (removeFromOther != 0) other->RemoveAll();
}

void GPObList::DeleteAt(POSITION position)
{
  CObject * const element = GetAt(position);
  RemoveAt(position);
  if (!m_bRepeats || Find(element) == nullptr) delete element;
}

void GPObList::Empty()
{
  if (std::exchange(m_bRepeats, false)) {
    std::vector<CObject *> elements;
    for (POSITION position = GetHeadPosition(); position != nullptr;) elements.push_back(GetNext(position));
    RemoveAll();
    return zp::DeleteOnce(std::move(elements));
  }
  while (!IsEmpty()) delete RemoveTail();
  RemoveAll();
}

void GPObList::Sort()
{
  if (GetCount() < 2) return;
  std::vector<CObject *> elements;
  elements.reserve(static_cast<size_t>(GetCount()));
  for (POSITION position = GetHeadPosition(); position != nullptr;) elements.push_back(GetNext(position));
  zp::SortObjects(elements);
  POSITION position = GetHeadPosition();
  for (CObject * const element : elements) {
    SetAt(position, element);
    GetNext(position);
  }
}

void GPObList::InsertObject(GPObject * object)
{
  for (POSITION position = GetTailPosition(); position != nullptr;) {
    POSITION const place = position;
    if (zp::CompareElements(object, GetPrev(position)) > 0) {
      InsertAfter(place, object);
      return;
    }
  }
  AddHead(object);
}

void GPObList::SerializeElements(CArchive & ar, CRuntimeClass const * elementClass)
{
  if (ar.IsLoading()) Empty();
  SerializeOwned(ar, elementClass);
}

void GPObList::Serialize(CArchive & ar)
{
  SerializeElements(ar, nullptr);
}
