// CMemFile: a file in memory, on a block of its own or on a caller's bytes.

#include <zpbase/platform/file.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

IMPLEMENT_DYNAMIC(CMemFile, CFile)

CMemFile::CMemFile(BYTE * buffer, UINT size, UINT growBytes)
    : m_lpBuffer(buffer), m_nFileSize(growBytes == 0 ? size : 0), m_nBufferSize(size), m_nGrowBytes(growBytes)
{
}

void CMemFile::FreeBlock::operator()(BYTE * block) const
{
  std::free(block);
}

// A block that was attached and has to grow is copied first: the caller's stays as it is. Large blocks of the C library grow
// without being copied, which no container does.
void CMemFile::Reserve(size_t size)
{
  if (size <= m_nBufferSize) return;
  if (m_nGrowBytes == 0) AfxThrowFileException(CFileException::diskFull);
  size_t const room = (std::max(size, 2 * m_nBufferSize) + m_nGrowBytes - 1) / m_nGrowBytes * m_nGrowBytes;
  bool const attached = m_Owned == nullptr && m_lpBuffer != nullptr;
  auto * const block = static_cast<BYTE *>(std::realloc(m_Owned.get(), room));
  if (block == nullptr) throw std::bad_alloc();
  static_cast<void>(m_Owned.release());
  m_Owned.reset(block);
  if (attached && m_nFileSize > 0) std::memcpy(block, m_lpBuffer, m_nFileSize);
  m_lpBuffer = block;
  m_nBufferSize = room;
}

// Bytes between the end and a position that was sought behind it are zeros.
void CMemFile::ClearGap()
{
  if (m_nPosition > m_nFileSize) std::memset(m_lpBuffer + m_nFileSize, 0, m_nPosition - m_nFileSize);
}

ULONGLONG CMemFile::GetPosition() const
{
  return m_nPosition;
}

CFile * CMemFile::Duplicate() const
{
  AfxThrowFileException(CFileException::genericException);
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from)
{
  size_t const origin = from == begin ? 0 : from == current ? m_nPosition : m_nFileSize;
  LONGLONG position;
  if (__builtin_add_overflow(static_cast<LONGLONG>(origin), offset, &position) || position < 0)
    AfxThrowFileException(CFileException::badSeek);
  return m_nPosition = static_cast<size_t>(position);
}

void CMemFile::SetLength(ULONGLONG length)
{
  auto const size = static_cast<size_t>(length);
  Reserve(size);
  if (size > m_nFileSize) std::memset(m_lpBuffer + m_nFileSize, 0, size - m_nFileSize);
  m_nFileSize = size;
  m_nPosition = std::min(m_nPosition, size);
}

ULONGLONG CMemFile::GetLength() const
{
  return m_nFileSize;
}

UINT CMemFile::Read(void * buffer, UINT count)
{
  size_t const left = m_nFileSize > m_nPosition ? m_nFileSize - m_nPosition : 0;
  auto const got = static_cast<UINT>(std::min<size_t>(count, left));
  if (got > 0) std::memcpy(buffer, m_lpBuffer + m_nPosition, got);
  m_nPosition += got;
  return got;
}

void CMemFile::Write(void const * buffer, UINT count)
{
  if (count == 0) return;
  Reserve(m_nPosition + count);
  ClearGap();
  std::memcpy(m_lpBuffer + m_nPosition, buffer, count);
  m_nPosition += count;
  m_nFileSize = std::max(m_nFileSize, m_nPosition);
}

void CMemFile::Abort()
{
  Close();
}

void CMemFile::Flush() {}

void CMemFile::Close()
{
  m_Owned.reset();
  m_lpBuffer = nullptr;
  m_nBufferSize = m_nFileSize = m_nPosition = 0;
}

// Reading and writing give memory from the position on, which only bufferCommit moves.
UINT CMemFile::GetBufferPtr(UINT command, UINT count, void ** start, void ** max)
{
  switch (command) {
    case bufferCheck:
      return bufferDirect;
    case bufferCommit:
      m_nPosition += count;
      m_nFileSize = std::max(m_nFileSize, m_nPosition);
      return 0;
    case bufferWrite:
      Reserve(m_nPosition + count);
      ClearGap();
      *start = m_lpBuffer + m_nPosition;
      *max = m_lpBuffer + m_nBufferSize;
      return static_cast<UINT>(m_nBufferSize - m_nPosition);
    default: {
      size_t const place = std::min(m_nPosition, m_nFileSize);
      size_t const got = std::min<size_t>(count, m_nFileSize - place);
      *start = m_lpBuffer + place;
      *max = m_lpBuffer + place + got;
      return static_cast<UINT>(got);
    }
  }
}
