// The search for chains, from the file's end to its begin.

#include "tools/store/chain_search.h"

#include <algorithm>
#include <cstring>

#include "tools/records/payload.h"

namespace {

constexpr size_t pageBytes = 0x1000;
constexpr size_t searchedPieceBytes = 0x40000;  // of what is read at once

constexpr DWORD forAny = 1;
constexpr DWORD forFull = 2;
constexpr DWORD forObject = 4;
constexpr DWORD forEnd = 4;
constexpr DWORD least = 4;  // else it may be chance

bool isZeros(std::span<BYTE const> bytes)
{
  return bytes[0] == 0 && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

}  // namespace

ChainSearch::ChainSearch(CFile const & file, unsigned long long length) : m_nLength(length)
{
  Read(file);
  Weigh();
}

void ChainSearch::Read(CFile const & file)
{
  std::vector<BYTE> piece(static_cast<size_t>(std::min<unsigned long long>(searchedPieceBytes, m_nLength)));
  while (m_nRead < m_nLength) {
    auto const wanted = static_cast<UINT>(std::min<unsigned long long>(piece.size(), m_nLength - m_nRead));
    size_t const count = file.ReadAt(m_nRead, piece.data(), wanted);
    for (size_t at = 0; at < count; at += pageBytes) {
      TakePage(std::span<BYTE const>(piece).subspan(at, std::min(pageBytes, count - at)), m_nRead + at);
    }
    m_nRead += count;
    if (count < wanted) break;
  }
}

// A header reaches into a page from the end of the one before.
void ChainSearch::TakePage(std::span<BYTE const> page, unsigned long long position)
{
  if (isZeros(page)) return;
  unsigned long long const end = m_Stretches.empty() ? 0 : m_Stretches.back().End();
  if (m_Stretches.empty() || position > end) {
    constexpr BYTE zeros[zp::BlockHeader::byteCount] = {};
    size_t const before = std::min<size_t>(zp::BlockHeader::byteCount, static_cast<size_t>(position - end));
    m_Stretches.push_back({position - before, m_Bytes.size(), 0});
    Append({zeros, before});
  }
  Append(page);
}

void ChainSearch::Append(std::span<BYTE const> bytes)
{
  m_Bytes.insert(m_Bytes.end(), bytes.begin(), bytes.end());
  m_Stretches.back().size += bytes.size();
}

void ChainSearch::Weigh()
{
  m_Weights.resize(m_Bytes.size());
  m_Best.resize(m_Bytes.size());
  auto const none = static_cast<DWORD>(m_nRead);
  DWORD best = none;
  DWORD most = 0;
  for (size_t s = m_Stretches.size(); s-- > 0;) {
    Stretch const & stretch = m_Stretches[s];
    for (size_t at = stretch.size; at-- > 0;) {
      DWORD const weight = WeighFrom(stretch, at);
      m_Weights[stretch.first + at] = weight;
      if (weight >= least && (best == none || weight >= most)) {
        best = static_cast<DWORD>(stretch.position + at);
        most = weight;
      }
      m_Best[stretch.first + at] = best;
    }
  }
}

// What lies behind a stretch is zeros.
DWORD ChainSearch::WeighFrom(Stretch const & stretch, size_t at) const
{
  unsigned long long const position = stretch.position + at;
  if (m_nRead - position <= zp::BlockHeader::byteCount) return 0;
  std::span<BYTE const> const bytes = std::span<BYTE const>(m_Bytes).subspan(stretch.first + at, stretch.size - at);
  BYTE header[zp::BlockHeader::byteCount] = {};
  std::copy_n(bytes.begin(), std::min<size_t>(zp::BlockHeader::byteCount, bytes.size()), header);
  zp::BlockHeader const block = zp::BlockHeader::Read(header);
  unsigned long long const end = position + zp::BlockHeader::byteCount + block.capacity;
  if (block.length == 0 || block.length > block.capacity || end > m_nRead) return 0;
  std::span<BYTE const> const rest = bytes.subspan(std::min<size_t>(zp::BlockHeader::byteCount, bytes.size()));
  bool const isObject = !block.isFree && !NamedClass(rest.first(std::min<size_t>(block.length, rest.size()))).empty();
  DWORD const behind = stretch.Has(end) ? WeightIn(stretch, end) : WeightAt(end);
  return behind + (isObject ? forObject : block.length == block.capacity ? forFull : forAny);
}

DWORD ChainSearch::WeightIn(Stretch const & stretch, unsigned long long position) const
{
  return m_Weights[stretch.first + static_cast<size_t>(position - stretch.position)];
}

DWORD ChainSearch::WeightAt(unsigned long long position) const
{
  if (position == m_nRead) return forEnd;
  auto const found = StretchAt(position);
  return found != m_Stretches.end() && found->Has(position) ? WeightIn(*found, position) : 0;
}

std::vector<ChainSearch::Stretch>::const_iterator ChainSearch::StretchAt(unsigned long long position) const
{
  return std::upper_bound(m_Stretches.begin(), m_Stretches.end(), position,
                          [](unsigned long long wanted, Stretch const & stretch) { return wanted < stretch.End(); });
}

unsigned long long ChainSearch::Find(unsigned long long start) const
{
  auto const stretch = StretchAt(start);
  if (stretch == m_Stretches.end()) return m_nLength;
  size_t const at = start > stretch->position ? static_cast<size_t>(start - stretch->position) : 0;
  unsigned long long const found = m_Best[stretch->first + at];
  return found < m_nRead ? found : m_nLength;
}
