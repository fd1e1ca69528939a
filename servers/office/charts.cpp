// Listing, naming and making charts.
#include "charts.h"

#include <algorithm>

#include <com/sun/star/container/XIndexAccess.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XSheetCellCursor.hpp>
#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/sheet/XUsedAreaCursor.hpp>
#include <com/sun/star/table/XTableCharts.hpp>
#include <com/sun/star/table/XTableChartsSupplier.hpp>

#include "failure.h"

namespace office {
namespace {

using css::uno::UNO_QUERY_THROW;

// A place for a picture of a hand's size at the sheet's corner, in hundredths of a millimetre.
css::awt::Rectangle const chartPlace(0, 0, 16000, 9000);

Reference<css::container::XIndexAccess> sheetsOf(Workbook const & workbook)
{
  return Reference<css::container::XIndexAccess>(workbook->getSheets(), UNO_QUERY_THROW);
}

Reference<css::table::XTableCharts> chartsOf(css::uno::Any const & sheet)
{
  return Reference<css::table::XTableChartsSupplier>(sheet, UNO_QUERY_THROW)->getCharts();
}

// A chart shows what its sheet has.
css::uno::Sequence<css::table::CellRangeAddress> usedArea(css::uno::Any const & sheet)
{
  Reference<css::sheet::XSheetCellCursor> const cursor =
      Reference<css::sheet::XSpreadsheet>(sheet, UNO_QUERY_THROW)->createCursor();
  Reference<css::sheet::XUsedAreaCursor> const used(cursor, UNO_QUERY_THROW);
  used->gotoStartOfUsedArea(false);
  used->gotoEndOfUsedArea(true);
  css::uno::Sequence<css::table::CellRangeAddress> areas(1);
  areas.getArray()[0] = Reference<css::sheet::XCellRangeAddressable>(cursor, UNO_QUERY_THROW)->getRangeAddress();
  return areas;
}

void make(Workbook const & workbook, rtl::OUString const & name)
{
  css::uno::Any const sheet = sheetsOf(workbook)->getByIndex(0);
  chartsOf(sheet)->addNewByName(name, chartPlace, usedArea(sheet), false, false);
}

}  // namespace

std::vector<std::shared_ptr<ChartEntry>> ChartLists::List(Workbook const & workbook)
{
  std::vector<std::shared_ptr<ChartEntry>> charts;
  Reference<css::container::XIndexAccess> const sheets = sheetsOf(workbook);
  for (sal_Int32 i = 0, count = sheets->getCount(); i < count; ++i)
    for (rtl::OUString const & name : chartsOf(sheets->getByIndex(i))->getElementNames())
      charts.push_back(std::make_shared<ChartEntry>(ChartEntry{name, true}));
  for (Pending const & pending : m_Pending)
    if (pending.workbook == workbook) charts.push_back(pending.chart);
  return charts;
}

bool ChartLists::IsTaken(Workbook const & workbook, rtl::OUString const & name, ChartEntry const * butFor)
{
  auto const charts = List(workbook);
  return std::any_of(charts.begin(), charts.end(), [&](std::shared_ptr<ChartEntry> const & chart) {
    return chart.get() != butFor && chart->name.equalsIgnoreAsciiCase(name);
  });
}

std::shared_ptr<ChartEntry> ChartLists::Add(Workbook const & workbook)
{
  sal_Int32 number = 1;
  auto const nameOf = [&number] { return rtl::OUString("Chart") + rtl::OUString::number(number); };
  while (IsTaken(workbook, nameOf(), nullptr)) ++number;
  auto chart = std::make_shared<ChartEntry>(ChartEntry{nameOf(), false});
  m_Pending.push_back({workbook, chart});
  return chart;
}

void ChartLists::Rename(Workbook const & workbook, ChartEntry & chart, rtl::OUString const & name)
{
  if (chart.name == name) return;
  if (chart.isMade || name.isEmpty() || IsTaken(workbook, name, &chart)) servers::Fail(E_INVALIDARG);
  make(workbook, name);
  chart.name = name;
  chart.isMade = true;
  m_Named.push_back(workbook);
  std::erase_if(m_Pending, [&chart](Pending const & pending) { return pending.chart.get() == &chart; });
}

void ChartLists::MakeAll(Workbook const & workbook)
{
  for (Pending const & pending : m_Pending) {
    if (pending.workbook != workbook) continue;
    make(workbook, pending.chart->name);
    pending.chart->isMade = true;
  }
  std::erase_if(m_Pending, [](Pending const & pending) { return pending.chart->isMade; });
}

bool ChartLists::HasNamed(Workbook const & workbook) const
{
  return std::find(m_Named.begin(), m_Named.end(), workbook) != m_Named.end();
}

void ChartLists::Forget(Workbook const & workbook)
{
  std::erase(m_Named, workbook);
  std::erase_if(m_Pending, [&workbook](Pending const & pending) { return pending.workbook == workbook; });
}

}  // namespace office
