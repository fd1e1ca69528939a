// The two tables of a record store in memory, and their form in the index file.
//
// Both keep what GPObArray and GPObList of index entries would hold, in the same order, at a cost that doesn't grow with the
// store: live records in a table by id, free blocks in a queue for each capacity. An index file whose entries are out of order
// is kept and searched as it stands, entry by entry. Tables are made at the first change; until then the bytes of the index file
// stand for them, which can be searched too.

#pragma once

#include <bitset>
#include <memory>
#include <span>
#include <vector>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/store.h>

namespace zp {

inline constexpr unsigned int headerBytes = BlockHeader::byteCount;

// Which numbers of a range are taken, with a fast way to the next one up or down.
class NumberSet {
 public:
  explicit NumberSet(size_t range) : m_Words((range + 63) / 64), m_Summary((m_Words.size() + 63) / 64) {}
  void Insert(size_t number)
  {
    uint64_t & word = m_Words[number / 64];
    if (word == 0) m_Summary[number / 4096] |= uint64_t{1} << (number / 64 % 64);
    word |= uint64_t{1} << (number % 64);
  }
  void Erase(size_t number);
  bool Contains(size_t number) const { return (m_Words[number / 64] >> (number % 64) & 1) != 0; }
  int AtOrAbove(size_t number) const;  // -1 if there is none
  int AtOrBelow(size_t number) const;

 private:
  std::vector<uint64_t> m_Words;
  std::vector<uint64_t> m_Summary;  // which words hold anything
};

struct ActiveEntry {
  static constexpr int unknown = -1;

  short id;
  WORD length;
  DWORD position;  // or noBlockPosition
  int capacity;    // the block's, once it was seen in the record file
};

using IndexBytes = std::shared_ptr<BYTE const[]>;

// The entries of a table in the bytes of the index file, one behind the other, each behind the two bytes of its tag.
template <class Entry>
class KeptEntries {
 public:
  static constexpr size_t distance = Entry::streamBytes + 2;

  // Takes more entries; false unless their bytes have an owner and follow on those taken before.
  bool Extend(IndexBytes const & owner, BYTE const * first, size_t count)
  {
    if (owner == nullptr || (m_nCount > 0 && first != At(m_nCount))) return false;
    if (m_nCount == 0) m_pFirst = first;
    m_Owner = owner;
    m_nCount += count;
    return true;
  }
  bool IsEmpty() const { return m_nCount == 0; }
  size_t GetCount() const { return m_nCount; }
  BYTE const * At(size_t index) const { return m_pFirst + index * distance; }

 private:
  IndexBytes m_Owner;
  BYTE const * m_pFirst = nullptr;
  size_t m_nCount = 0;
};

class ActiveTable {
 public:
  using Stored = GPActiveRec;

  ActiveTable() : m_Ids(maxRecordID + 1) {}

  // Adds entries that lie KeptEntries::distance apart at the end. They stay in their bytes if these have an owner.
  void Append(IndexBytes const & owner, BYTE const * first, size_t count);

  // Adds an entry at the end, as a file lists it. A negative id, or one that isn't above the last, leaves the table for good in
  // the form in which it is read.
  void Append(ActiveEntry const & entry);

  // The entry for a look at it; false if there is none.
  bool Look(int id, ActiveEntry & entry)
  {
    if (!m_Kept.IsEmpty()) return LookInKept(id, entry);
    ActiveEntry const * const found = Find(id);
    if (found != nullptr) entry = *found;
    return found != nullptr;
  }

  // The entry for a change, or null.
  ActiveEntry * Find(int id)
  {
    if (!m_Kept.IsEmpty()) Make();
    if (m_bAsRead) return FindAsRead(id);
    auto const place = static_cast<size_t>(id);
    return place <= maxRecordID && m_Ids.Contains(place) ? &m_ByID[place] : nullptr;
  }

  // After a Find. A new entry without a block, in front of the first one with a larger id; it stays there until the next Add or
  // Remove.
  ActiveEntry & Add(int id, unsigned int length);
  void Remove(ActiveEntry const & entry);

  int GetCount() const { return m_nCount; }
  int GetFirstID() const;  // 0 without entries
  int GetLastID() const;

  // Calls use with each entry in the table's order.
  template <class Use>
  void ForEach(Use use) const
  {
    for (size_t i = 0; i < m_Kept.GetCount(); ++i) use(FromStream(m_Kept.At(i)));
    for (ActiveEntry const & entry : m_AsRead) use(entry);
    for (int id = m_Ids.AtOrAbove(0); id >= 0; id = m_Ids.AtOrAbove(static_cast<size_t>(id) + 1))
      use(m_ByID[static_cast<size_t>(id)]);
  }

 private:
  ActiveEntry & PlaceOf(int id)
  {
    auto const place = static_cast<size_t>(id);
    if (place >= m_nRoom) Reserve(place + 1);
    m_Ids.Insert(place);
    return m_ByID[place];
  }
  static ActiveEntry FromStream(BYTE const * bytes)
  {
    return {ReadLittle<short>(bytes + Stored::idOffset), ReadLittle<WORD>(bytes + Stored::lengthOffset),
            ReadLittle<DWORD>(bytes + Stored::positionOffset), ActiveEntry::unknown};
  }
  bool LookInKept(int id, ActiveEntry & entry);
  void Make();
  void Reserve(size_t count);
  void AppendAsRead(ActiveEntry const & entry);
  ActiveEntry * FindAsRead(int id);

  int m_nCount = 0;
  KeptEntries<Stored> m_Kept;  // all entries, until the table is made
  int m_nLooks = 0;            // into them
  int m_nLastAppended = -1;
  std::unique_ptr<ActiveEntry[]> m_ByID;  // set where m_Ids says so
  size_t m_nRoom = 0;
  NumberSet m_Ids;
  std::vector<ActiveEntry> m_AsRead;  // holds all entries, and the table none, when they were read out of order
  bool m_bAsRead = false;
};

struct FreeBlock {
  DWORD position = 0;
  WORD capacity = 0;
  bool isSeen = false;  // its header was seen in the record file, not only in the index
};

class FreeTable {
 public:
  using Stored = GPEmptyRec;

  FreeTable() : m_Capacities(maxRecordLength + 1) {}

  void Append(IndexBytes const & owner, BYTE const * first, size_t count);  // as for the live records

  void Add(FreeBlock block);               // behind the blocks of its capacity
  void ReserveOne(unsigned int capacity);  // makes room for a block, so that the next Add can't fail

  // The first block in the table's order with room for length bytes, and that block taken out; false if there is none.
  bool GetBestFit(unsigned int length, FreeBlock & block);
  bool TakeBestFit(unsigned int length);

  int GetCount() const { return m_nCount; }

  template <class Use>
  void ForEach(Use use) const
  {
    for (size_t i = 0; i < m_Kept.GetCount(); ++i) use(FromStream(m_Kept.At(i)));
    for (FreeBlock const & block : m_AsRead) use(block);
    for (int capacity = m_Capacities.AtOrAbove(0); capacity >= 0;
         capacity = m_Capacities.AtOrAbove(static_cast<size_t>(capacity) + 1))
      for (int node = m_Queues[static_cast<size_t>(capacity)].head; node >= 0; node = m_Nodes[static_cast<size_t>(node)].next)
        use(m_Nodes[static_cast<size_t>(node)].block);
  }

 private:
  struct Node {
    FreeBlock block;
    int next;
  };
  struct Queue {
    int head = -1;
    int tail = -1;
  };

  static FreeBlock FromStream(BYTE const * bytes)
  {
    return {ReadLittle<DWORD>(bytes + Stored::positionOffset), ReadLittle<WORD>(bytes + Stored::capacityOffset), false};
  }
  void Make();
  void Append(FreeBlock block);
  std::vector<FreeBlock>::const_iterator FindAsRead(unsigned int length) const;

  int m_nCount = 0;
  KeptEntries<Stored> m_Kept;  // all blocks, until the table is made
  unsigned int m_nLastAppended = 0;
  std::vector<Node> m_Nodes;
  int m_nUnusedNode = -1;
  std::vector<Queue> m_Queues;      // by capacity, as long as the largest so far
  NumberSet m_Capacities;           // whose queues aren't empty
  std::vector<FreeBlock> m_AsRead;  // as for the live records
  bool m_bAsRead = false;
};

// Where a record goes: a free block of the table, or a new one at the end of the file.
struct Place {
  FreeBlock block;
  bool isNew = false;
};

// Where the known blocks of a store start, in ascending order.
class BlockPositions {
 public:
  BlockPositions(ActiveTable const & active, FreeTable const & free, ULONGLONG fileLength);

  // How far a block at position can reach: to the next known one, or to the end of the file as it was when this was made; nowhere
  // if two are known there.
  ULONGLONG EndFor(DWORD position) const;

 private:
  std::vector<DWORD> m_Positions;
  ULONGLONG m_nFileLength;
};

// What an index file holds.
struct StoreIndex {
  std::unique_ptr<CObject> header;
  std::unique_ptr<ActiveTable> active;
  std::unique_ptr<FreeTable> free;
};

// Reads the three objects of an index file; raises the archive's exceptions. Tables that hold anything but their own entries
// are badClass. buffer is the archive's if that holds the whole file, else null.
StoreIndex ReadIndex(CArchive & ar, IndexBytes const & buffer);

void WriteIndex(CArchive & ar, CObject const * header, ActiveTable const & active, FreeTable const & free);

}  // namespace zp
