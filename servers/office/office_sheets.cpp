// The office's worksheets and charts.

#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/lang/DisposedException.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XSheetCellCursor.hpp>
#include <com/sun/star/sheet/XSpreadsheetView.hpp>
#include <com/sun/star/sheet/XUsedAreaCursor.hpp>

#include "failure.h"
#include "office_spreadsheet.h"
#include "office_text.h"
#include "workbook_files.h"

namespace office {
namespace {

using css::uno::UNO_QUERY;
using css::uno::UNO_QUERY_THROW;

constexpr size_t mostNameUnits = 31;  // .xlsx and .xls would cut the rest off

servers::Block blockOf(Reference<css::uno::XInterface> const & cells)
{
  css::table::CellRangeAddress const place =
      Reference<css::sheet::XCellRangeAddressable>(cells, UNO_QUERY_THROW)->getRangeAddress();
  return {static_cast<uint32_t>(place.StartRow), static_cast<uint32_t>(place.StartColumn), static_cast<uint32_t>(place.EndRow),
          static_cast<uint32_t>(place.EndColumn)};
}

class OfficeWorksheet : public servers::Worksheet {
 public:
  OfficeWorksheet(Link & link, Sheet sheet) : m_Link(link), m_Sheet(std::move(sheet)) {}

  bool HasGone() override { return IsClosed(m_Sheet.workbook); }

  std::u16string GetName() override
  {
    rtl::OUString const name = Named()->getName();
    if (name.isEmpty()) servers::Fail(CO_E_OBJNOTCONNECTED);  // only a sheet of a closed workbook has none
    return std::u16string(ViewOf(name));
  }

  // The office leaves a name that it refuses as it was, without a word.
  void SetName(std::u16string_view name) override
  {
    RequireWritable(m_Sheet.workbook);
    if (name.size() > mostNameUnits) servers::Fail(E_INVALIDARG);
    rtl::OUString const wanted = FromWide(name);
    Named()->setName(wanted);
    if (Named()->getName() != wanted) servers::Fail(E_INVALIDARG);
  }

  // Shows the worksheet in the workbook's window, if it has one.
  void Select() override
  {
    Reference<css::sheet::XSpreadsheetView> const view(
        Reference<css::frame::XModel>(m_Sheet.workbook, UNO_QUERY_THROW)->getCurrentController(), UNO_QUERY);
    if (view.is()) view->setActiveSheet(m_Sheet.cells);
  }

  std::optional<servers::Block> FindNamed(std::u16string_view name) override
  {
    try {
      return blockOf(m_Sheet.cells->getCellRangeByName(FromWide(name)));
    } catch (css::lang::DisposedException const &) {
      throw;
    } catch (css::uno::RuntimeException const &) {
      if (HasGone()) throw;
      return std::nullopt;
    }
  }

  servers::Block GetUsed() override
  {
    auto const cursor = m_Sheet.cells->createCursor();
    Reference<css::sheet::XUsedAreaCursor> const used(cursor, UNO_QUERY_THROW);
    used->gotoStartOfUsedArea(false);
    used->gotoEndOfUsedArea(true);
    return blockOf(cursor);
  }

  VARIANT ReadCell(servers::Place const & place) override
  {
    return m_Link.GetReadAhead().Read(m_Sheet, static_cast<int32_t>(place.column), static_cast<int32_t>(place.row));
  }
  void ReadBlock(servers::Block const & block, servers::MadeBlock & values) override
  {
    m_Link.GetReadAhead().Drop();
    office::ReadBlock(m_Sheet, AreaOf(block), values);
  }
  void Write(servers::Block const & block, servers::GivenValues const & values) override
  {
    WriteBlock(m_Sheet, AreaOf(block), values);
  }

 private:
  Reference<css::container::XNamed> Named() const { return Reference<css::container::XNamed>(m_Sheet.cells, UNO_QUERY_THROW); }

  Link & m_Link;
  Sheet m_Sheet;
};

class OfficeChart : public servers::Chart {
 public:
  OfficeChart(Link & link, Workbook const & workbook, std::shared_ptr<ChartEntry> chart)
      : m_Link(link), m_Workbook(workbook), m_pChart(std::move(chart))
  {
  }

  bool HasGone() override { return IsClosed(m_Workbook); }
  std::u16string GetName() override { return std::u16string(ViewOf(m_pChart->name)); }
  void SetName(std::u16string_view name) override
  {
    RequireWritable(m_Workbook);
    m_Link.GetCharts().Rename(m_Workbook, *m_pChart, FromWide(name));
  }

  // There is no sheet of the chart's own to be shown; a chart of a workbook that was closed is told.
  void Select() override { SheetsOf(m_Workbook)->getCount(); }

 private:
  Link & m_Link;
  Workbook m_Workbook;
  std::shared_ptr<ChartEntry> m_pChart;
};

}  // namespace

std::shared_ptr<servers::Worksheet> MakeWorksheet(Link & link, Sheet sheet)
{
  return std::make_shared<OfficeWorksheet>(link, std::move(sheet));
}

std::shared_ptr<servers::Chart> MakeChart(Link & link, Workbook const & workbook, std::shared_ptr<ChartEntry> chart)
{
  return std::make_shared<OfficeChart>(link, workbook, std::move(chart));
}

}  // namespace office
