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

// An entry of a loading archive: an object, a class (marked in the lowest bit of its address), or 0 for an object that can't be
// referred to: one that failed, or one that its reader keeps in another form.
using LoadedEntry = uintptr_t;

}  // namespace zp

struct CArchive::Identities {
  static constexpr DWORD maxIndex = 0x3FFFFFFE;

  DWORD nCount = 0;  // indexes given out so far, storing
  zp::IdentityTable stored;
  zp::IdentityTable storedClasses;
  CRuntimeClass const * pLastClass = nullptr;  // the class written last and its index
  DWORD nLastClass = 0;
  std::vector<zp::LoadedEntry> loaded{0};  // index 0 is the null pointer
  size_t nForgotten = SIZE_MAX;            // from here on, no entry is an object that still lives

  // The index of a class that is being stored; behind nCount for one that is new.
  DWORD IndexOfClass(CRuntimeClass const * record);

  void Enter(CObject * object);
  void ForgetObjectsFrom(size_t index);
};
