// Cells in pieces by their keys.

#include "servers/embedded/cell_store.h"

#include <algorithm>

namespace embedded {
namespace {

constexpr size_t mostInPiece = 512;

}  // namespace

CellStore::Piece::const_iterator CellStore::FindIn(Piece const & piece, uint64_t key)
{
  return std::lower_bound(piece.begin(), piece.end(), key,
                          [](Cell const & cell, uint64_t wanted) { return KeyOf(cell) < wanted; });
}

// The piece that key belongs to. What comes before all others goes to the first piece, which then begins there.
CellStore::Pieces::iterator CellStore::PieceFor(uint64_t key)
{
  auto const next = m_Pieces.upper_bound(key);
  if (next != m_Pieces.begin()) return std::prev(next);
  auto first = m_Pieces.extract(next);
  first.key() = key;
  return m_Pieces.insert(std::move(first)).position;
}

// Nothing is moved before all memory is there.
void CellStore::Split(Pieces::iterator piece)
{
  Piece & lower = piece->second;
  auto const middle = lower.begin() + mostInPiece / 2;
  Piece room;
  room.reserve(mostInPiece);
  Piece & upper = m_Pieces.try_emplace(std::next(piece), KeyOf(*middle), std::move(room))->second;
  upper.assign(std::make_move_iterator(middle), std::make_move_iterator(lower.end()));
  lower.erase(middle, lower.end());
}

void CellStore::Append(uint64_t key, Cell cell)
{
  if (!m_Pieces.empty()) {
    if (Piece & last = std::prev(m_Pieces.end())->second; last.size() < mostInPiece) {
      last.push_back(std::move(cell));
      ++m_nCells;
      return;
    }
  }
  Piece next;
  next.reserve(m_Pieces.empty() ? 1 : mostInPiece);
  next.push_back(std::move(cell));
  m_Pieces.try_emplace(m_Pieces.end(), key, std::move(next));
  ++m_nCells;
}

void CellStore::Put(Cell cell)
{
  uint64_t const key = KeyOf(cell);
  // Cells mostly come in order: behind the last one.
  if (m_Pieces.empty() || KeyOf(std::prev(m_Pieces.end())->second.back()) < key) return Append(key, std::move(cell));
  auto const piece = PieceFor(key);
  auto const at = piece->second.begin() + (FindIn(piece->second, key) - piece->second.cbegin());
  if (at != piece->second.end() && KeyOf(*at) == key) {
    *at = std::move(cell);
    return;
  }
  piece->second.insert(at, std::move(cell));
  ++m_nCells;
  if (piece->second.size() > mostInPiece) Split(piece);
}

void CellStore::Clear(uint32_t row, uint32_t column)
{
  if (Find(row, column) == nullptr) return;
  uint64_t const key = KeyOf(row, column);
  auto const piece = PieceFor(key);
  piece->second.erase(FindIn(piece->second, key));
  --m_nCells;
  if (piece->second.empty()) m_Pieces.erase(piece);
}

Cell const * CellStore::Find(uint32_t row, uint32_t column) const
{
  uint64_t const key = KeyOf(row, column);
  auto const next = m_Pieces.upper_bound(key);
  if (next == m_Pieces.begin()) return nullptr;
  Piece const & piece = std::prev(next)->second;
  auto const at = FindIn(piece, key);
  return at != piece.end() && KeyOf(*at) == key ? &*at : nullptr;
}

std::optional<Block> CellStore::GetUsed() const
{
  if (m_Pieces.empty()) return std::nullopt;
  Block used = {m_Pieces.begin()->second.front().GetRow(), UINT32_MAX, std::prev(m_Pieces.end())->second.back().GetRow(), 0};
  for (auto const & [key, piece] : m_Pieces) {
    for (Cell const & cell : piece) {
      used.firstColumn = std::min(used.firstColumn, cell.GetColumn());
      used.lastColumn = std::max(used.lastColumn, cell.GetColumn());
    }
  }
  return used;
}

}  // namespace embedded
