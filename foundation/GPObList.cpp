// GPObList: a linked list of object pointers that owns what it points to. Load and Store are in object_files.cpp. Its stream is
// that of a GPObArray, from head to tail.

#include <zpbase/foundation.h>

#include <memory>
#include <new>
#include <utility>

#include <zpbase/platform/archive.h>

#include "foundation/foundation_internal.h"

IMPLEMENT_SERIAL(GPObList, CObList, 1)

namespace {

// Adds all of the elements at the tail, or none.
void addAll(CObList & list, std::vector<CObject *> const & elements)
{
  int const count = list.GetCount();
  try {
    for (CObject * const element : elements) list.AddTail(element);
  } catch (...) {
    while (list.GetCount() > count) list.RemoveTail();
    throw;
  }
}

std::vector<CObject *> elementsOf(CObList const & list)
{
  std::vector<CObject *> elements;
  elements.reserve(static_cast<size_t>(list.GetCount()));
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) elements.push_back(list.GetNext(position));
  return elements;
}

}  // namespace

GPObList::GPObList(GPObList const & other) : CObList(10)
{
  Init(other);
}

GPObList & GPObList::operator=(GPObList const & other)
{
  if (this == &other) return *this;
  GPObList former;
  former.Append(this, 0);
  int count = GetCount();
  try {
    Init(other);
  } catch (...) {
    former.RemoveAll();
    throw;
  }
  for (; count > 0; --count) RemoveHead();
  m_bRepeats = false;
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
  std::vector<std::unique_ptr<CObject>> clones;
  std::vector<CObject *> elements;
  clones.reserve(static_cast<size_t>(other.GetCount()));
  elements.reserve(static_cast<size_t>(other.GetCount()));
  for (POSITION position = other.GetHeadPosition(); position != nullptr;) {
    CObject const * const element = other.GetNext(position);
    if (element != nullptr) elements.push_back(clones.emplace_back(zp::CloneElement(element)).get());
  }
  addAll(*this, elements);
  for (auto & clone : clones) static_cast<void>(clone.release());
}

void GPObList::Append(GPObList * other, int removeFromOther)
{
  addAll(*this, elementsOf(*other));
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
  if (m_bRepeats) return EmptyOfRepeats();
  while (!IsEmpty()) delete RemoveTail();
  RemoveAll();
}

// Without memory for a look at all of them at once, each is looked for among the rest.
void GPObList::EmptyOfRepeats()
{
  try {
    std::vector<CObject *> elements = elementsOf(*this);
    RemoveAll();
    zp::DeleteOnce(std::move(elements));
  } catch (std::bad_alloc const &) {
    while (!IsEmpty())
      if (CObject * const element = RemoveTail(); Find(element) == nullptr) delete element;
    RemoveAll();
  }
  m_bRepeats = false;
}

void GPObList::Sort()
{
  if (GetCount() < 2) return;
  std::vector<CObject *> elements = elementsOf(*this);
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
