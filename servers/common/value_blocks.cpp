// Making blocks, and looking into those of callers.

#include "servers/common/value_blocks.h"

#include <array>
#include <new>
#include <utility>

#include "servers/common/failure.h"
#include "servers/common/values.h"

namespace servers {
namespace {

void requireFewCells(Block const & block, char const * what)
{
  if (block.GetCells() > mostBlockCells) Refuse(std::string("The block has more cells than can be ") + what + " at once");
}

size_t lengthOf(SAFEARRAY const * block, UINT dimension)
{
  LONG first = 0;
  LONG last = 0;
  Check(SafeArrayGetLBound(block, dimension, &first));
  Check(SafeArrayGetUBound(block, dimension, &last));
  return static_cast<size_t>(int64_t{last} - first + 1);
}

}  // namespace

MadeBlock::MadeBlock(Block const & block) : m_nRows(block.GetRows())
{
  requireFewCells(block, "read");
  std::array const bounds = {SAFEARRAYBOUND{static_cast<DWORD>(block.GetRows()), 1},
                             SAFEARRAYBOUND{static_cast<DWORD>(block.GetColumns()), 1}};
  m_pBlock = SafeArrayCreate(VT_VARIANT, 2, bounds.data());
  if (m_pBlock == nullptr) throw std::bad_alloc();
  m_pValues = static_cast<VARIANT *>(m_pBlock->pvData);
}

MadeBlock::~MadeBlock()
{
  if (m_pBlock != nullptr) SafeArrayDestroy(m_pBlock);
}

VARIANT MadeBlock::Detach()
{
  VARIANT value = EmptyValue();
  value.vt = VT_ARRAY | VT_VARIANT;
  value.parray = std::exchange(m_pBlock, nullptr);
  return value;
}

GivenValues::GivenValues(VARIANT const & value, Block const & target) : m_Value(value), m_Missing(ErrorValue(notAvailableError))
{
  requireFewCells(target, "written");
  if ((value.vt & VT_ARRAY) == 0) return;
  if (value.vt != (VT_ARRAY | VT_VARIANT) || value.parray == nullptr || SafeArrayGetDim(value.parray) != 2)
    Fail(DISP_E_TYPEMISMATCH);
  m_nRows = lengthOf(value.parray, 1);
  m_nColumns = lengthOf(value.parray, 2);
  void * values = nullptr;
  Check(SafeArrayAccessData(value.parray, &values));
  m_pBlock = value.parray;
  m_pValues = static_cast<VARIANT const *>(values);
}

GivenValues::~GivenValues()
{
  if (m_pBlock != nullptr) SafeArrayUnaccessData(m_pBlock);
}

}  // namespace servers
