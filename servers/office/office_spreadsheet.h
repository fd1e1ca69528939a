// What the shared objects ask of a server of spreadsheets, done by the office.
#pragma once

#include <com/sun/star/container/XIndexAccess.hpp>

#include "link.h"
#include "servers/common/model.h"

namespace office {

class OfficeSpreadsheet : public servers::Spreadsheet {
 public:
  explicit OfficeSpreadsheet(std::shared_ptr<Link> link) : Spreadsheet("Zephlow.Office"), m_pLink(std::move(link)) {}

  size_t CountBooks() override { return m_pLink->ListWorkbooks().size(); }
  std::shared_ptr<servers::Book> GetBook(size_t index) override;
  std::shared_ptr<servers::Book> AddBook() override;
  std::shared_ptr<servers::Book> OpenBook(std::u16string_view path) override;

  // Tells an office that has gone by its code, and drops what was read ahead if a call may change cells.
  void Enter(bool isReading) override;
  HRESULT TellCurrent(EXCEPINFO * record, std::function<bool()> const & hasGone) override;
  bool IsOutOfReach() const override { return Link::IsOutOfReach(); }

 private:
  std::shared_ptr<Link> m_pLink;
};

// Worksheets and charts of a workbook. The link outlives them.
std::shared_ptr<servers::Worksheet> MakeWorksheet(Link & link, Sheet sheet);
std::shared_ptr<servers::Chart> MakeChart(Link & link, Workbook const & workbook, std::shared_ptr<ChartEntry> chart);

// The worksheets of a workbook.
Reference<css::container::XIndexAccess> SheetsOf(Workbook const & workbook);

// A block's values, fetched some rows at a time, and the way back.
void ReadBlock(Sheet const & sheet, Area const & area, servers::MadeBlock & values);
void WriteBlock(Sheet const & sheet, Area const & area, servers::GivenValues const & values);

}  // namespace office
