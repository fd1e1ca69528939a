// GPDataFile: compaction. The live records slide down over the free space in the order of the file, each into a block of just
// its length; the tables are rebuilt from the block headers. Since the format can't detect other damage, the whole chain is
// walked before anything moves.

#include <zpbase/store.h>

#include <algorithm>
#include <bitset>

#include "store/store_internal.h"

namespace {

constexpr size_t batchBytes = 0x40000;  // moved bytes are written in pieces of about this size

bool byID(zp::ActiveEntry const & a, zp::ActiveEntry const & b)
{
  return a.id < b.id;
}

void appendBlock(std::vector<BYTE> & bytes, zp::RecordBlock const & block, std::span<BYTE const> payload)
{
  BYTE header[zp::headerBytes];
  zp::BlockHeader{block.id, false, block.length, block.length}.Write(header);
  bytes.insert(bytes.end(), header, header + sizeof header);
  bytes.insert(bytes.end(), payload.begin(), payload.end());
}

}  // namespace

// Every block ends inside the file, no length exceeds its capacity, and no two live blocks have one id.
bool GPDataFile::IsSoundChain() const
{
  std::bitset<zp::maxRecordID + 1> seen;
  zp::BlockChain chain(m_RecFile);
  for (zp::RecordBlock block; chain.Next(block);) {
    if (block.isFree) continue;
    if (block.length > block.capacity || seen[block.id]) return false;
    seen.set(block.id);
  }
  return chain.GetState() == zp::BlockChain::State::AtEnd && chain.GetFileLength() <= zp::maxBlockPosition;
}

void GPDataFile::WriteMoved(ULONGLONG position, std::vector<BYTE> & bytes)
{
  if (!bytes.empty()) m_RecFile.WriteRecord(position, bytes.data(), static_cast<UINT>(bytes.size()));
  bytes.clear();
}

// Blocks in front of the first gap or slack stay untouched. What is written never reaches what is still to be read, since the
// records only become fewer bytes.
std::unique_ptr<zp::ActiveTable> GPDataFile::SlideRecords()
{
  std::vector<zp::ActiveEntry> entries;
  std::vector<BYTE> moved;
  bool moving = false;
  ULONGLONG writePosition = 0;
  zp::BlockChain chain(m_RecFile);
  for (zp::RecordBlock block; chain.Next(block);) {
    moving |= block.isFree || block.length < block.capacity;
    if (block.isFree) continue;
    entries.push_back({static_cast<short>(block.id), block.length, static_cast<DWORD>(writePosition), block.length});
    if (moving) appendBlock(moved, block, chain.GetPayload());
    writePosition += zp::headerBytes + block.length;
    if (moved.size() >= batchBytes) WriteMoved(writePosition - moved.size(), moved);
  }
  WriteMoved(writePosition - moved.size(), moved);
  if (moving) m_RecFile.SetLength(writePosition);
  std::sort(entries.begin(), entries.end(), byID);
  auto active = std::make_unique<zp::ActiveTable>();
  for (zp::ActiveEntry const & entry : entries) active->Append(entry.id, entry.length, entry.position, entry.capacity);
  return active;
}

int GPDataFile::DegasRecFile()
{
  if (m_pActiveRecs == nullptr || !m_RecFile.Exists()) return 0;
  if (!m_RecFile.IsOpen() && !OpenRecFile(CFile::modeReadWrite)) return 0;
  if (!IsSoundChain()) return 0;
  std::unique_ptr<zp::ActiveTable> active = SlideRecords();
  m_RecFile.Close();
  m_pActiveRecs = std::move(active);
  m_pEmptyRecs = std::make_unique<zp::FreeTable>();
  m_bIndexDirty = 1;
  return 1;
}
