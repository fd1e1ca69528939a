// CObList: a doubly linked list of object pointers, its nodes allocated in blocks and reused.

#include <zpbase/platform/collections.h>

#include <algorithm>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/exceptions.h>

#include "platform/collections/owned_elements_internal.h"

IMPLEMENT_DYNAMIC(CObList, CObject)

struct CObList::Node {
  Node * next;
  Node * previous;
  CObject * element;
};

CObList::CObList(int blockSize) : m_nBlockSize(std::max(blockSize, 1)) {}

CObList::~CObList() = default;

CObList::Node * CObList::Checked(POSITION position)
{
  if (position == nullptr) AfxThrowInvalidArgException();
  return reinterpret_cast<Node *>(position);
}

void CObList::MakeNode()
{
  if (m_pFree != nullptr) return;
  m_Blocks.push_back(std::make_unique_for_overwrite<Node[]>(static_cast<size_t>(m_nBlockSize)));
  Node * const block = m_Blocks.back().get();
  for (int i = m_nBlockSize - 1; i >= 0; --i) {
    block[i].next = m_pFree;
    m_pFree = &block[i];
  }
}

CObList::Node * CObList::NewNode(CObject * element)
{
  MakeNode();
  Node * const node = m_pFree;
  m_pFree = node->next;
  node->element = element;
  return node;
}

void CObList::Link(Node * node, Node * previous, Node * next)
{
  node->previous = previous;
  node->next = next;
  (previous != nullptr ? previous->next : m_pHead) = node;
  (next != nullptr ? next->previous : m_pTail) = node;
  ++m_nCount;
}

void CObList::Unlink(Node * node)
{
  (node->previous != nullptr ? node->previous->next : m_pHead) = node->next;
  (node->next != nullptr ? node->next->previous : m_pTail) = node->previous;
  node->next = m_pFree;
  m_pFree = node;
  --m_nCount;
}

CObject * CObList::GetHead() const
{
  return Checked(GetHeadPosition())->element;
}

CObject * CObList::GetTail() const
{
  return Checked(GetTailPosition())->element;
}

POSITION CObList::AddHead(CObject * element)
{
  Link(NewNode(element), nullptr, m_pHead);
  return GetHeadPosition();
}

POSITION CObList::AddTail(CObject * element)
{
  Link(NewNode(element), m_pTail, nullptr);
  return GetTailPosition();
}

CObject * CObList::RemoveHead()
{
  CObject * const element = GetHead();
  Unlink(m_pHead);
  return element;
}

CObject * CObList::RemoveTail()
{
  CObject * const element = GetTail();
  Unlink(m_pTail);
  return element;
}

void CObList::RemoveAll()
{
  m_pHead = m_pTail = m_pFree = nullptr;
  m_nCount = 0;
  m_Blocks.clear();
}

POSITION CObList::GetHeadPosition() const
{
  return reinterpret_cast<POSITION>(m_pHead);
}

POSITION CObList::GetTailPosition() const
{
  return reinterpret_cast<POSITION>(m_pTail);
}

CObject * CObList::GetNext(POSITION & position) const
{
  Node const * const node = Checked(position);
  position = reinterpret_cast<POSITION>(node->next);
  return node->element;
}

CObject * CObList::GetPrev(POSITION & position) const
{
  Node const * const node = Checked(position);
  position = reinterpret_cast<POSITION>(node->previous);
  return node->element;
}

CObject * CObList::GetAt(POSITION position) const
{
  return Checked(position)->element;
}

void CObList::SetAt(POSITION position, CObject * element)
{
  Checked(position)->element = element;
}

void CObList::RemoveAt(POSITION position)
{
  Unlink(Checked(position));
}

POSITION CObList::InsertBefore(POSITION position, CObject * element)
{
  if (position == nullptr) return AddHead(element);
  Node * const next = Checked(position);
  Node * const node = NewNode(element);
  Link(node, next->previous, next);
  return reinterpret_cast<POSITION>(node);
}

POSITION CObList::InsertAfter(POSITION position, CObject * element)
{
  if (position == nullptr) return AddTail(element);
  Node * const previous = Checked(position);
  Node * const node = NewNode(element);
  Link(node, previous, previous->next);
  return reinterpret_cast<POSITION>(node);
}

POSITION CObList::Find(CObject const * element, POSITION startAfter) const
{
  for (Node * node = startAfter != nullptr ? Checked(startAfter)->next : m_pHead; node != nullptr; node = node->next)
    if (node->element == element) return reinterpret_cast<POSITION>(node);
  return nullptr;
}

void CObList::Serialize(CArchive & ar)
{
  if (ar.IsStoring()) {
    ar.WriteCount(static_cast<DWORD>(m_nCount));
    for (Node const * node = m_pHead; node != nullptr; node = node->next) ar.WriteObject(node->element);
    return;
  }
  for (DWORD count = ar.ReadCount(); count > 0; --count) {
    MakeNode();
    AddTail(ar.ReadObject(nullptr));
  }
}

void CObList::SerializeOwned(CArchive & ar, CRuntimeClass const * elementClass)
{
  if (ar.IsStoring()) return CObList::Serialize(ar);
  DWORD count = ar.ReadCount();
  ar.RequireBytes(ULONGLONG{2} * count);
  zp::OwnedElements elements(ar, elementClass, m_bRepeats);
  auto const forEachRead = [this](auto use) {
    for (Node const * node = m_pHead; node != nullptr; node = node->next) use(node->element);
  };
  for (; count > 0; --count) {
    MakeNode();  // first, so that an element that was read can't be lost
    AddTail(elements.Next(forEachRead));
  }
}
