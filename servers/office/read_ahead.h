// Reads cells one by one without asking for each: when somebody reads one after the other, the block that follows is fetched at
// once and the next reads are served from it.
//
// What a caller sees is what single reads would have shown, within these bounds. A fetched block is dropped by any call through
// the bridge but for the reading of single cells of the same sheet (so also by our own writes), each of its cells is served once
// (so whoever reads a cell again, waiting for a change, asks the office), it lives for 50 ms, and not longer than the office.
// What somebody else writes into a cell is therefore seen at most 50 ms after its time, and by every second read of the cell.
#pragma once

#include <chrono>
#include <vector>

#include "cell_block.h"

namespace office {

class ReadAhead {
 public:
  // The value of a cell, which the caller owns. What UNO raises passes.
  VARIANT Read(Sheet const & sheet, int32_t column, int32_t row);

  // Forgets the block and where the last read was.
  void Drop();

 private:
  using Clock = std::chrono::steady_clock;

  bool Follows(int32_t column, int32_t row) const;
  bool Serves(int32_t column, int32_t row);
  void Fetch(int32_t column, int32_t row);

  Sheet m_Sheet;
  int32_t m_nColumn = -1;  // of the last read
  int32_t m_nRow = -1;
  CellBlock m_Block;
  std::vector<bool> m_Served;  // of the block's cells
  Clock::time_point m_Fetched;
};

}  // namespace office
