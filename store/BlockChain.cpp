// BlockHeader and BlockChain: the blocks of a record file, and a walk over them by their headers.
//
//   offset  width  content, 16-bit words in little-endian form
//   0       2      record id in bits 0 to 14; bit 15 set: the block is free
//   2       2      length: bytes of the payload area in use
//   4       2      capacity: size of the payload area; the next block starts behind it
//   6       capacity
//
// The record 41 42 43 44 under id 1: 01 00, 04 00, 04 00, 41 42 43 44. After its deletion the first word is 01 80.

#include <zpbase/store.h>

#include <algorithm>

#include "store/store_internal.h"

namespace zp {

namespace {

constexpr size_t windowBytes = 0x40000;  // holds any block whole

}  // namespace

BlockHeader BlockHeader::Read(BYTE const * bytes)
{
  WORD const mark = ReadLittle<WORD>(bytes);
  return {static_cast<WORD>(mark & ~freeMark), (mark & freeMark) != 0, ReadLittle<WORD>(bytes + 2), ReadLittle<WORD>(bytes + 4)};
}

void BlockHeader::Write(BYTE * bytes) const
{
  WriteLittle(bytes, static_cast<WORD>(isFree ? id | freeMark : id));
  WriteLittle(bytes + 2, length);
  WriteLittle(bytes + 4, capacity);
}

BlockChain::BlockChain(CFile const & file) : m_File(file), m_nFileLength(file.GetLength())
{
  m_Window.resize(static_cast<size_t>(std::min<ULONGLONG>(windowBytes, m_nFileLength)));
}

// The bytes at position, which lie inside the file and fit the window; null if the file has become shorter.
BYTE const * BlockChain::Fetch(ULONGLONG position, size_t count)
{
  if (position < m_nWindowStart || position + count > m_nWindowStart + m_nWindowSize) {
    m_nWindowStart = position;
    m_nWindowSize = m_File.ReadAt(position, m_Window.data(), static_cast<UINT>(m_Window.size()));
    if (m_nWindowSize < count) return nullptr;
  }
  return m_Window.data() + (position - m_nWindowStart);
}

bool BlockChain::Next(RecordBlock & block)
{
  if (m_State != State::Walking) return false;
  if (m_nNext == m_nFileLength) return m_State = State::AtEnd, false;
  BYTE const * const header = m_nFileLength - m_nNext < headerBytes ? nullptr : Fetch(m_nNext, headerBytes);
  if (header == nullptr) return m_State = State::CutHeader, false;
  m_Block = {BlockHeader::Read(header), m_nNext};
  m_nNext += headerBytes + m_Block.capacity;
  if (m_nNext > m_nFileLength) m_State = State::PastEnd;
  block = m_Block;
  return true;
}

std::span<BYTE const> BlockChain::GetPayload()
{
  ULONGLONG const start = m_Block.position + headerBytes;
  if (start >= m_nFileLength) return {};
  auto const count = static_cast<size_t>(std::min<ULONGLONG>({m_Block.length, m_Block.capacity, m_nFileLength - start}));
  BYTE const * const bytes = count > 0 ? Fetch(start, count) : nullptr;
  return bytes != nullptr ? std::span(bytes, count) : std::span<BYTE const>();
}

}  // namespace zp
