// The index file: one archive of three objects, which are the store's header object, a GPObArray of the live records in
// ascending id, and a GPObList of the free blocks in ascending capacity.
//
//   class        offset  width  content
//   GPActiveRec  0       4      position of the block's header in the record file
//                4       2      record id, with sign
//                6       2      bytes of the record
//   GPEmptyRec   0       4      position of the block's header
//                4       2      bytes of the payload area
//
// A store with one record, id 2 at offset 10 of 2 bytes, writes it as FF FF 01 00 0B 00 "GPActiveRec" 0A 00 00 00 02 00 02 00;
// a second one as the tag 05 80 and its eight bytes. Entries go between the file and the tables without objects of their own.

#include "store/store_internal.h"

#include <zpbase/platform/archive_parts.h>

IMPLEMENT_SERIAL(GPActiveRec, GPObject, 1)
IMPLEMENT_SERIAL(GPEmptyRec, GPObject, 1)

namespace {

constexpr ULONGLONG tagBytes = 2;

template <class Entry>
Entry const * entryOf(GPObject const * object)
{
  return object->IsKindOf(RUNTIME_CLASS(Entry)) ? static_cast<Entry const *>(object) : nullptr;
}

// Reads a container of the class given, whose elements are new objects of exactly the class that the table stores. The usual
// ones, of a class that came before and with their bytes in the archive's buffer, are taken in runs.
template <class Container, class Table>
void readEntries(CArchive & ar, zp::IndexBytes const & buffer, Table & table)
{
  using Entry = typename Table::Stored;
  zp::ArchiveParts parts(ar);
  if (parts.ReadClass(RUNTIME_CLASS(Container)) == nullptr) AfxThrowArchiveException(CArchiveException::badClass);
  parts.MapObjects(1);
  DWORD count = ar.ReadCount();
  ar.RequireBytes(count * tagBytes);
  while (count > 0) {
    BYTE const * bytes = nullptr;
    size_t run = parts.ReadRun(RUNTIME_CLASS(Entry), Entry::streamBytes, count, bytes);
    if (run == 0) {
      if (parts.ReadClass(nullptr) != RUNTIME_CLASS(Entry)) AfxThrowArchiveException(CArchiveException::badClass);
      parts.MapObjects(1);
      bytes = parts.ReadInPlace(Entry::streamBytes);
      run = 1;
    }
    table.Append(buffer, bytes, run);
    count -= static_cast<DWORD>(run);
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

StoreIndex ReadIndex(CArchive & ar, IndexBytes const & buffer)
{
  StoreIndex index;
  index.header.reset(ar.ReadOwnedObject(nullptr));
  index.active = std::make_unique<ActiveTable>();
  index.free = std::make_unique<FreeTable>();
  readEntries<GPObArray>(ar, buffer, *index.active);
  readEntries<GPObList>(ar, buffer, *index.free);
  return index;
}

void WriteIndex(CArchive & ar, CObject const * header, ActiveTable const & active, FreeTable const & free)
{
  ArchiveParts parts(ar);
  ar.WriteObject(header);
  parts.WriteClass(RUNTIME_CLASS(GPObArray));
  ar.WriteCount(static_cast<DWORD>(active.GetCount()));
  active.ForEach([&](ActiveEntry const & entry) {
    parts.WriteClass(RUNTIME_CLASS(GPActiveRec));
    ar << entry.position << static_cast<short>(entry.id) << entry.length;
  });
  parts.WriteClass(RUNTIME_CLASS(GPObList));
  ar.WriteCount(static_cast<DWORD>(free.GetCount()));
  free.ForEach([&](FreeBlock const & block) {
    parts.WriteClass(RUNTIME_CLASS(GPEmptyRec));
    ar << block.position << block.capacity;
  });
}

}  // namespace zp
