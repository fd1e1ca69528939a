// GPDataFile: opening and closing, look-ups, and the records' way in and out. Where a record goes is decided in
// record_places.cpp; compaction is in compaction.cpp, the way of the index in and out in index_access.cpp.

#include <zpbase/store.h>

#include <new>
#include <utility>

#include <zpbase/messages.h>

#include "store/record_image_internal.h"
#include "store/store_internal.h"

GPDataFile::GPDataFile(CString const & indexFile, CString const & recFile, unsigned int accessMode, CObject * (*newHeader)())
    : m_strIndexFile(indexFile), m_strRecFile(recFile), m_RecFile(recFile), m_pfnNewHeader(newHeader)
{
  Open(accessMode);
}

// Memory that ran out may be there again; a header object that can't be stored is left out.
GPDataFile::~GPDataFile()
{
  int closed = TryClose();
  if (closed < 0) closed = TryClose();
  if (closed < 0) {
    PutWarning("Close store %s -> its header object can't be stored", m_strIndexFile.GetString());
    delete std::exchange(m_pHeader, nullptr);
    closed = TryClose();
  }
  if (closed <= 0) PutWarning("Close store %s -> the index isn't written", m_strIndexFile.GetString());
  DropTables();
}

// What Close gives, or -1 where it raises.
int GPDataFile::TryClose()
{
  try {
    return Close();
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
  } catch (...) {  // the header object may raise anything
  }
  return -1;
}

void GPDataFile::DropTables()
{
  m_pEmptyRecs.reset();
  m_pActiveRecs.reset();
  m_pPositions.reset();
  delete std::exchange(m_pHeader, nullptr);
}

int GPDataFile::Open(unsigned int accessMode)
{
  if (m_RecFile.IsOpen() || m_bIndexDirty) return 0;
  m_nAccessMode = accessMode;
  DropTables();
  m_RecFile.LookAgain();
  if (LoadIndexFile()) return 1;
  auto active = std::make_unique<zp::ActiveTable>();
  auto free = std::make_unique<zp::FreeTable>();
  m_pHeader = m_pfnNewHeader != nullptr ? m_pfnNewHeader() : new GPObject;
  m_pActiveRecs = std::move(active);
  m_pEmptyRecs = std::move(free);
  return 1;
}

int GPDataFile::Close()
{
  if (m_bIndexDirty && !StoreIndexFile()) return 0;
  CloseRecFile();
  DropTables();
  return 1;
}

void GPDataFile::CloseRecFile()
{
  if (!m_RecFile.IsOpen()) return;
  CutTail();
  DropImage();
  try {
    m_RecFile.Close();
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    PutWarning("Close file %s -> problem %d", m_strRecFile.GetString(), problem->m_cause);
  }
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
  zp::ActiveEntry entry;
  return m_pActiveRecs != nullptr && m_pActiveRecs->Look(id, entry) ? entry.length : 0;
}

int GPDataFile::OpenRecFile(unsigned int flags)
{
  if (!m_RecFile.Open(flags)) return 0;
  bool follows = false;
  try {
    m_nRecFileLength = m_RecFile.GetLength();
    follows = FollowIndexFile();
  } catch (...) {
    m_RecFile.Abort();
    throw;
  }
  if (!follows) {
    m_RecFile.Abort();
    return 0;
  }
  m_bTail = false;
  m_pPositions.reset();
  DropImage();
  return 1;
}

void GPDataFile::DropImage()
{
  m_pImage.reset();
  m_nReads = 0;
}

// A record file that can't be created shows in the first access.
int GPDataFile::OpenForStoring()
{
  if (m_RecFile.IsOpen()) return 1;
  if (m_RecFile.Exists()) return OpenRecFile(CFile::modeReadWrite);
  return OpenRecFile(CFile::modeCreate | CFile::modeNoTruncate) || !m_RecFile.Exists();
}

// False where the record is to be read from the file.
bool GPDataFile::LoadFromImage(ULONGLONG position, void * buffer, UINT count)
{
  if (m_pImage == nullptr) {
    if (!m_RecFile.IsLocked() || ++m_nReads <= zp::RecordImage::readsBefore) return false;
    m_pImage.reset(new (std::nothrow) zp::RecordImage(m_RecFile, m_nRecFileLength));
  }
  return m_pImage != nullptr && m_pImage->Read(position, buffer, count);
}

// The entry of a record that has bytes, no more than size of them.
bool GPDataFile::LookForBytes(unsigned int size, int id, zp::ActiveEntry & entry) const
{
  if (m_pActiveRecs == nullptr || !m_pActiveRecs->Look(id, entry)) return false;
  return entry.length > 0 && entry.length <= size && entry.position <= zp::maxBlockPosition;
}

// As above, with the record file open, which may have loaded the tables anew.
bool GPDataFile::FindBytes(unsigned int size, int id, zp::ActiveEntry & entry)
{
  if (!LookForBytes(size, id, entry)) return false;
  if (m_RecFile.IsOpen()) return true;
  return !m_RecFile.IsEmpty() && OpenRecFile(m_nAccessMode) && LookForBytes(size, id, entry);
}

unsigned int GPDataFile::LoadRec(void * buffer, unsigned int size, int id)
{
  zp::ActiveEntry entry;
  if (!FindBytes(size, id, entry)) return 0;
  UINT const length = entry.length;
  ULONGLONG const payload = ULONGLONG{entry.position} + zp::headerBytes;
  return LoadFromImage(payload, buffer, length) || m_RecFile.ReadAt(payload, buffer, length) == length ? length : 0;
}

CObject * GPDataFile::LoadObj(int id)
{
  zp::ActiveEntry entry;
  if (!FindBytes(zp::maxRecordLength, id, entry)) return nullptr;
  unsigned int const length = entry.length;
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
  if (!OpenForStoring()) return 0;
  zp::ActiveEntry * const entry = m_pActiveRecs->Find(id);
  if (entry == nullptr || !m_RecFile.IsOpen() || !HasBlock(*entry)) return StoreNewRec(data, length, id, entry);
  if (entry->length != length) return ReplaceRec(data, length, *entry);
  WriteBlock(data, length, id, {entry->position, static_cast<WORD>(entry->capacity), true});
  return 1;
}

bool GPDataFile::FreeBlockOf(zp::ActiveEntry const & entry)
{
  auto const capacity = static_cast<WORD>(entry.capacity);
  m_pEmptyRecs->ReserveOne(capacity);
  if (!MarkFree(entry.position, entry.id)) return false;
  m_pEmptyRecs->Add({entry.position, capacity, true});
  return true;
}

int GPDataFile::DeleteRec(int id)
{
  zp::ActiveEntry * entry = m_pActiveRecs != nullptr ? m_pActiveRecs->Find(id) : nullptr;
  if (entry != nullptr && entry->position != zp::noBlockPosition && !m_RecFile.IsOpen()) {
    if (!m_RecFile.Exists() || !OpenRecFile(CFile::modeReadWrite)) return 0;
    entry = m_pActiveRecs->Find(id);
  }
  if (entry == nullptr || (HasBlock(*entry) && !FreeBlockOf(*entry))) return 0;
  m_bIndexDirty = 1;
  m_pActiveRecs->Remove(*entry);
  return 1;
}

void GPDataFile::SetStatus(CFileStatus const & status)
{
  if (!Close()) return;
  GPFile::SetStatus(m_strRecFile, status);
  GPFile::SetStatus(m_strIndexFile, status);
}
