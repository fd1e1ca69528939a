// A range's values and measures.

#include "servers/common/range_object.h"

namespace servers {

std::span<Member<RangeObject> const> RangeObject::Members()
{
  static constexpr Member<RangeObject> members[] = {
      {0x6, u"Value", DISPATCH_PROPERTYGET, &RangeObject::GetValue, true},
      {0x6, u"Value", DISPATCH_PROPERTYPUT, &RangeObject::SetValue},
      {0x76, u"Count", DISPATCH_PROPERTYGET, &RangeObject::Count},
      {0x101, u"Row", DISPATCH_PROPERTYGET, &RangeObject::Row},
      {0xF0, u"Column", DISPATCH_PROPERTYGET, &RangeObject::Column},
      {0x102, u"Rows", DISPATCH_PROPERTYGET, &RangeObject::Rows},
      {0xF1, u"Columns", DISPATCH_PROPERTYGET, &RangeObject::Columns},
  };
  return members;
}

void RangeObject::GetValue(Call & call)
{
  if (m_Block.GetCells() == 1) return call.Return(m_pModel->ReadCell({m_Block.firstRow, m_Block.firstColumn}));
  MadeBlock values(m_Block);
  m_pModel->ReadBlock(m_Block, values);
  call.Return(values.Detach());
}

void RangeObject::SetValue(Call & call)
{
  m_pModel->Write(m_Block, GivenValues(call.Get(0), m_Block));
}

void RangeObject::Count(Call & call)
{
  uint64_t const rows = m_Unit == Unit::Columns ? 1 : m_Block.GetRows();
  uint64_t const columns = m_Unit == Unit::Rows ? 1 : m_Block.GetColumns();
  call.ReturnNumber(rows * columns);
}

}  // namespace servers
