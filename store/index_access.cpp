// GPDataFile: its index file is loaded, written, and looked at again when the record file is opened: another program may have
// written both in between. What stands in the file is told in index_file.cpp.

#include <zpbase/store.h>

#include <algorithm>
#include <cerrno>

#include <zpbase/messages.h>
#include <zpbase/platform/file_status.h>
#include <zpbase/platform/system_error.h>

#include "store/store_internal.h"

namespace {

constexpr ULONGLONG largestKeptIndex = 0x400000;  // bytes
constexpr int bufferBytes = 0x10000;

zp::HostStatus statusOf(GPFile const & file)
{
  zp::HostStatus status;
  if (zp::GetHostCalls().GetStatus(file.m_hFile, status) == 0) return status;
  AfxThrowFileException(zp::CauseOfError(errno), zp::SystemErrorOfError(errno), file.GetFilePath());
}

zp::StoreIndex readIndex(CFile & file, zp::IndexBytes const & kept)
{
  CArchive ar(&file, CArchive::load, bufferBytes);
  zp::StoreIndex index = zp::ReadIndex(ar, kept);
  ar.Close();
  return index;
}

// The tables stay in the bytes, which are read whole before anything is taken from them: a program that writes the index without
// locks may be at it meanwhile.
zp::StoreIndex keepIndex(GPFile & file, UINT length)
{
  auto const bytes = std::make_shared_for_overwrite<BYTE[]>(length);
  CMemFile memory(bytes.get(), file.Read(bytes.get(), length));
  memory.SetFilePath(file.GetFilePath());
  return readIndex(memory, bytes);
}

// An index of so many bytes that they are hardly all of records doesn't stay in memory as it was read.
zp::StoreIndex readIndexFile(GPFile & file, zp::HostStatus & status)
{
  if (!file.OpenWhenFree(CFile::modeRead | CFile::shareDenyWrite)) file.RaiseOpenProblem();
  status = statusOf(file);
  auto const length = static_cast<ULONGLONG>(status.size);
  zp::StoreIndex index = length <= largestKeptIndex ? keepIndex(file, static_cast<UINT>(length)) : readIndex(file, nullptr);
  file.Close();
  return index;
}

bool haveSameBytes(CObject const * one, CObject const * other)
{
  GPMemFile files[2];
  for (size_t i = 0; i < 2; ++i) {
    CArchive ar(&files[i], CArchive::store);
    ar.WriteObject(i == 0 ? one : other);
    ar.Close();
  }
  ULONGLONG const length = files[0].GetLength();
  return length == files[1].GetLength() && std::equal(files[0].GetMemPtr(), files[0].GetMemPtr() + length, files[1].GetMemPtr());
}

}  // namespace

int GPDataFile::LoadIndexFile()
{
  m_IndexStatus = {};
  GPFile file(m_strIndexFile);
  if (file.IsEmpty()) return 0;
  zp::StoreIndex index = readIndexFile(file, m_IndexStatus);
  m_pHeader = index.header.release();
  m_pActiveRecs = std::move(index.active);
  m_pEmptyRecs = std::move(index.free);
  return 1;
}

// One that is gone, or holds nothing as it did, tells nothing new; nor does another name, mode or owner, which change other
// times.
bool GPDataFile::IsIndexAsLoaded() const
{
  zp::HostStatus now;
  zp::Presence const presence = zp::GetPresence(m_strIndexFile, now);
  if (presence != zp::Presence::There) return presence == zp::Presence::Missing;
  bool const isSame = now.IsSameFile(m_IndexStatus) && now.size == m_IndexStatus.size && now.modified == m_IndexStatus.modified;
  return isSame || (now.size == 0 && m_IndexStatus.size == 0);
}

// The header object is the caller's, who may have changed it: it stays, and must be what the file has.
bool GPDataFile::LoadChangedIndex()
{
  try {
    GPFile file(m_strIndexFile);
    if (file.IsEmpty()) return false;
    zp::HostStatus status;
    zp::StoreIndex index = readIndexFile(file, status);
    if (!haveSameBytes(index.header.get(), m_pHeader)) return false;
    m_IndexStatus = status;
    m_pActiveRecs = std::move(index.active);
    m_pEmptyRecs = std::move(index.free);
    return true;
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    return false;
  }
}

// With the record file locked: until it is closed no other program changes the index any more.
bool GPDataFile::FollowIndexFile()
{
  return IsIndexAsLoaded() || (!m_bIndexDirty && LoadChangedIndex()) || TellChangedIndex();
}

// Always false.
bool GPDataFile::TellChangedIndex() const
{
  PutWarning("Use store %s -> another program has changed it since it was opened", m_strIndexFile.GetString());
  return false;
}

// The index is made in memory first, so that a header that can't be streamed leaves the old file alone. The file is cut before it
// is written, so that one that came short reads as cut.
int GPDataFile::StoreIndexFile()
{
  if (!m_RecFile.IsLocked() && !IsIndexAsLoaded()) return TellChangedIndex();
  GPMemFile bytes;
  CArchive ar(&bytes, CArchive::store);
  zp::WriteIndex(ar, m_pHeader, *m_pActiveRecs, *m_pEmptyRecs);
  ar.Close();
  GPFile file(m_strIndexFile);
  if (!file.OpenWhenFree(CFile::modeCreate)) return 0;
  m_bIndexDirty = 0;
  file.WriteRecord(0, bytes.GetMemPtr(), static_cast<UINT>(bytes.GetLength()));
  zp::KeepTimesApart(m_strIndexFile, m_IndexStatus.modified);
  return 1;
}
