// The walk over the blocks of a record file, sound or not.

#include "tools/store/block_survey.h"

#include <algorithm>
#include <memory>
#include <unordered_set>

#include <fmt/format.h>

#include "tools/store/chain_search.h"

namespace {

constexpr unsigned int headerBytes = zp::BlockHeader::byteCount;

// No record is empty, so no block ever was: a length of 0 is a hole in the file.
bool isHole(zp::BlockHeader const & header)
{
  return header.length == 0;
}

// Which entries of the index the file confirms: a stale one leads into the middle of a block.
class Anchors {
 public:
  Anchors(CFile const & file, StoreIndex const & index, unsigned long long length) : m_File(file), m_nLength(length)
  {
    for (LiveEntry const & entry : index.live) AddLive(entry);
    for (FreeEntry const & entry : index.free) AddFree(entry);
    std::sort(m_Places.begin(), m_Places.end());
    std::sort(m_Records.begin(), m_Records.end());
  }

  // The first one behind a position, or the file's length.
  unsigned long long Next(unsigned long long position) const
  {
    auto const next = std::upper_bound(m_Places.begin(), m_Places.end(), position);
    return next != m_Places.end() ? *next : m_nLength;
  }

  // Whether the index has a block there.
  bool IsPlace(unsigned long long position) const { return std::binary_search(m_Places.begin(), m_Places.end(), position); }

  // Whether the index has just the record that stands there.
  bool IsRecord(unsigned long long position) const { return std::binary_search(m_Records.begin(), m_Records.end(), position); }

 private:
  bool Read(unsigned long long position, zp::BlockHeader & header) const
  {
    BYTE bytes[headerBytes];
    if (position + headerBytes > m_nLength || m_File.ReadAt(position, bytes, headerBytes) != headerBytes) return false;
    header = zp::BlockHeader::Read(bytes);
    return !isHole(header);
  }

  // With its id there a block begins; it is the record if nothing has changed since the index was written.
  void AddLive(LiveEntry const & entry)
  {
    zp::BlockHeader header;
    if (!Read(entry.position, header) || header.id != entry.id) return;
    m_Places.push_back(entry.position);
    if (!header.isFree && header.length == entry.length) m_Records.push_back(entry.position);
  }

  // A block never changes its capacity, whoever took it since.
  void AddFree(FreeEntry const & entry)
  {
    zp::BlockHeader header;
    if (Read(entry.position, header) && header.capacity == entry.capacity) m_Places.push_back(entry.position);
  }

  CFile const & m_File;
  unsigned long long m_nLength;
  std::vector<unsigned long long> m_Places;
  std::vector<unsigned long long> m_Records;
};

// The walk over a file whose headers don't lead to its end.
class BrokenWalk {
 public:
  BrokenWalk(CFile const & file, StoreIndex const & index, unsigned long long length)
      : m_File(file), m_Index(index), m_nLength(length), m_Anchors(file, index, length)
  {
    m_Survey.fileLength = length;
  }

  Survey Run()
  {
    while (m_nAt < m_nLength) Step();
    DoubtUnknown();
    return std::move(m_Survey);
  }

 private:
  void Step()
  {
    BYTE header[headerBytes];
    if (m_nLength - m_nAt < headerBytes || m_File.ReadAt(m_nAt, header, headerBytes) != headerBytes) {
      return Resume(fmt::format("only {} bytes are left, less than a block's header", m_nLength - m_nAt), 0);
    }
    zp::RecordBlock const block = {zp::BlockHeader::Read(header), m_nAt};
    if (isHole(block)) {
      DoubtFormer();
      return Resume("there is a hole, a block of no bytes", 1);
    }
    unsigned long long const end = m_nAt + headerBytes + block.capacity;
    unsigned long long const next = m_Anchors.Next(m_nAt);
    m_Survey.blocks.push_back({block, m_Survey.breaks.empty() || m_Anchors.IsRecord(m_nAt), end <= next});
    if (end > m_nLength) {
      return Resume(fmt::format("the block's capacity of {} leads past the file's end", block.capacity), headerBytes);
    }
    if (end > next) {
      return Resume(fmt::format("the block's capacity of {} covers the block at {}", block.capacity, next), headerBytes);
    }
    m_nAt = end;
  }

  // A hole begins where bytes are 0, so it may have begun in the block before.
  void DoubtFormer()
  {
    BYTE last = 1;
    if (m_Survey.blocks.empty() || m_File.ReadAt(m_nAt - 1, &last, 1) != 1 || last != 0) return;
    m_Survey.blocks.back().isTrusted = false;
  }

  // Where the file has breaks, a block of an id that the index doesn't have may be chance.
  void DoubtUnknown()
  {
    if (m_Survey.breaks.empty() || m_Index.state != StoreIndex::Sound) return;
    std::unordered_set<int> ids;
    for (LiveEntry const & entry : m_Index.live) ids.insert(entry.id);
    for (SurveyBlock & at : m_Survey.blocks) at.isTrusted = at.isTrusted && ids.contains(at.block.id);
  }

  void Resume(std::string problem, unsigned int skipped)
  {
    unsigned long long resumed = m_Anchors.Next(m_nAt);
    if (resumed == m_nLength && m_nLength <= zp::maxBlockPosition) {
      if (!m_pSearch) m_pSearch = std::make_unique<ChainSearch>(m_File, m_nLength);
      unsigned long long const left = FindLeft();
      if (left < m_nLength && GoBack(left, problem)) return;
      resumed = m_pSearch->Find(m_nAt + skipped);
    }
    GoOn(m_nAt, resumed, std::move(problem));
  }

  void GoOn(unsigned long long position, unsigned long long resumed, std::string problem)
  {
    m_Survey.breaks.push_back({position, resumed, std::move(problem)});
    m_nAt = resumed;
    m_nFirst = m_Survey.blocks.size();
  }

  // What lies beside a chain of like blocks is a chain as well, which breaks late: where a heavier one begins that shares no
  // block with the walk, or the file's length.
  unsigned long long FindLeft() const
  {
    auto const & blocks = m_Survey.blocks;
    size_t i = blocks.size();
    while (i > m_nFirst && !m_Anchors.IsPlace(blocks[i - 1].block.position)) --i;
    for (i = std::max(i, m_nFirst + 1) - 1; i < blocks.size();) {
      unsigned long long const at = blocks[i].block.position;
      unsigned long long const found = m_pSearch->Find(at + 1);
      if (found == m_nLength || m_pSearch->WeightAt(found) <= m_pSearch->WeightAt(at)) {
        ++i;
      } else {
        size_t const shared = FindShared(found);
        if (shared == blocks.size()) return found;
        i = std::max(shared, i + 1);
      }
    }
    return m_nLength;
  }

  // The first block of the walk that the chain from there leads to, or how many there are.
  size_t FindShared(unsigned long long position) const
  {
    auto const & blocks = m_Survey.blocks;
    auto at = blocks.begin() + static_cast<std::ptrdiff_t>(m_nFirst);
    while (m_pSearch->WeightAt(position) > 0) {
      at = std::lower_bound(at, blocks.end(), position,
                            [](SurveyBlock const & block, unsigned long long wanted) { return block.block.position < wanted; });
      if (at == blocks.end() || at->block.position == position) break;
      BYTE header[headerBytes];
      if (m_File.ReadAt(position, header, headerBytes) != headerBytes) return blocks.size();
      position += headerBytes + zp::BlockHeader::Read(header).capacity;
    }
    return at != blocks.end() && at->block.position == position ? static_cast<size_t>(at - blocks.begin()) : blocks.size();
  }

  // Takes back the blocks that reach over the begin of the heavier chain, and those behind a length that can't be. The first of
  // them stands if there is room for it, and counts if its bytes end just there; without room the one before has grown.
  bool GoBack(unsigned long long left, std::string & problem)
  {
    auto & blocks = m_Survey.blocks;
    auto const first = std::find_if(blocks.begin() + static_cast<std::ptrdiff_t>(m_nFirst), blocks.end(), [&](auto const & at) {
      return at.block.length > at.block.capacity || at.block.position + headerBytes + at.block.capacity > left;
    });
    unsigned long long const position = first != blocks.end() ? first->block.position : m_nAt;
    bool const hasRoom = left > position + headerBytes;
    if (!hasRoom && first != blocks.begin()) std::prev(first)->isTrusted = false;
    if (first == blocks.end()) return false;
    if (std::next(first) != blocks.end()) problem = "the blocks from here on lead past others";
    if (hasRoom) {
      first->isTrusted = first->isTrusted && position + headerBytes + first->block.length == left;
      first->fits = false;
    }
    blocks.erase(hasRoom ? std::next(first) : first, blocks.end());
    GoOn(position, left, std::move(problem));
    return true;
  }

  CFile const & m_File;
  StoreIndex const & m_Index;
  unsigned long long m_nLength;
  Anchors m_Anchors;
  std::unique_ptr<ChainSearch> m_pSearch;
  unsigned long long m_nAt = 0;
  size_t m_nFirst = 0;  // of the blocks since the walk last went on elsewhere
  Survey m_Survey;
};

}  // namespace

Survey SurveyRecordFile(CFile const & file, StoreIndex const & index)
{
  Survey survey;
  zp::BlockChain chain(file);
  survey.fileLength = chain.GetFileLength();
  bool hasHole = false;
  for (zp::RecordBlock block; !hasHole && chain.Next(block);) {
    survey.blocks.push_back({block, true, true});
    hasHole = isHole(block);
  }
  if (!hasHole && chain.GetState() == zp::BlockChain::State::AtEnd) return survey;
  return BrokenWalk(file, index, chain.GetFileLength()).Run();
}

std::span<BYTE const> RecordWindow::Fetch(unsigned long long position, size_t count)
{
  if (position < m_nStart || position + count > m_nStart + m_nSize) {
    m_Bytes.resize(std::max(m_nPiece, count));
    m_nStart = position;
    m_nSize = m_File.ReadAt(position, m_Bytes.data(), static_cast<UINT>(m_Bytes.size()));
  }
  size_t const at = static_cast<size_t>(position - m_nStart);
  return std::span<BYTE const>(m_Bytes).subspan(at, std::min(count, m_nSize - at));
}

std::vector<BYTE> ReadPayload(CFile const & file, zp::RecordBlock const & block)
{
  std::vector<BYTE> bytes(std::min(block.length, block.capacity));
  bytes.resize(file.ReadAt(block.position + headerBytes, bytes.data(), static_cast<UINT>(bytes.size())));
  return bytes;
}
