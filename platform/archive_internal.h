// What an archive knows of the classes and objects that went through it: one counter for both, from 1.

#pragma once

#include <zpbase/platform/archive.h>

#include <vector>

namespace zp {

// Open addressing from addresses to indexes. Neighbours in memory, as allocators give them out, stay neighbours in the table.
class IdentityTable {
 public:
  // The index under key, which is set to candidate if the key is new.
  DWORD FindOrInsert(void const * key, DWORD candidate);
  size_t GetCount() const { return m_nCount; }

 private:
  struct Slot {
    void const * pKey = nullptr;
    DWORD nIndex = 0;
  };

  size_t PlaceOf(void const * key) const;
  void Grow();

  std::vector<Slot> m_Slots;
  size_t m_nCount = 0;
};

// An entry of a loading archive: an object, a class (marked in the lowest bit of its address), or 0 for an object that failed and
// can't be referred to.
using LoadedEntry = uintptr_t;

}  // namespace zp

struct CArchive::Identities {
  static constexpr DWORD maxIndex = 0x3FFFFFFE;

  DWORD nCount = 0;  // indexes given out so far, storing
  zp::IdentityTable stored;
  zp::IdentityTable storedClasses;
  CRuntimeClass const * pLastClass = nullptr;  // the class written last and its index
  DWORD nLastClass = 0;

  // Loading. Entry 0 is the null pointer. Objects that their readers keep in another form are gaps between the entries.
  struct Gap {
    size_t nIndex;  // of the first object in it
    size_t nCount;
  };
  std::vector<zp::LoadedEntry> loaded{0};
  std::vector<Gap> gaps;
  size_t nInGaps = 0;
  size_t nForgotten = SIZE_MAX;  // from this entry on, none is an object that still lives

  size_t LoadedCount() const { return loaded.size() + nInGaps; }
  zp::LoadedEntry At(size_t index) const;  // 0 inside a gap
  void AddGap(size_t count);

  // The index of a class that is being stored; behind nCount for one that is new.
  DWORD IndexOfClass(CRuntimeClass const * record);

  void Enter(CObject * object);
  void ForgetObjectsFrom(size_t entry);
};
