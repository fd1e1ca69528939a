// Two-dimensional blocks of values, both ways.
#pragma once

#include <zpbase/platform/variants.h>

#include "servers/common/cell_names.h"

namespace servers {

inline constexpr uint64_t mostBlockCells = 16u << 20;  // of a block that is asked for or given at once

// A block of empty values that a server fills for its caller; rows and columns count from 0.
class MadeBlock {
 public:
  // Refuses a block of too many cells.
  explicit MadeBlock(Block const & block);
  ~MadeBlock();
  MadeBlock(MadeBlock const &) = delete;
  MadeBlock & operator=(MadeBlock const &) = delete;

  VARIANT & At(size_t row, size_t column) { return m_pValues[column * m_nRows + row]; }

  // The block as a value that the caller owns; the object has none then.
  VARIANT Detach();

 private:
  SAFEARRAY * m_pBlock;
  size_t m_nRows;
  VARIANT * m_pValues;
};

// What a caller puts into cells: a value for all of them, or a block, which is locked as long as the object lives. Borrowed.
class GivenValues {
 public:
  // Refuses what is for too many cells; DISP_E_TYPEMISMATCH as Failure for a block that has not two dimensions.
  GivenValues(VARIANT const & value, Block const & target);
  ~GivenValues();
  GivenValues(GivenValues const &) = delete;
  GivenValues & operator=(GivenValues const &) = delete;

  // Both from 0. Cells beyond the given block get #N/A.
  VARIANT const & At(size_t row, size_t column) const
  {
    if (m_pBlock == nullptr) return m_Value;
    return row < m_nRows && column < m_nColumns ? m_pValues[column * m_nRows + row] : m_Missing;
  }

 private:
  VARIANT const & m_Value;
  VARIANT m_Missing;
  SAFEARRAY * m_pBlock = nullptr;
  VARIANT const * m_pValues = nullptr;
  size_t m_nRows = 0;
  size_t m_nColumns = 0;
};

}  // namespace servers
