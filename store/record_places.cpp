// GPDataFile: the places of records in the record file.
//
// A record keeps its place while its length stays. Otherwise its block is freed, and the smallest free block that fits takes it,
// the first freed among equals, whole; only where none fits does the file grow. Header and payload travel in one system call; the
// file's length and the capacities seen so far are known and not asked for again. A record that moves is written in its new place
// before the old one is marked as free, and the tables change when both are done: what fails in between leaves the old record.

#include <zpbase/store.h>

#include <cstring>
#include <utility>

#include "store/record_image_internal.h"
#include "store/store_internal.h"

// The header at position; false where the file holds none.
bool GPDataFile::ReadHeader(DWORD position, zp::BlockHeader & header)
{
  if (position > zp::maxBlockPosition || ULONGLONG{position} + zp::headerBytes > m_nRecFileLength) return false;
  BYTE bytes[zp::headerBytes];
  if (m_RecFile.ReadAt(position, bytes, sizeof bytes) != sizeof bytes) return false;
  header = zp::BlockHeader::Read(bytes);
  return true;
}

// As above for a block that the index tells of; false also unless it ends inside the file and in front of the next known one.
bool GPDataFile::ReadKnownHeader(DWORD position, zp::BlockHeader & header)
{
  if (!ReadHeader(position, header)) return false;
  if (m_pPositions == nullptr) {
    m_pPositions = std::make_unique<zp::BlockPositions>(*m_pActiveRecs, *m_pEmptyRecs, m_nRecFileLength);
  }
  return ULONGLONG{position} + zp::headerBytes + header.capacity <= m_pPositions->EndFor(position);
}

// True when the block at the entry's place is that of the record.
bool GPDataFile::HasBlock(zp::ActiveEntry & entry)
{
  if (entry.capacity != zp::ActiveEntry::unknown) return true;
  zp::BlockHeader header;
  if (!ReadKnownHeader(entry.position, header) || header.isFree) return false;
  if (header.id != static_cast<WORD>(entry.id) || header.capacity < entry.length) return false;
  entry.capacity = header.capacity;
  return true;
}

// True when the block is free and as large as the index has it.
bool GPDataFile::IsFreeBlock(zp::FreeBlock const & block)
{
  if (block.isSeen) return true;
  zp::BlockHeader header;
  return ReadKnownHeader(block.position, header) && header.isFree && header.capacity == block.capacity;
}

// The smallest free block that fits. One that the record file doesn't know as free is forgotten: writing there could destroy a
// record.
bool GPDataFile::FindFree(unsigned int length, zp::FreeBlock & block)
{
  while (m_pEmptyRecs->GetBestFit(length, block)) {
    if (IsFreeBlock(block)) return true;
    m_pEmptyRecs->TakeBestFit(length);
    m_bIndexDirty = 1;
  }
  return false;
}

// A free block, else one at the end of the file; false if the file can't grow.
bool GPDataFile::FindPlace(unsigned int length, zp::Place & place)
{
  place.isNew = !FindFree(length, place.block);
  if (!place.isNew) return true;
  place.block = {static_cast<DWORD>(m_nRecFileLength), static_cast<WORD>(length), true};
  return m_nRecFileLength + zp::headerBytes + length < zp::maxBlockPosition;
}

bool GPDataFile::WriteBlock(void const * data, unsigned int length, int id, zp::FreeBlock const & block)
{
  BYTE bytes[zp::headerBytes + zp::maxRecordLength];
  zp::BlockHeader{static_cast<WORD>(id), false, static_cast<WORD>(length), block.capacity}.Write(bytes);
  std::memcpy(bytes + zp::headerBytes, data, length);
  return WriteBytes(block.position, bytes, zp::headerBytes + length);
}

// The image forgets first: what a write that fails has left isn't known.
bool GPDataFile::WriteBytes(ULONGLONG position, void const * bytes, UINT count)
{
  if (m_pImage != nullptr) m_pImage->Forget(position, count);
  return m_RecFile.WriteRecord(position, bytes, count) != 0;
}

// What came short is cut back; if it can't be, it is tried again with the next block and at the close.
bool GPDataFile::Append(void const * data, unsigned int length, int id)
{
  bool const hadTail = std::exchange(m_bTail, true);
  bool const written = WriteBlock(data, length, id, {static_cast<DWORD>(m_nRecFileLength), static_cast<WORD>(length), true});
  if (written) {
    m_nRecFileLength += zp::headerBytes + length;
    m_bTail = hadTail;
  }
  CutTail();
  return written;
}

void GPDataFile::CutTail()
{
  if (!m_bTail) return;
  if (m_pImage != nullptr) m_pImage->ForgetFrom(m_nRecFileLength);
  try {
    m_RecFile.SetLength(m_nRecFileLength);
    m_bTail = false;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
  }
}

bool GPDataFile::MarkFree(DWORD position, int id)
{
  BYTE mark[2];
  zp::WriteLittle(mark, static_cast<WORD>(id | zp::BlockHeader::freeMark));
  return WriteBytes(position, mark, sizeof mark);
}

// A free block whose write failed gets the header of one again: that may have been written, or a part of it.
bool GPDataFile::WriteAtPlace(void const * data, unsigned int length, int id, zp::Place const & place)
{
  if (place.isNew) return Append(data, length, id);
  if (WriteBlock(data, length, id, place.block)) return true;
  BYTE header[zp::headerBytes];
  zp::BlockHeader{static_cast<WORD>(id), true, static_cast<WORD>(length), place.block.capacity}.Write(header);
  WriteBytes(place.block.position, header, sizeof header);
  return false;
}

// Takes back what WriteAtPlace has done.
void GPDataFile::LeavePlace(int id, zp::Place const & place, unsigned int length)
{
  if (!place.isNew) {
    MarkFree(place.block.position, id);
    return;
  }
  m_nRecFileLength -= zp::headerBytes + length;
  m_bTail = true;
  CutTail();
}

// Finds a place for a record that has none. A new one gets its entry even if there isn't any.
int GPDataFile::StoreNewRec(void const * data, unsigned int length, int id, zp::ActiveEntry * entry)
{
  zp::Place place;
  bool const found = m_RecFile.IsOpen() && FindPlace(length, place);
  if (entry == nullptr) {
    entry = &m_pActiveRecs->Add(id, length);
    m_bIndexDirty = 1;
  }
  if (!m_RecFile.IsOpen()) m_RecFile.GetLength();  // raises: the file couldn't be created
  if (!found) return 0;
  if (!WriteAtPlace(data, length, id, place)) return 1;
  if (!place.isNew) m_pEmptyRecs->TakeBestFit(length);
  *entry = {entry->id, static_cast<WORD>(length), place.block.position, place.block.capacity};
  m_bIndexDirty = 1;
  return 1;
}

// The record's own block counts as the last freed of its size.
int GPDataFile::ReplaceRec(void const * data, unsigned int length, zp::ActiveEntry & entry)
{
  auto const capacity = static_cast<unsigned int>(entry.capacity);
  zp::Place place;
  bool const found = FindPlace(length, place);
  bool const fitsItsOwn = capacity >= length && (place.isNew || place.block.capacity > capacity);
  if (fitsItsOwn) return ShrinkRec(data, length, entry);
  return found ? MoveRec(data, length, entry, place) : 0;
}

int GPDataFile::MoveRec(void const * data, unsigned int length, zp::ActiveEntry & entry, zp::Place const & place)
{
  zp::FreeBlock const freed{entry.position, static_cast<WORD>(entry.capacity), true};
  m_pEmptyRecs->ReserveOne(freed.capacity);
  if (!WriteAtPlace(data, length, entry.id, place)) return 1;
  if (!MarkFree(freed.position, entry.id)) {
    LeavePlace(entry.id, place, length);
    return 0;
  }
  if (!place.isNew) m_pEmptyRecs->TakeBestFit(length);
  m_pEmptyRecs->Add(freed);
  entry = {entry.id, static_cast<WORD>(length), place.block.position, place.block.capacity};
  m_bIndexDirty = 1;
  return 1;
}

// Over the old record. If the write fails the entry tells the length that the header has by then.
int GPDataFile::ShrinkRec(void const * data, unsigned int length, zp::ActiveEntry & entry)
{
  if (!WriteBlock(data, length, entry.id, {entry.position, static_cast<WORD>(entry.capacity), true})) {
    zp::BlockHeader header;
    try {
      if (!ReadHeader(entry.position, header) || header.length != length) return 1;
    } catch (CFileException * problem) {
      zp::ExceptionGuard const guard(problem);
      return 1;
    }
  }
  entry.length = static_cast<WORD>(length);
  m_bIndexDirty = 1;
  return 1;
}
