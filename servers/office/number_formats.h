// What the number formats of a workbook say about the numbers that they show.
#pragma once

#include <vector>

#include <com/sun/star/sheet/XSheetCellRanges.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <com/sun/star/util/XNumberFormats.hpp>

namespace office {

namespace css = com::sun::star;
using css::uno::Reference;

// A Boolean, a number of whatever kind, or nothing, as the general format does.
enum class FormatMeaning { General, Number, Boolean };

struct FormattedCells {
  FormatMeaning meaning;
  Reference<css::sheet::XSheetCellRanges> ranges;
};

class NumberFormats {
 public:
  explicit NumberFormats(Reference<css::sheet::XSpreadsheetDocument> const & workbook);

  // The cells of a block, parted by their formats.
  std::vector<FormattedCells> CellsByFormat(Reference<css::uno::XInterface> const & block) const;

  sal_Int32 BooleanKey() const;  // the key of a format for Booleans

 private:
  FormatMeaning MeaningOf(sal_Int32 key) const;

  Reference<css::util::XNumberFormats> m_Formats;
};

}  // namespace office
