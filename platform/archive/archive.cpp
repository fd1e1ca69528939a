// CArchive: the buffer between an archive and its file, raw bytes, texts and counts. Objects are in archive_objects.cpp.

#include <zpbase/platform/archive.h>

#include <algorithm>
#include <exception>

#include <zpbase/platform/encoding.h>

#include "platform/archive/archive_internal.h"

CArchive::CArchive(CFile * file, UINT mode, int bufferSize, void * buffer)
    : m_pFile(file),
      m_bStoring((mode & load) == 0),
      m_bDirect(file->GetBufferPtr(CFile::bufferCheck) == CFile::bufferDirect),
      m_nExceptions(std::uncaught_exceptions()),
      m_nBufferSize(static_cast<UINT>(std::max(bufferSize, 128))),
      m_Identities(std::make_unique<Identities>())
{
  if (m_bDirect) return;
  if (buffer == nullptr) m_Owned = std::make_unique_for_overwrite<BYTE[]>(m_nBufferSize);
  m_pStart = buffer != nullptr ? static_cast<BYTE *>(buffer) : m_Owned.get();
  m_pCur = m_pStart;
  m_pMax = m_bStoring ? m_pStart + m_nBufferSize : m_pStart;
}

CArchive::~CArchive()
{
  if (m_pFile == nullptr) return;
  if (std::uncaught_exceptions() > m_nExceptions) {
    Abort();
    return;
  }
  try {
    Close();
  } catch (CException * problem) {
    zp::ExceptionGuard const guard(problem);
    Abort();
  } catch (std::bad_alloc const &) {
    Abort();
  }
}

void CArchive::Close()
{
  Flush();
  m_pFile = nullptr;
}

void CArchive::Abort()
{
  m_pFile = nullptr;
  m_pCur = m_pMax = m_pStart;
}

void CArchive::Fail(int cause) const
{
  AfxThrowArchiveException(cause, m_pFile != nullptr ? m_pFile->GetFilePath().GetString() : nullptr);
}

void CArchive::RequireMode(bool storing) const
{
  if (m_bStoring == storing) return;
  Fail(storing ? CArchiveException::readOnly : CArchiveException::writeOnly);
}

void CArchive::CommitDirect()
{
  m_pFile->GetBufferPtr(CFile::bufferCommit, static_cast<UINT>(m_pCur - m_pStart));
  m_pStart = m_pMax = m_pCur;
}

void CArchive::Flush()
{
  if (m_bDirect) return CommitDirect();
  if (m_bStoring) {
    auto const count = static_cast<UINT>(m_pCur - m_pStart);
    m_pCur = m_pStart;
    if (count > 0) m_pFile->Write(m_pStart, count);
    return;
  }
  if (m_pMax > m_pCur) m_pFile->Seek(-(m_pMax - m_pCur), CFile::current);
  m_pCur = m_pMax = m_pStart;
}

void CArchive::MakeRoom(UINT needed)
{
  RequireMode(true);
  if (!m_bDirect) return Flush();
  CommitDirect();
  void * start;
  void * end;
  m_pFile->GetBufferPtr(CFile::bufferWrite, needed, &start, &end);
  m_pStart = m_pCur = static_cast<BYTE *>(start);
  m_pMax = static_cast<BYTE *>(end);
}

// A direct file lends its own bytes; another's are read in behind what is left of the last ones.
void CArchive::FillBuffer(UINT needed)
{
  RequireMode(false);
  if (m_bDirect) {
    CommitDirect();
    void * start;
    void * end;
    m_pFile->GetBufferPtr(CFile::bufferRead, UINT32_MAX, &start, &end);
    m_pStart = m_pCur = static_cast<BYTE *>(start);
    m_pMax = static_cast<BYTE *>(end);
  } else {
    auto const kept = static_cast<UINT>(m_pMax - m_pCur);
    std::memmove(m_pStart, m_pCur, kept);
    m_pCur = m_pStart;
    m_pMax = m_pStart + kept;
    m_pMax += m_pFile->Read(m_pMax, m_nBufferSize - kept);
  }
  if (static_cast<size_t>(m_pMax - m_pCur) < needed) Fail(CArchiveException::endOfFile);
}

UINT CArchive::Read(void * buffer, UINT count)
{
  RequireMode(false);
  auto * out = static_cast<BYTE *>(buffer);
  auto const ready = static_cast<UINT>(std::min<size_t>(count, static_cast<size_t>(m_pMax - m_pCur)));
  if (ready > 0) std::memcpy(out, m_pCur, ready);
  m_pCur += ready;
  UINT const rest = count - ready;
  if (rest == 0) return count;
  if (!m_bDirect && rest >= m_nBufferSize) return ready + m_pFile->Read(out + ready, rest);
  FillBuffer(0);
  auto const more = static_cast<UINT>(std::min<size_t>(rest, static_cast<size_t>(m_pMax - m_pCur)));
  if (more > 0) std::memcpy(out + ready, m_pCur, more);
  m_pCur += more;
  return ready + more;
}

void CArchive::EnsureRead(void * buffer, UINT count)
{
  if (Read(buffer, count) != count) Fail(CArchiveException::endOfFile);
}

void CArchive::Write(void const * buffer, UINT count)
{
  RequireMode(true);
  if (count == 0) return;
  if (static_cast<size_t>(m_pMax - m_pCur) < count) {
    if (!m_bDirect && count >= m_nBufferSize) {
      Flush();
      m_pFile->Write(buffer, count);
      return;
    }
    MakeRoom(count);
  }
  std::memcpy(m_pCur, buffer, count);
  m_pCur += count;
}

void CArchive::RequireBytes(ULONGLONG count)
{
  RequireMode(false);
  auto const ready = static_cast<ULONGLONG>(m_pMax - m_pCur);
  if (count <= ready) return;
  // A plain file stands behind the buffer, a direct one at the buffer's start.
  ULONGLONG const length = m_pFile->GetLength();
  ULONGLONG const next = m_pFile->GetPosition() + static_cast<ULONGLONG>(m_bDirect ? m_pCur - m_pStart : m_pCur - m_pMax);
  if (length < next || count > length - next) Fail(CArchiveException::endOfFile);
}

DWORD CArchive::ReadCount()
{
  WORD narrow;
  *this >> narrow;
  if (narrow != 0xFFFF) return narrow;
  DWORD wide;
  *this >> wide;
  return wide;
}

void CArchive::WriteCount(DWORD count)
{
  if (count < 0xFFFF) {
    *this << static_cast<WORD>(count);
    return;
  }
  *this << static_cast<WORD>(0xFFFF) << count;
}

void AfxWriteStringLength(CArchive & ar, ULONGLONG length)
{
  if (length < 0xFF) {
    ar << static_cast<BYTE>(length);
  } else if (length < 0xFFFE) {
    ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(length);
  } else {
    ar << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF) << static_cast<DWORD>(length);
  }
}

ULONGLONG AfxReadStringLength(CArchive & ar, int & charSize)
{
  charSize = 1;
  for (;;) {
    BYTE narrow;
    ar >> narrow;
    if (narrow < 0xFF) return narrow;
    WORD middle;
    ar >> middle;
    if (middle == 0xFFFE && charSize == 1) {
      charSize = 2;  // a wide text: the prefix proper follows
      continue;
    }
    if (middle < 0xFFFF) return middle;
    DWORD wide;
    ar >> wide;
    return wide;
  }
}

CArchive & CArchive::operator<<(CString const & text)
{
  AfxWriteStringLength(*this, static_cast<ULONGLONG>(text.GetLength()));
  Write(text.GetString(), static_cast<UINT>(text.GetLength()));
  return *this;
}

CArchive & CArchive::operator>>(CString & text)
{
  int charSize;
  ULONGLONG const length = AfxReadStringLength(*this, charSize);
  if (length > INT32_MAX / 2) Fail(CArchiveException::endOfFile);
  RequireBytes(length * static_cast<ULONGLONG>(charSize));
  std::string bytes(static_cast<size_t>(length) * static_cast<size_t>(charSize), '\0');
  EnsureRead(bytes.data(), static_cast<UINT>(bytes.size()));
  if (charSize == 2) {
    std::u16string wide(static_cast<size_t>(length), u'\0');
    for (size_t i = 0; i < wide.size(); ++i) wide[i] = zp::ReadLittle<char16_t>(&bytes[2 * i]);
    bytes.clear();
    zp::AppendWide(bytes, wide);
  }
  text = CString(std::move(bytes));
  return *this;
}
