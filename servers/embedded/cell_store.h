// The filled cells of a sheet in the order of rows and columns, in pieces of bounded length: 16 bytes a cell wherever it stands,
// and nothing for the empty ones between.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "servers/embedded/cell.h"
#include "servers/embedded/cell_names.h"

namespace embedded {

class CellStore {
 public:
  // Puts the cell at its place, where it takes that of a former one.
  void Put(Cell cell);

  void Clear(uint32_t row, uint32_t column);

  // Null for an empty cell. Borrowed until the store changes.
  Cell const * Find(uint32_t row, uint32_t column) const;

  // The smallest block that holds all cells; nothing where there are none.
  std::optional<Block> GetUsed() const;

  uint64_t GetCount() const { return m_nCells; }

  // Calls visit with each cell from that row on, in order, until it gives false.
  template <class Visit>
  void ForEachFrom(uint32_t row, Visit && visit) const;

 private:
  using Piece = std::vector<Cell>;           // in ascending keys, never empty
  using Pieces = std::map<uint64_t, Piece>;  // by the key of the first cell when the piece began, or less

  static uint64_t KeyOf(uint32_t row, uint32_t column) { return uint64_t{row} << 16 | column; }
  static uint64_t KeyOf(Cell const & cell) { return KeyOf(cell.GetRow(), cell.GetColumn()); }
  static Piece::const_iterator FindIn(Piece const & piece, uint64_t key);

  void Append(uint64_t key, Cell cell);
  Pieces::iterator PieceFor(uint64_t key);
  void Split(Pieces::iterator piece);

  Pieces m_Pieces;
  uint64_t m_nCells = 0;
};

template <class Visit>
void CellStore::ForEachFrom(uint32_t row, Visit && visit) const
{
  uint64_t const first = KeyOf(row, 0);
  auto piece = m_Pieces.upper_bound(first);
  if (piece != m_Pieces.begin()) --piece;
  for (; piece != m_Pieces.end(); ++piece) {
    for (auto cell = FindIn(piece->second, first); cell != piece->second.end(); ++cell)
      if (!visit(*cell)) return;
  }
}

}  // namespace embedded
