// Root of the persistent classes and the two owning containers.
//
// A container owns its elements: destroying it, emptying it and loading into it delete them. Null pointers are legal elements.
// An object that was stored at several places of a container stands there again after loading, and is deleted once.
// Whoever takes an element out through RemoveAt, RemoveAll or SetSize takes over its deletion.
//
// Where memory runs out, or a Clone or Compare raises, the objects are as they were and an object that was to be taken over is
// still the caller's. Loading alone empties first: what it raises leaves the elements that were read.
#pragma once

#include "platform/collections.h"
#include "platform/runtime.h"
#include "platform/string.h"

class ZP_API GPObject : public CObject {
  DECLARE_SERIAL(GPObject)
 protected:
  void Serialize(CArchive & ar) override;  // streams nothing; derived classes call it first

 public:
  // A new copy that the caller owns; the root gives null.
  virtual GPObject * Clone() const;

  // Negative, 0 or positive when this object sorts before, equal to or after other. The root orders by address.
  virtual int Compare(GPObject const * other) const;

  // The object alone from or to a file of that name, without class tag. Load gives 0 for a missing or empty file, else 1, and
  // lets the archive's and file's exceptions pass; Store gives whether a file of that name stands afterwards.
  virtual int Load(CString const & name);
  virtual int Store(CString const & name);
};

class ZP_API GPObArray : public CObArray {
  DECLARE_SERIAL(GPObArray)
 public:
  GPObArray() = default;
  GPObArray(GPObArray const & other);
  GPObArray & operator=(GPObArray const & other);
  GPObArray & operator+=(GPObArray const & other);  // appends clones
  ~GPObArray() override;

  void Serialize(CArchive & ar) override;

  // As GPObject's, but an archive's exception shows a message and leaves the array empty, with result 1.
  virtual int Load(CString const & name);
  virtual int Store(CString const & name);

  // Moves the pointers of other behind the own elements, without cloning. With removeFromOther 0 both hold, and own, them: the
  // caller detaches one side before either is emptied.
  void Append(GPObArray * other, int removeFromOther);

  void DeleteAt(int index);
  void Empty();
  bool IsEmpty() const { return GetSize() == 0; }

  // Ascending by Compare, not stable; all elements must be non-null.
  void Sort();

  // Binary search of a sorted array: 1 and the index of a hit, or 0 and the last index probed, -1 if the array is empty.
  int BSearch(int & index, GPObject const * key) const;

  // Ordered insertion, behind equal elements. The array takes the object over.
  void InsertObject(GPObject * object);

 protected:
  void Init(GPObArray const & other);
  void SerializeElements(CArchive & ar, CRuntimeClass const * elementClass);
};

class ZP_API GPObList : public CObList {
  DECLARE_SERIAL(GPObList)
 public:
  GPObList() : CObList(10) {}
  GPObList(GPObList const & other);
  GPObList & operator=(GPObList const & other);
  GPObList & operator+=(GPObList const & other);
  ~GPObList() override;

  // Count and elements from head to tail; loading empties the list first.
  void Serialize(CArchive & ar) override;

  // As GPObject's, but an archive's exception shows a message and leaves the list empty, with result 1.
  virtual int Load(CString const & name);
  virtual int Store(CString const & name);

  // Moves the pointers of other behind the own elements, as for the array.
  void Append(GPObList * other, int removeFromOther);

  void Empty();  // deletes the elements, from the tail

  // Ascending by Compare, not stable; all elements must be non-null.
  void Sort();

  // Ordered insertion, in front of equal elements. The list takes the object over.
  void InsertObject(GPObject * object);

 protected:
  void DeleteAt(POSITION position);
  void Init(GPObList const & other);  // appends clones; null elements of other are left out
  void SerializeElements(CArchive & ar, CRuntimeClass const * elementClass);

 private:
  void EmptyOfRepeats();
};

// Unsigned numbers as a set or a selection. Nothing keeps them in order unless Sort, EliminateDuplicates or the flag
// addSorted is used. A stream holds a WORD count and a WORD for each element: at most 65,535 elements, the low 16 bits of each.
class ZP_API GPUIntArray : public CUIntArray {
  DECLARE_SERIAL(GPUIntArray)
 public:
  static constexpr int maxStreamed = 65535;  // elements

  // What AddUIntVal does, as bits.
  static constexpr unsigned int addSorted = 1;   // insert in front of the first larger element
  static constexpr unsigned int addUnique = 2;   // refuse a value that is present
  static constexpr unsigned int addToggles = 4;  // remove a value that is present; goes before addUnique

  GPUIntArray() = default;
  GPUIntArray(short const * values, int count);      // each sign-extended
  GPUIntArray(int first, int last);                  // the inclusive run, upward or downward
  GPUIntArray(int first, int count, int ascending);  // count elements, each 1 above or below the one before
  GPUIntArray(GPUIntArray const & other);
  GPUIntArray & operator=(GPUIntArray const & other);
  GPUIntArray & operator+=(GPUIntArray const & other);  // appends; an array isn't appended to itself

  // Raises the archive's genericException, with nothing written, for more elements than a stream holds.
  void Serialize(CArchive & ar) override;

  // The elements alone from or to a file of that name, as GPObject's.
  virtual int Load(CString const & name);
  virtual int Store(CString const & name);

  void Empty() { RemoveAll(); }
  int IsEmpty() const { return GetSize() == 0; }

  // Ascending by the signed difference: an order for values that lie less than 2^31 apart.
  void Sort();

  // Binary search of a sorted array: 1 and the index of a hit, or 0 and the last index probed, -1 if the array is empty.
  int BSearch(int & index, unsigned int const & value);

  void EliminateDuplicates();  // sorts first; an array of fewer than two elements stays as it is

  int Contains(unsigned int value) const;
  int Remove(unsigned int value);  // the first occurrence; 0 if there is none

  // 1 if the value was added, 0 if it was refused or removed. An empty valid allows every value.
  int AddUIntVal(unsigned int value, unsigned int flags, GPUIntArray const & valid);

  // Adds each value of a run such as "5-9" or "9-5", both ends included, as AddUIntVal does. An end that reads as 0 is 1; equal
  // ends add nothing. A text without '-' is the far end of a run from 1: "7" adds 1 to 7. Gives the growth in size, negative if
  // the flags removed values. A range that would take the array beyond 1,048,576 elements, sixteen times what a stream holds, and
  // one longer than that without a valid list, is refused whole: 0, nothing changed. valid counts as it stands before, even if it
  // is this array.
  int AddUIntRange(CString const & text, unsigned int flags, GPUIntArray const & valid);

  // The low 16 bits of each element in a new array that the caller releases with delete[]; null if there are none.
  short * GetShortIntArray() const;

 protected:
  void Init(GPUIntArray const & other);
};
