// The scan of a worksheet's 5,000 cells over the bridge to LibreOffice; beside it its limit, the remote calls that it makes,
// bare, and what one of those calls costs. Starts an office of its own.

#include <benchmark/benchmark.h>

#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XCellRangesQuery.hpp>
#include <com/sun/star/sheet/XSheetCellRanges.hpp>

#include <string>

#include <zpbase/platform/variants.h>
#include <zpbase/spreadsheet.h>

#include "servers/office/office_spreadsheet.h"

namespace {

namespace css = com::sun::star;
using css::uno::Reference;
using css::uno::UNO_QUERY_THROW;

constexpr int cellCount = 5'000;

// A worksheet of numbers and texts with gaps, seen from both sides.
class Sample {
 public:
  Sample()
  {
    std::shared_ptr<office::Link> const link = office::Link::Get();
    m_Application.AttachDispatch(servers::MakeApplication(std::make_shared<office::OfficeSpreadsheet>(link)));
    GPWorkBooks books;
    books.AttachDispatch(m_Application.GetWorkBooks());
    m_Book.AttachDispatch(books.Add());
    m_Sheet.m_Link.AttachDispatch(m_Book.GetWorkSheet(COleVariant(short{1})));
    Reference<css::container::XIndexAccess> const sheets(link->ListWorkbooks().back()->getSheets(), UNO_QUERY_THROW);
    m_Cells.set(sheets->getByIndex(0), UNO_QUERY_THROW);
    css::uno::Sequence<css::uno::Sequence<css::uno::Any>> data(50);
    for (sal_Int32 row = 0; row < 50; ++row) {
      css::uno::Sequence<css::uno::Any> cells(100);
      for (sal_Int32 column = 0; column < 100; ++column) {
        css::uno::Any & cell = cells.getArray()[column];
        if (column % 3 == 0) cell <<= row + column / 7.0 + 2;
        if (column % 3 == 1) cell <<= "Text " + rtl::OUString::number(row);
        if (column % 3 == 2) cell <<= rtl::OUString();
      }
      data.getArray()[row] = cells;
    }
    Reference<css::sheet::XCellRangeData>(m_Cells->getCellRangeByPosition(0, 0, 99, 49), UNO_QUERY_THROW)->setDataArray(data);
  }

  ~Sample() { m_Book.Close(COleVariant(short{0})); }

  GPExcelWorkSheet m_Sheet{"Sample"};
  Reference<css::sheet::XSpreadsheet> m_Cells;

 private:
  GPApplication m_Application;
  GPWorkBook m_Book;
};

Sample & sample()
{
  static Sample one;
  return one;
}

void scan(benchmark::State & state)
{
  GPExcelWorkSheet & sheet = sample().m_Sheet;
  for (auto _ : state)
    if (sheet.EnumRanges(&GPExcelWorkSheet::ProcessRanges, "Book") != cellCount) state.SkipWithError("cells were missed");
}
BENCHMARK(scan)->Unit(benchmark::kMillisecond)->UseRealTime();

void fetchBare(Reference<css::sheet::XSpreadsheet> const & sheet, sal_Int32 lastColumn, sal_Int32 lastRow, bool hasEmpty)
{
  Reference<css::sheet::XCellRangeData> const range(sheet->getCellRangeByPosition(0, 0, lastColumn, lastRow), UNO_QUERY_THROW);
  benchmark::DoNotOptimize(range->getDataArray());
  if (!hasEmpty) return;
  Reference<css::sheet::XCellRangesQuery> const query(range, UNO_QUERY_THROW);
  constexpr sal_Int16 texts = css::sheet::CellFlags::STRING | css::sheet::CellFlags::FORMULA;
  benchmark::DoNotOptimize(query->queryContentCells(texts)->getRangeAddresses());
}

// One cell, then the block that is read ahead.
void bareCallsOfScan(benchmark::State & state)
{
  Reference<css::sheet::XSpreadsheet> const & cells = sample().m_Cells;
  for (auto _ : state) {
    fetchBare(cells, 0, 0, false);
    fetchBare(cells, 127, 63, true);
  }
}
BENCHMARK(bareCallsOfScan)->Unit(benchmark::kMillisecond)->UseRealTime();

// What each of 5,000 cells would take: its cell, and its value.
void bareCallsOfOneCell(benchmark::State & state)
{
  Reference<css::sheet::XSpreadsheet> const & cells = sample().m_Cells;
  for (auto _ : state) benchmark::DoNotOptimize(cells->getCellByPosition(3, 3)->getValue());
}
BENCHMARK(bareCallsOfOneCell)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
