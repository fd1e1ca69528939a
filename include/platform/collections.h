// The platform's containers of objects, texts and unsigned numbers. Arrays check their indexes and raise the invalid-argument
// exception; positions of a list belong to that list. None of them owns the objects it points to.
#pragma once

#include <memory>
#include <vector>

#include "runtime.h"
#include "string.h"
#include "types.h"

class ZP_API CObArray : public CObject {
  DECLARE_DYNAMIC(CObArray)
 public:
  CObArray() = default;
  CObArray(CObArray const &) = delete;
  CObArray & operator=(CObArray const &) = delete;

  int GetSize() const { return static_cast<int>(m_Elements.size()); }
  int GetUpperBound() const { return GetSize() - 1; }

  void SetSize(int size, int growBy = -1);  // new elements are null; the growth step is not needed here
  void RemoveAll() { SetSize(0); }

  CObject * GetAt(int index) const { return m_Elements[Checked(index)]; }
  CObject *& ElementAt(int index)  // good until an element is added
  {
    m_nOrder = orderLent;
    return m_Elements[Checked(index)];
  }
  CObject * operator[](int index) const { return GetAt(index); }
  CObject *& operator[](int index) { return ElementAt(index); }
  void SetAt(int index, CObject * element);

  void SetAtGrow(int index, CObject * element);
  int Add(CObject * element);  // the new index
  void InsertAt(int index, CObject * element, int count = 1);
  void RemoveAt(int index, int count = 1);

  // Count and elements in order; a new element read belongs to the array's user.
  void Serialize(CArchive & ar) override;

 protected:
  // As Serialize, for a container that owns its elements, which are of the class given or derived from it. An object that was
  // stored at several places stands there again; a reference to one that isn't the container's own is badIndex.
  void SerializeOwned(CArchive & ar, CRuntimeClass const * elementClass);

  // What a derived class that keeps its elements in order knows of that: any change here forgets it.
  static constexpr uint64_t orderUnknown = 0;
  static constexpr uint64_t orderLent = 1;  // an element may be changed from outside until one is added
  uint64_t m_nOrder = orderUnknown;

  std::vector<CObject *> m_Elements;
  bool m_bRepeats = false;  // one object may stand at several places

 private:
  size_t Checked(int index) const;
};

class ZP_API CObList : public CObject {
  DECLARE_DYNAMIC(CObList)
 public:
  explicit CObList(int blockSize = 10);  // nodes allocated at a time
  CObList(CObList const &) = delete;
  CObList & operator=(CObList const &) = delete;
  ~CObList() override;

  int GetCount() const { return m_nCount; }
  bool IsEmpty() const { return m_nCount == 0; }

  // The head's or tail's element; an empty list raises.
  CObject * GetHead() const;
  CObject * GetTail() const;

  POSITION AddHead(CObject * element);
  POSITION AddTail(CObject * element);
  CObject * RemoveHead();
  CObject * RemoveTail();
  void RemoveAll();

  // Walks: the element at position, which moves on or back and is null behind the last one.
  POSITION GetHeadPosition() const;
  POSITION GetTailPosition() const;
  CObject * GetNext(POSITION & position) const;
  CObject * GetPrev(POSITION & position) const;

  CObject * GetAt(POSITION position) const;
  void SetAt(POSITION position, CObject * element);
  void RemoveAt(POSITION position);
  POSITION InsertBefore(POSITION position, CObject * element);
  POSITION InsertAfter(POSITION position, CObject * element);
  POSITION Find(CObject const * element, POSITION startAfter = nullptr) const;  // by identity, or null

  void Serialize(CArchive & ar) override;

 protected:
  void SerializeOwned(CArchive & ar, CRuntimeClass const * elementClass);

  bool m_bRepeats = false;  // as the array's

 private:
  struct Node;

  static Node * Checked(POSITION position);
  void MakeNode();
  Node * NewNode(CObject * element);
  void Link(Node * node, Node * previous, Node * next);
  void Unlink(Node * node);

  Node * m_pHead = nullptr;
  Node * m_pTail = nullptr;
  Node * m_pFree = nullptr;
  int m_nCount = 0;
  int m_nBlockSize;
  std::vector<std::unique_ptr<Node[]>> m_Blocks;
};

// An array of plain values with checked indexes. A value to be stored may be one of the array's own elements.
template <class Value>
class CPlainArray : public CObject {
 public:
  int GetSize() const { return static_cast<int>(m_Elements.size()); }
  int GetUpperBound() const { return GetSize() - 1; }
  bool IsEmpty() const { return m_Elements.empty(); }
  void SetSize(int size, int growBy = -1);  // new elements are empty or 0; the growth step is not needed here
  void FreeExtra();                         // gives room for more than an eighth of the elements back
  void Reserve(int size);                   // makes room for size elements in all
  void RemoveAll() { m_Elements.clear(); }
  Value const & GetAt(int index) const { return m_Elements[Checked(index)]; }
  Value & ElementAt(int index) { return m_Elements[Checked(index)]; }
  Value const & operator[](int index) const { return GetAt(index); }
  Value & operator[](int index) { return ElementAt(index); }
  void SetAt(int index, Value const & value) { m_Elements[Checked(index)] = value; }
  void SetAtGrow(int index, Value const & value);
  int Add(Value const & value);
  int Add(Value && value);
  void InsertAt(int index, Value const & value, int count = 1);
  void RemoveAt(int index, int count = 1);

 protected:
  CPlainArray() = default;
  CPlainArray(CPlainArray const &) = default;
  CPlainArray(CPlainArray &&) noexcept = default;
  CPlainArray & operator=(CPlainArray const & other);
  CPlainArray & operator=(CPlainArray &&) noexcept = default;
  std::vector<Value> m_Elements;

 private:
  size_t Checked(int index) const;
};

extern template class ZP_API CPlainArray<CString>;
extern template class ZP_API CPlainArray<UINT>;

class ZP_API CStringArray : public CPlainArray<CString> {
  DECLARE_DYNAMIC(CStringArray)
 public:
  void Serialize(CArchive & ar) override;  // count and texts; a failed read leaves the array as it was
};

class ZP_API CUIntArray : public CPlainArray<UINT> {
  DECLARE_DYNAMIC(CUIntArray)
};
