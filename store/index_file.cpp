// The index file: one archive of three objects, which are the store's header object, a GPObArray of the live records in
// ascending id, and a GPObList of the free blocks in ascending capacity.
//
//   GPActiveRec   DWORD position of the block's header, short id, WORD length
//   GPEmptyRec    DWORD position of the block's header, WORD capacity
//
// A store with one record, id 2 at offset 10 of 2 bytes, writes it as FF FF 01 00 0B 00 "GPActiveRec" 0A 00 00 00 02 00 02 00;
// a second one as the tag 05 80 and its eight bytes. Entries go between the file and the tables without objects of their own.

#include "store/store_internal.h"

IMPLEMENT_SERIAL(GPActiveRec, GPObject, 1)
IMPLEMENT_SERIAL(GPEmptyRec, GPObject, 1)

namespace {

constexpr ULONGLONG tagBytes = 2;

template <class Entry>
Entry const * entryOf(GPObject const * object)
{
  return object->IsKindOf(RUNTIME_CLASS(Entry)) ? static_cast<Entry const *>(object) : nullptr;
}

// Reads the elements of a container of the class given: each a new object of exactly the class Entry, whose bytes read takes.
template <class Container, class Entry, class Read>
void readEntries(CArchive & ar, Read read)
{
  if (ar.ReadClass(RUNTIME_CLASS(Container)) == nullptr) AfxThrowArchiveException(CArchiveException::badClass);
  ar.MapObjects(1);
  DWORD const count = ar.ReadCount();
  ar.RequireBytes(count * tagBytes);
  for (DWORD i = 0; i < count; ++i) {
    if (ar.ReadClass(nullptr) != RUNTIME_CLASS(Entry)) AfxThrowArchiveException(CArchiveException::badClass);
    ar.MapObjects(1);
    read();
  }
}

}  // namespace

void GPActiveRec::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  if (ar.IsStoring()) {
    ar << m_nFilePos << static_cast<short>(m_nRecID) << static_cast<WORD>(m_nRecLen);
    return;
  }
  short id;
  WORD length;
  ar >> m_nFilePos >> id >> length;
  m_nRecID = id;
  m_nRecLen = length;
}

int GPActiveRec::Compare(GPObject const * other) const
{
  auto const * const entry = entryOf<GPActiveRec>(other);
  return entry != nullptr ? m_nRecID - entry->m_nRecID : GPObject::Compare(other);
}

void GPEmptyRec::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  if (ar.IsStoring()) {
    ar << m_nFilePos << static_cast<WORD>(m_nBlockSize);
    return;
  }
  WORD capacity;
  ar >> m_nFilePos >> capacity;
  m_nBlockSize = capacity;
}

int GPEmptyRec::Compare(GPObject const * other) const
{
  auto const * const entry = entryOf<GPEmptyRec>(other);
  return entry != nullptr ? static_cast<int>(m_nBlockSize - entry->m_nBlockSize) : GPObject::Compare(other);
}

namespace zp {

StoreIndex ReadIndex(CArchive & ar)
{
  StoreIndex index;
  index.pHeader.reset(ar.ReadOwnedObject(nullptr));
  std::vector<ActiveEntry> active;
  readEntries<GPObArray, GPActiveRec>(ar, [&] {
    ActiveEntry & entry = active.emplace_back();
    short id;
    ar >> entry.nFilePos >> id >> entry.nRecLen;
    entry.nRecID = id;
  });
  std::vector<FreeBlock> free;
  readEntries<GPObList, GPEmptyRec>(ar, [&] {
    FreeBlock & block = free.emplace_back();
    ar >> block.nFilePos >> block.nCapacity;
  });
  index.pActive = std::make_unique<ActiveTable>(std::move(active));
  index.pFree = std::make_unique<FreeTable>(free);
  return index;
}

void WriteIndex(CArchive & ar, CObject const * header, ActiveTable const & active, FreeTable const & free)
{
  ar.WriteObject(header);
  ar.WriteClass(RUNTIME_CLASS(GPObArray));
  ar.WriteCount(static_cast<DWORD>(active.GetCount()));
  active.ForEach([&](ActiveEntry const & entry) {
    ar.WriteClass(RUNTIME_CLASS(GPActiveRec));
    ar << entry.nFilePos << static_cast<short>(entry.nRecID) << entry.nRecLen;
  });
  ar.WriteClass(RUNTIME_CLASS(GPObList));
  ar.WriteCount(static_cast<DWORD>(free.GetCount()));
  free.ForEach([&](FreeBlock const & block) {
    ar.WriteClass(RUNTIME_CLASS(GPEmptyRec));
    ar << block.nFilePos << block.nCapacity;
  });
}

WORD LittleWord(BYTE const * bytes)
{
  return static_cast<WORD>(bytes[0] | bytes[1] << 8);
}

void PutLittleWord(BYTE * bytes, unsigned int value)
{
  bytes[0] = static_cast<BYTE>(value);
  bytes[1] = static_cast<BYTE>(value >> 8);
}

}  // namespace zp
