// What an archive knows of the classes and objects that went through it: one counter for both, from 1.

#pragma once

#include <zpbase/platform/archive.h>

#include <iterator>
#include <memory>
#include <vector>

namespace zp {

// The two bytes in front of each object pointer's content; archive_objects.cpp has their table.
struct ArchiveTag {
  static constexpr size_t bytes = 2;
  static constexpr WORD null = 0x0000;
  static constexpr WORD big = 0x7FFF;
  static constexpr WORD classBit = 0x8000;
  static constexpr WORD newClass = 0xFFFF;
  static constexpr DWORD bigClassBit = 0x80000000;  // in the DWORD behind a big tag
};

// From addresses to the indexes that they were given. Objects that lie near each other share a leaf with a place for each
// pointer-sized unit; leaves are found by open addressing, and the last one is at hand, since neighbours come in turn.
class IdentityTable {
 public:
  // The index under key, which is set to candidate if the key is new.
  DWORD FindOrInsert(void const * key, DWORD candidate)
  {
    auto const address = reinterpret_cast<uintptr_t>(key);
    uintptr_t const region = address / Leaf::bytes;
    if (m_pLast == nullptr || region != m_nLastRegion) {
      m_pLast = &LeafOf(region);
      m_nLastRegion = region;
    }
    DWORD & index = m_pLast->index[address / sizeof(void *) % std::size(m_pLast->index)];
    if (index == 0) index = candidate;
    return index;
  }

 private:
  struct Leaf {
    static constexpr size_t bytes = 256;  // of memory that it covers
    DWORD index[bytes / sizeof(void *)];
  };
  struct Slot {
    uintptr_t region;
    Leaf * leaf;  // null: unused
  };

  Slot & PlaceOf(uintptr_t region)
  {
    size_t const mask = m_Slots.size() - 1;
    size_t place = region * 0x9E3779B97F4A7C15u >> m_nShift;
    while (m_Slots[place].leaf != nullptr && m_Slots[place].region != region) place = (place + 1) & mask;
    return m_Slots[place];
  }
  Leaf & LeafOf(uintptr_t region);
  void Grow();

  std::vector<Slot> m_Slots;
  std::vector<std::unique_ptr<Leaf[]>> m_Chunks;  // of leaves
  size_t m_nLeaves = 0;
  int m_nShift = 64;  // leaves as many bits of the hash as the table has
  Leaf * m_pLast = nullptr;
  uintptr_t m_nLastRegion = 0;
};

// The objects that an archive has stored, with their indexes. One archive of the process at a time leaves the index in the object
// itself, and proves it by its list of objects: a mark that an earlier archive left leads to nothing there, or to another object.
// An archive that finds another one at that keeps a table of addresses instead. So an object that nobody changes may go through
// archives of several threads at once: one of them alone touches marks, and the next one that may sees what it left.
class StoredObjects {
 public:
  StoredObjects() = default;
  StoredObjects(StoredObjects const &) = delete;
  StoredObjects & operator=(StoredObjects const &) = delete;
  ~StoredObjects();

  // The object's index, which becomes candidate, above all that were given, if the object is new.
  DWORD FindOrInsert(CObject const * object, DWORD candidate)
  {
    if (m_Way == Way::undecided) Decide();
    if (m_Way == Way::table) return m_Table.FindOrInsert(object, candidate);
    DWORD & mark = object->m_Mark.m_nMark;
    if (mark < candidate && mark / chunkSize < m_Chunks.size() && PlaceOf(mark) == object) return mark;
    while (candidate / chunkSize >= m_Chunks.size()) AddChunk();
    PlaceOf(candidate) = object;
    mark = candidate;
    return candidate;
  }

 private:
  enum class Way { undecided, marks, table };
  static constexpr size_t chunkSize = 1024;

  CObject const *& PlaceOf(DWORD index) { return m_Chunks[index / chunkSize][index % chunkSize]; }
  void Decide();
  void AddChunk() { m_Chunks.push_back(std::make_unique<CObject const *[]>(chunkSize)); }

  Way m_Way = Way::undecided;
  std::vector<std::unique_ptr<CObject const *[]>> m_Chunks;  // by index; null at that of a class
  IdentityTable m_Table;
};

// An entry of a loading archive: an object, a class (marked in the lowest bit of its address), or 0 for an object that failed and
// can't be referred to.
using LoadedEntry = uintptr_t;

}  // namespace zp

struct CArchive::Identities {
  static constexpr DWORD maxIndex = 0x3FFFFFFE;

  DWORD given = 0;  // indexes given out so far, storing
  zp::StoredObjects stored;
  zp::IdentityTable storedClasses;
  struct KnownClass {
    CRuntimeClass const * record;
    DWORD index;
  };
  KnownClass recentClasses[16] = {};  // by the address of their records

  // Loading. Entry 0 is the null pointer. Objects that their readers keep in another form are gaps between the entries.
  struct Gap {
    size_t index;  // of the first object in it
    size_t count;
  };
  std::vector<zp::LoadedEntry> loaded{0};
  std::vector<Gap> gaps;
  size_t inGaps = 0;
  size_t forgotten = SIZE_MAX;  // from this entry on, none is an object that still lives

  size_t LoadedCount() const { return loaded.size() + inGaps; }
  zp::LoadedEntry At(size_t index) const;  // 0 inside a gap
  void AddGap(size_t count);

  // The index of a class that is being stored; behind given for one that is new.
  DWORD IndexOfClass(CRuntimeClass const * record)
  {
    KnownClass & known = recentClasses[reinterpret_cast<uintptr_t>(record) / sizeof(CRuntimeClass) % std::size(recentClasses)];
    if (known.record != record) known = {record, storedClasses.FindOrInsert(record, given + 1)};
    return known.index;
  }

  void Enter(CObject * object);
  void ForgetObjectsFrom(size_t entry);
};
