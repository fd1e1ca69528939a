// The object "Range": a block of cells, or its rows or columns, which differ in what they count.
#pragma once

#include <span>

#include "servers/common/dispatch_object.h"

namespace servers {

class RangeObject : public ObjectOver<RangeObject, Worksheet> {
 public:
  enum class Unit { Cells, Rows, Columns };

  RangeObject(std::shared_ptr<Spreadsheet> spreadsheet, std::shared_ptr<Worksheet> sheet, Block const & block,
              Unit unit = Unit::Cells)
      : ObjectOver(std::move(spreadsheet), std::move(sheet)), m_Block(block), m_Unit(unit)
  {
  }
  static std::span<Member<RangeObject> const> Members();

 private:
  void GetValue(Call & call);
  void SetValue(Call & call);
  void Count(Call & call);
  void Row(Call & call) { call.ReturnNumber(m_Block.firstRow + uint64_t{1}); }
  void Column(Call & call) { call.ReturnNumber(m_Block.firstColumn + uint64_t{1}); }
  void Rows(Call & call) { call.Return(new RangeObject(GetSpreadsheet(), m_pModel, m_Block, Unit::Rows)); }
  void Columns(Call & call) { call.Return(new RangeObject(GetSpreadsheet(), m_pModel, m_Block, Unit::Columns)); }

  Block m_Block;
  Unit m_Unit;
};

}  // namespace servers
