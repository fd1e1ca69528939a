// GPDataFile: compaction. The live records slide down over the free space in the order of the file, each into a block of just
// its length; the tables are rebuilt from the block headers. Since the format can't detect other damage, the whole chain is
// walked before anything moves.

#include <zpbase/store.h>

#include <algorithm>
#include <bitset>

#include "store/record_image_internal.h"
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

// The live records as their headers tell, or null unless every block ends inside the file, no length exceeds its capacity, and no
// two live blocks have one id.
std::unique_ptr<zp::ActiveTable> GPDataFile::SurveyChain() const
{
  std::vector<zp::ActiveEntry> entries;
  std::bitset<zp::maxRecordID + 1> seen;
  zp::BlockChain chain(m_RecFile);
  for (zp::RecordBlock block; chain.Next(block);) {
    if (block.isFree) continue;
    if (block.length > block.capacity || seen[block.id]) return nullptr;
    seen.set(block.id);
    entries.push_back({static_cast<short>(block.id), block.length, static_cast<DWORD>(block.position), block.capacity});
  }
  if (chain.GetState() != zp::BlockChain::State::AtEnd || chain.GetFileLength() > zp::maxBlockPosition) return nullptr;
  std::sort(entries.begin(), entries.end(), byID);
  auto active = std::make_unique<zp::ActiveTable>();
  for (zp::ActiveEntry const & entry : entries) active->Append(entry);
  return active;
}

namespace {

// Blocks on their way to a lower place, written in large pieces. The table tells where each record is by then.
class Mover {
 public:
  Mover(GPFile & file, zp::ActiveTable & active) : m_File(file), m_Active(active)
  {
    m_Bytes.reserve(batchBytes + zp::headerBytes + zp::maxRecordLength);
  }

  void Keep(zp::RecordBlock const & block) { m_nPosition += zp::headerBytes + block.length; }

  // Asks for no memory.
  void Move(zp::RecordBlock const & block, std::span<BYTE const> payload, bool & hasMoved)
  {
    if (payload.size() != block.length) AfxThrowFileException(CFileException::endOfFile, -1, m_File.GetFilePath());
    appendBlock(m_Bytes, block, payload);
    if (m_Bytes.size() >= batchBytes) Write(hasMoved);
  }

  void Write(bool & hasMoved)
  {
    if (m_Bytes.empty()) return;
    hasMoved = true;
    m_File.WriteRecord(m_nPosition, m_Bytes.data(), static_cast<UINT>(m_Bytes.size()));
    for (size_t place = 0; place < m_Bytes.size();) {
      zp::BlockHeader const header = zp::BlockHeader::Read(m_Bytes.data() + place);
      zp::ActiveEntry & entry = *m_Active.Find(header.id);
      entry.position = static_cast<DWORD>(m_nPosition);
      entry.capacity = header.capacity;
      m_nPosition += zp::headerBytes + header.capacity;
      place += zp::headerBytes + header.capacity;
    }
    m_Bytes.clear();
  }

  ULONGLONG GetPosition() const { return m_nPosition; }

 private:
  GPFile & m_File;
  zp::ActiveTable & m_Active;
  std::vector<BYTE> m_Bytes;
  ULONGLONG m_nPosition = 0;  // where the next block is written
};

}  // namespace

// Blocks in front of the first gap or slack stay untouched. What is written never reaches what is still to be read, since the
// records only become fewer bytes. hasMoved tells from when on the table before no longer fits the file.
void GPDataFile::SlideRecords(zp::ActiveTable & active, bool & hasMoved)
{
  Mover mover(m_RecFile, active);
  zp::BlockChain chain(m_RecFile);
  bool moving = false;
  for (zp::RecordBlock block; chain.Next(block);) {
    moving |= block.isFree || block.length < block.capacity;
    if (block.isFree) continue;
    if (moving)
      mover.Move(block, chain.GetPayload(), hasMoved);
    else
      mover.Keep(block);
  }
  mover.Write(hasMoved);
  if (moving) m_RecFile.SetLength(mover.GetPosition());
}

int GPDataFile::DegasRecFile()
{
  if (m_pActiveRecs == nullptr || !m_RecFile.Exists()) return 0;
  if (!m_RecFile.IsOpen() && !OpenRecFile(CFile::modeReadWrite)) return 0;
  DropImage();
  std::unique_ptr<zp::ActiveTable> active = SurveyChain();
  if (active == nullptr) return 0;
  auto free = std::make_unique<zp::FreeTable>();
  auto const install = [&] {
    m_pActiveRecs = std::move(active);
    m_pEmptyRecs = std::move(free);
    m_pPositions.reset();
    m_bIndexDirty = 1;
  };
  bool hasMoved = false;
  try {
    SlideRecords(*active, hasMoved);
  } catch (...) {
    if (hasMoved) install();
    throw;
  }
  install();
  m_bTail = false;
  m_RecFile.Close();
  return 1;
}
