// The walk over the blocks of a record file, sound or not.

#include "tools/store/block_survey.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/records/payload.h"

namespace {

constexpr unsigned int headerBytes = zp::BlockHeader::byteCount;

// The positions that the index has, inside the file and in ascending order.
std::vector<unsigned long long> positionsOf(StoreIndex const & index, unsigned long long length)
{
  std::vector<unsigned long long> positions;
  for (LiveEntry const & entry : index.live) positions.push_back(entry.position);
  for (FreeEntry const & entry : index.free) positions.push_back(entry.position);
  std::erase_if(positions, [length](unsigned long long position) { return position >= length; });
  std::sort(positions.begin(), positions.end());
  return positions;
}

// The walk over a file whose headers don't lead to its end.
class BrokenWalk {
 public:
  BrokenWalk(CFile const & file, StoreIndex const & index, unsigned long long length)
      : m_File(file), m_nLength(length), m_Positions(positionsOf(index, length))
  {
  }

  Survey Run()
  {
    m_Survey.fileLength = m_nLength;
    while (m_nAt < m_nLength) Step();
    return std::move(m_Survey);
  }

 private:
  void Step()
  {
    BYTE header[headerBytes];
    if (m_nLength - m_nAt < headerBytes || m_File.ReadAt(m_nAt, header, headerBytes) != headerBytes) {
      return Resume(fmt::format("only {} bytes are left, less than a block's header", m_nLength - m_nAt), false);
    }
    zp::BlockHeader const at = zp::BlockHeader::Read(header);
    zp::RecordBlock const block = {at, m_nAt};
    unsigned long long const end = m_nAt + headerBytes + block.capacity;
    unsigned long long const next = NextPosition();
    m_Survey.blocks.push_back({block, IsTrusted(), end <= next});
    if (end > m_nLength) return Resume(fmt::format("the block's capacity of {} leads past the file's end", block.capacity), true);
    if (end > next) return Resume(fmt::format("the block's capacity of {} covers the block at {}", block.capacity, next), true);
    m_nAt = end;
  }

  // Between the positions of the index a block of the chain may be what a wrong capacity led to.
  bool IsTrusted()
  {
    bool const indexed = std::binary_search(m_Positions.begin(), m_Positions.end(), m_nAt);
    m_bOnChain |= indexed;
    return indexed || (m_bOnChain && (m_Positions.empty() || m_nAt > m_Positions.back()));
  }

  unsigned long long NextPosition() const
  {
    auto const next = std::upper_bound(m_Positions.begin(), m_Positions.end(), m_nAt);
    return next != m_Positions.end() ? *next : m_nLength;
  }

  void Resume(std::string problem, bool hasHeader)
  {
    unsigned long long const next = NextPosition();
    unsigned long long const resumed = next < m_nLength ? next : FindChain(m_nAt + (hasHeader ? headerBytes : 0));
    m_bOnChain = false;
    m_Survey.breaks.push_back({m_nAt, resumed, std::move(problem)});
    m_nAt = resumed;
  }

  // The first place from start on where a live block with an object stands and headers lead from to the file's end.
  unsigned long long FindChain(unsigned long long start)
  {
    std::vector<BYTE> bytes(static_cast<size_t>(m_nLength - std::min(start, m_nLength)));
    bytes.resize(m_File.ReadAt(start, bytes.data(), static_cast<UINT>(bytes.size())));
    std::vector<bool> leads(bytes.size() + 1);
    leads[bytes.size()] = true;
    for (size_t i = bytes.size(); i-- > 0;) {
      if (bytes.size() - i < headerBytes) continue;
      zp::BlockHeader const header = zp::BlockHeader::Read(&bytes[i]);
      size_t const end = i + headerBytes + header.capacity;
      leads[i] = end <= bytes.size() && leads[end] && header.length > 0 && header.length <= header.capacity;
    }
    for (size_t i = 0; i + headerBytes < bytes.size(); ++i) {
      zp::BlockHeader const header = zp::BlockHeader::Read(&bytes[i]);
      if (!leads[i] || header.isFree) continue;
      std::span<BYTE const> const payload(&bytes[i] + headerBytes, header.length);
      if (!NamedClass(payload).empty()) return start + i;
    }
    return m_nLength;
  }

  CFile const & m_File;
  unsigned long long m_nLength;
  std::vector<unsigned long long> m_Positions;
  unsigned long long m_nAt = 0;
  bool m_bOnChain = true;
  Survey m_Survey;
};

}  // namespace

Survey SurveyRecordFile(CFile const & file, StoreIndex const & index)
{
  Survey survey;
  zp::BlockChain chain(file);
  survey.fileLength = chain.GetFileLength();
  for (zp::RecordBlock block; chain.Next(block);) survey.blocks.push_back({block, true, true});
  if (chain.GetState() == zp::BlockChain::State::AtEnd) return survey;
  return BrokenWalk(file, index, chain.GetFileLength()).Run();
}

std::vector<BYTE> ReadPayload(CFile const & file, zp::RecordBlock const & block)
{
  std::vector<BYTE> bytes(std::min(block.length, block.capacity));
  bytes.resize(file.ReadAt(block.position + headerBytes, bytes.data(), static_cast<UINT>(bytes.size())));
  return bytes;
}
