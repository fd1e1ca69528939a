// GPDataFile: opening and closing, look-ups, and the records' way in and out. Compaction is in compaction.cpp, the index file
// in index_file.cpp.
//
// A record keeps its place while its length stays. Otherwise its block is freed, and the smallest free block that fits takes it,
// the first freed among equals, whole; only where none fits does the file grow. Header and payload travel in one system call; the
// file's length and the capacities seen so far are known and not asked for again.

#include <zpbase/store.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include <zpbase/messages.h>

#include "store/store_internal.h"

GPDataFile::GPDataFile(CString const & indexFile, CString const & recFile, unsigned int accessMode, CObject * (*newHeader)())
    : m_strIndexFile(indexFile), m_strRecFile(recFile), m_RecFile(recFile), m_pfnNewHeader(newHeader)
{
  Open(accessMode);
}

GPDataFile::~GPDataFile()
{
  Close();
}

int GPDataFile::Open(unsigned int accessMode)
{
  if (m_RecFile.IsOpen()) return 0;
  m_nAccessMode = accessMode;
  if (LoadIndexFile()) return 1;
  m_pHeader = m_pfnNewHeader != nullptr ? m_pfnNewHeader() : new GPObject;
  m_pActiveRecs = std::make_unique<zp::ActiveTable>();
  m_pEmptyRecs = std::make_unique<zp::FreeTable>();
  return 1;
}

int GPDataFile::LoadIndexFile()
{
  GPFile file(m_strIndexFile);
  if (file.IsEmpty()) return 0;
  file.Open(CFile::modeRead);
  CArchive ar(&file, CArchive::load, 0x10000);
  zp::StoreIndex index = zp::ReadIndex(ar);
  ar.Close();
  file.Close();
  m_pHeader = index.header.release();
  m_pActiveRecs = std::move(index.active);
  m_pEmptyRecs = std::move(index.free);
  return 1;
}

// The index is made in memory first, so that a header that can't be streamed leaves the old file alone.
int GPDataFile::StoreIndexFile()
{
  GPFile file(m_strIndexFile);
  if (m_bIndexDirty) {
    GPMemFile bytes;
    CArchive ar(&bytes, CArchive::store);
    zp::WriteIndex(ar, m_pHeader, *m_pActiveRecs, *m_pEmptyRecs);
    ar.Close();
    if (file.Open(CFile::modeCreate | CFile::modeNoTruncate)) {
      file.GPFile::Write(bytes.GetMemPtr(), static_cast<UINT>(bytes.GetLength()));
      file.SetLength(bytes.GetLength());
      file.Close();
    }
    m_bIndexDirty = 0;
  }
  return file.Exists();
}

int GPDataFile::Close()
{
  try {
    if (m_pActiveRecs != nullptr) StoreIndexFile();
    if (m_RecFile.IsOpen()) m_RecFile.Close();
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    char text[260];
    problem->GetErrorMessage(text, sizeof text);
    PutWarning("Close store %s -> %s", m_strIndexFile.GetString(), text);
    if (m_RecFile.IsOpen()) m_RecFile.Abort();
  }
  m_bIndexDirty = 0;
  m_pEmptyRecs.reset();
  m_pActiveRecs.reset();
  delete std::exchange(m_pHeader, nullptr);
  return 1;
}

int GPDataFile::IsEmpty() const
{
  return GetRecCount() == 0;
}

int GPDataFile::GetRecCount() const
{
  return m_pActiveRecs != nullptr ? m_pActiveRecs->GetCount() : 0;
}

unsigned int GPDataFile::GetFirstRecID() const
{
  return m_pActiveRecs != nullptr ? static_cast<unsigned int>(m_pActiveRecs->GetFirstID()) : 0;
}

unsigned int GPDataFile::GetLastRecID() const
{
  return m_pActiveRecs != nullptr ? static_cast<unsigned int>(m_pActiveRecs->GetLastID()) : 0;
}

unsigned int GPDataFile::GetNextRecID() const
{
  return m_pActiveRecs != nullptr ? GetLastRecID() + 1 : 0;
}

unsigned int GPDataFile::GetRecLength(int id) const
{
  zp::ActiveEntry const * const entry = m_pActiveRecs != nullptr ? m_pActiveRecs->Find(id) : nullptr;
  return entry != nullptr ? entry->length : 0;
}

int GPDataFile::OpenRecFile(unsigned int flags)
{
  if (!m_RecFile.Open(flags)) return 0;
  m_nRecFileLength = m_RecFile.GetLength();
  return 1;
}

unsigned int GPDataFile::LoadRec(void * buffer, unsigned int size, int id)
{
  zp::ActiveEntry const * const entry = m_pActiveRecs != nullptr ? m_pActiveRecs->Find(id) : nullptr;
  if (entry == nullptr || entry->length == 0 || size < entry->length || entry->position > zp::maxBlockPosition) return 0;
  if (!m_RecFile.IsOpen() && (m_RecFile.IsEmpty() || !OpenRecFile(m_nAccessMode))) return 0;
  UINT const length = entry->length;
  return m_RecFile.ReadAt(ULONGLONG{entry->position} + zp::headerBytes, buffer, length) == length ? length : 0;
}

CObject * GPDataFile::LoadObj(int id)
{
  unsigned int const length = GetRecLength(id);
  if (length == 0) return nullptr;
  auto const bytes = std::make_unique_for_overwrite<BYTE[]>(length);
  if (LoadRec(bytes.get(), length, id) == 0) return nullptr;
  CMemFile file(bytes.get(), length);
  CArchive ar(&file, CArchive::load);
  std::unique_ptr<CObject> object(ar.ReadOwnedObject(nullptr));
  ar.Close();
  return object.release();
}

int GPDataFile::StoreObj(CObject const * object, int id)
{
  GPMemFile bytes;
  CArchive ar(&bytes, CArchive::store);
  ar.WriteObject(object);
  ar.Close();
  return bytes.GetLength() <= zp::maxRecordLength ? StoreRec(bytes.GetMemPtr(), static_cast<unsigned int>(bytes.GetLength()), id)
                                                  : 0;
}

int GPDataFile::StoreRec(void const * data, unsigned int length, int id)
{
  if (m_pActiveRecs == nullptr || length == 0 || length > zp::maxRecordLength || id < 0 || id > zp::maxRecordID) return 0;
  if (!m_RecFile.Exists())
    OpenRecFile(CFile::modeCreate | CFile::modeNoTruncate);  // a failure shows in the first access below
  else if (!m_RecFile.IsOpen() && !OpenRecFile(CFile::modeReadWrite))
    return 0;
  if (zp::ActiveEntry * const entry = m_pActiveRecs->Find(id); entry != nullptr)
    return entry->length == length ? Overwrite(data, *entry) : ReplaceRec(data, length, *entry);
  zp::ActiveEntry & entry = m_pActiveRecs->Add(id);
  entry.length = static_cast<WORD>(length);
  return StoreNewRec(data, entry);
}

// True when the block's header says that it is free and as large as the index has it.
bool GPDataFile::IsFreeBlock(zp::FreeBlock const & block) const
{
  if (block.isSeen) return true;
  BYTE header[zp::headerBytes];
  return block.position <= zp::maxBlockPosition && m_RecFile.ReadAt(block.position, header, sizeof header) == sizeof header &&
         zp::BlockHeader::Read(header).isFree && zp::BlockHeader::Read(header).capacity == block.capacity;
}

// The smallest free block that fits, taken from the table, else one at the end of the file; false if the file can't grow. A
// block that the record file doesn't know as free is forgotten: writing there could destroy a record.
bool GPDataFile::TakePlace(unsigned int length, zp::FreeBlock & block)
{
  while (m_pEmptyRecs->TakeBestFit(length, block))
    if (IsFreeBlock(block)) return true;
  block = {static_cast<DWORD>(m_nRecFileLength), static_cast<WORD>(length), true};
  return m_nRecFileLength <= zp::maxBlockPosition;
}

// Finds a place for a record whose entry has its id and length.
int GPDataFile::StoreNewRec(void const * data, zp::ActiveEntry & entry)
{
  m_bIndexDirty = 1;
  if (!m_RecFile.IsOpen()) m_RecFile.GetLength();  // raises: the file couldn't be created
  zp::FreeBlock block;
  return TakePlace(entry.length, block) ? PutRec(data, entry, block) : 0;
}

int GPDataFile::PutRec(void const * data, zp::ActiveEntry & entry, zp::FreeBlock const & block)
{
  m_bIndexDirty = 1;
  entry.position = block.position;
  entry.capacity = block.capacity;
  return WriteBlock(data, entry);
}

// The block at the entry's place keeps its capacity. If no block with room for the record stands there, the record goes to
// another place and that one is left alone.
int GPDataFile::Overwrite(void const * data, zp::ActiveEntry & entry)
{
  return CapacityOf(entry) < entry.length ? StoreNewRec(data, entry) : WriteBlock(data, entry);
}

// The record's own block is free by the time that a place is looked for, so it may be the one that is taken: then its header
// is written once.
int GPDataFile::ReplaceRec(void const * data, unsigned int length, zp::ActiveEntry & entry)
{
  unsigned int const capacity = CapacityOf(entry);
  if (capacity == 0 || (capacity < length && m_nRecFileLength > zp::maxBlockPosition)) return 0;
  m_pEmptyRecs->Add({entry.position, static_cast<WORD>(capacity), true});
  zp::FreeBlock block;
  TakePlace(length, block);
  if (block.position != entry.position) MarkFree(entry);
  entry.length = static_cast<WORD>(length);
  return PutRec(data, entry, block);
}

int GPDataFile::DeleteRec(int id)
{
  if (m_pActiveRecs == nullptr || !m_RecFile.Exists()) return 0;
  zp::ActiveEntry * const entry = m_pActiveRecs->Find(id);
  if (entry == nullptr) return 0;
  if (!m_RecFile.IsOpen() && !OpenRecFile(CFile::modeReadWrite)) return 0;
  unsigned int const capacity = CapacityOf(*entry);
  if (capacity == 0) return 0;
  MarkFree(*entry);
  m_bIndexDirty = 1;
  m_pEmptyRecs->Add({entry->position, static_cast<WORD>(capacity), true});
  m_pActiveRecs->Remove(*entry);
  return 1;
}

// The capacity of a live record's block, read from its header once; 0 if there is no whole header or it can't be reached.
unsigned int GPDataFile::CapacityOf(zp::ActiveEntry & entry)
{
  if (entry.capacity == zp::ActiveEntry::unknown) {
    if (entry.position > zp::maxBlockPosition) return 0;
    BYTE header[zp::headerBytes];
    if (m_RecFile.ReadAt(entry.position, header, sizeof header) != sizeof header) return 0;
    entry.capacity = zp::BlockHeader::Read(header).capacity;
  }
  return static_cast<unsigned int>(entry.capacity);
}

int GPDataFile::WriteBlock(void const * data, zp::ActiveEntry const & entry)
{
  BYTE block[zp::headerBytes + zp::maxRecordLength];
  zp::BlockHeader{static_cast<WORD>(entry.id), false, entry.length, static_cast<WORD>(entry.capacity)}.Write(block);
  std::memcpy(block + zp::headerBytes, data, entry.length);
  UINT const count = zp::headerBytes + entry.length;
  if (m_RecFile.WriteRecord(entry.position, block, count))
    m_nRecFileLength = std::max(m_nRecFileLength, ULONGLONG{entry.position} + count);
  else
    m_nRecFileLength = m_RecFile.GetLength();
  return 1;
}

void GPDataFile::MarkFree(zp::ActiveEntry const & entry)
{
  BYTE mark[2];
  zp::WriteLittle(mark, static_cast<WORD>(entry.id | zp::BlockHeader::freeMark));
  m_RecFile.WriteRecord(entry.position, mark, sizeof mark);
}

void GPDataFile::SetStatus(CFileStatus const & status)
{
  Close();
  GPFile::SetStatus(m_strRecFile, status);
  GPFile::SetStatus(m_strIndexFile, status);
}
