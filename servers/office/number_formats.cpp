// Asking a workbook's number formats.
#include "number_formats.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/sheet/XUniqueCellFormatRangesSupplier.hpp>
#include <com/sun/star/util/NumberFormat.hpp>
#include <com/sun/star/util/XNumberFormatTypes.hpp>
#include <com/sun/star/util/XNumberFormatsSupplier.hpp>

namespace office {

using css::uno::UNO_QUERY_THROW;

NumberFormats::NumberFormats(Reference<css::sheet::XSpreadsheetDocument> const & workbook)
    : m_Formats(Reference<css::util::XNumberFormatsSupplier>(workbook, UNO_QUERY_THROW)->getNumberFormats())
{
}

std::vector<FormattedCells> NumberFormats::CellsByFormat(Reference<css::uno::XInterface> const & block) const
{
  Reference<css::container::XIndexAccess> const all =
      Reference<css::sheet::XUniqueCellFormatRangesSupplier>(block, UNO_QUERY_THROW)->getUniqueCellFormatRanges();
  std::vector<FormattedCells> parts;
  for (sal_Int32 i = 0, count = all->getCount(); i < count; ++i) {
    Reference<css::sheet::XSheetCellRanges> const ranges(all->getByIndex(i), UNO_QUERY_THROW);
    sal_Int32 key = 0;
    Reference<css::beans::XPropertySet>(ranges, UNO_QUERY_THROW)->getPropertyValue("NumberFormat") >>= key;
    parts.push_back({MeaningOf(key), ranges});
  }
  return parts;
}

FormatMeaning NumberFormats::MeaningOf(sal_Int32 key) const
{
  Reference<css::beans::XPropertySet> const format = m_Formats->getByKey(key);
  sal_Int16 type = 0;
  rtl::OUString text;
  format->getPropertyValue("Type") >>= type;
  format->getPropertyValue("FormatString") >>= text;
  if ((type & css::util::NumberFormat::LOGICAL) != 0) return FormatMeaning::Boolean;
  return text == "General" ? FormatMeaning::General : FormatMeaning::Number;
}

sal_Int32 NumberFormats::BooleanKey() const
{
  Reference<css::util::XNumberFormatTypes> const types(m_Formats, UNO_QUERY_THROW);
  return types->getStandardFormat(css::util::NumberFormat::LOGICAL, css::lang::Locale());
}

}  // namespace office
