// The parts of objects: tags read and written apart from what they announce, and runs of like objects.

#include <zpbase/platform/archive_parts.h>

#include <algorithm>
#include <utility>

#include "platform/archive/archive_internal.h"

namespace zp {

CRuntimeClass * ArchiveParts::ReadClass(CRuntimeClass const * requested)
{
  DWORD objectIndex;
  CRuntimeClass * const record = m_Archive.ReadTag(requested, objectIndex);
  if (objectIndex != 0) m_Archive.Fail(CArchiveException::badIndex);
  return record;
}

void ArchiveParts::MapObjects(size_t count)
{
  m_Archive.m_Identities->AddGap(count);
}

// All of a run have the tag of the first one.
size_t ArchiveParts::ReadRun(CRuntimeClass const * record, size_t objectBytes, size_t atMost, BYTE const *& objects)
{
  CArchive & ar = m_Archive;
  ar.RequireMode(false);
  size_t const stride = ArchiveTag::bytes + objectBytes;
  size_t const ready = std::min(atMost, static_cast<size_t>(ar.m_pMax - ar.m_pCur) / stride);
  if (ready == 0) return 0;
  BYTE const * const first = ar.m_pCur;
  DWORD const index = ReadLittle<WORD>(first) ^ DWORD { ArchiveTag::classBit };
  if (index == 0 || index >= ArchiveTag::big || index >= ar.m_Identities->LoadedCount()) return 0;
  if (ar.m_Identities->At(index) != (reinterpret_cast<LoadedEntry>(record) | 1)) return 0;
  size_t count = 1;
  while (count < ready && std::memcmp(first + count * stride, first, ArchiveTag::bytes) == 0) ++count;
  objects = first + ArchiveTag::bytes;
  ar.m_pCur += count * stride;
  ar.m_Identities->AddGap(count);
  return count;
}

BYTE const * ArchiveParts::ReadInPlace(size_t count)
{
  CArchive & ar = m_Archive;
  if (!ar.IsLoading() || static_cast<size_t>(ar.m_pMax - ar.m_pCur) < count) ar.FillBuffer(static_cast<UINT>(count));
  return std::exchange(ar.m_pCur, ar.m_pCur + count);
}

void ArchiveParts::WriteClass(CRuntimeClass const * record)
{
  m_Archive.WriteClass(record);
}

}  // namespace zp
