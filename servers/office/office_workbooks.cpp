// The office's workbooks, and what is told of its failures.

#include <com/sun/star/frame/XFrame.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/lang/DisposedException.hpp>

#include "failure.h"
#include "office_spreadsheet.h"
#include "office_text.h"
#include "workbook_files.h"

namespace office {
namespace {

using css::uno::UNO_QUERY_THROW;

class OfficeBook : public servers::Book {
 public:
  OfficeBook(OfficeSpreadsheet const & owner, Link & link, Workbook const & workbook)
      : m_Owner(owner), m_Link(link), m_Workbook(workbook)
  {
  }

  bool HasGone() override { return IsClosed(m_Workbook); }
  std::u16string GetFullName() override { return std::u16string(ViewOf(NameOfWorkbook(m_Workbook))); }

  // Brings the workbook's window to the front; there is none in an office without a screen.
  void Activate() override
  {
    Reference<css::frame::XController> const controller =
        Reference<css::frame::XModel>(m_Workbook, UNO_QUERY_THROW)->getCurrentController();
    if (controller.is() && controller->getFrame().is()) controller->getFrame()->activate();
  }
  void Close() override { CloseWorkbook(m_Link, m_Workbook); }
  void Save() override { SaveWorkbook(m_Link, m_Workbook, m_Owner.GetAlerts()); }
  void SaveAs(std::u16string_view path) override { SaveWorkbookAs(m_Link, m_Workbook, path, m_Owner.GetAlerts()); }

  size_t CountWorksheets() override { return static_cast<size_t>(SheetsOf(m_Workbook)->getCount()); }
  std::shared_ptr<servers::Worksheet> GetWorksheet(size_t index) override
  {
    Reference<css::sheet::XSpreadsheet> const sheet(SheetsOf(m_Workbook)->getByIndex(static_cast<sal_Int32>(index)),
                                                    UNO_QUERY_THROW);
    return MakeWorksheet(m_Link, Sheet{sheet, m_Workbook});
  }

  // In front of the others, with the first free name of "Sheet1", "Sheet2", ...
  std::shared_ptr<servers::Worksheet> AddWorksheet() override
  {
    RequireWritable(m_Workbook);
    auto const sheets = m_Workbook->getSheets();
    sal_Int32 number = 1;
    auto const nameOf = [&number] { return rtl::OUString("Sheet") + rtl::OUString::number(number); };
    while (sheets->hasByName(nameOf())) ++number;
    sheets->insertNewByName(nameOf(), 0);
    Reference<css::sheet::XSpreadsheet> const sheet(sheets->getByName(nameOf()), UNO_QUERY_THROW);
    return MakeWorksheet(m_Link, Sheet{sheet, m_Workbook});
  }

  size_t CountCharts() override { return m_Link.GetCharts().List(m_Workbook).size(); }
  std::shared_ptr<servers::Chart> GetChart(size_t index) override
  {
    return MakeChart(m_Link, m_Workbook, m_Link.GetCharts().List(m_Workbook).at(index));
  }
  std::shared_ptr<servers::Chart> AddChart() override
  {
    RequireWritable(m_Workbook);
    return MakeChart(m_Link, m_Workbook, m_Link.GetCharts().Add(m_Workbook));
  }

 private:
  OfficeSpreadsheet const & m_Owner;
  Link & m_Link;
  Workbook m_Workbook;
};

// The office's own words, which may be no more than a place in its source.
std::string sentenceOf(rtl::OUString const & message)
{
  constexpr char const * refused = "The office refuses this";
  if (message.isEmpty()) return refused;
  return message.startsWith("at ") ? std::string(refused) + " (" + ToUtf8(message) + ")" : ToUtf8(message);
}

}  // namespace

Reference<css::container::XIndexAccess> SheetsOf(Workbook const & workbook)
{
  return Reference<css::container::XIndexAccess>(workbook->getSheets(), UNO_QUERY_THROW);
}

std::shared_ptr<servers::Book> OfficeSpreadsheet::GetBook(size_t index)
{
  return std::make_shared<OfficeBook>(*this, *m_pLink, m_pLink->ListWorkbooks().at(index));
}

std::shared_ptr<servers::Book> OfficeSpreadsheet::AddBook()
{
  return std::make_shared<OfficeBook>(*this, *m_pLink, CreateWorkbook(*m_pLink));
}

std::shared_ptr<servers::Book> OfficeSpreadsheet::OpenBook(std::u16string_view path)
{
  return std::make_shared<OfficeBook>(*this, *m_pLink, OpenWorkbook(*m_pLink, path));
}

void OfficeSpreadsheet::Enter(bool isReading)
{
  if (m_pLink->IsBroken() || Link::IsOutOfReach()) servers::Fail(serverUnavailable);
  if (!isReading) m_pLink->GetReadAhead().Drop();
}

HRESULT OfficeSpreadsheet::TellCurrent(EXCEPINFO * record, std::function<bool()> const & hasGone)
{
  try {
    throw;
  } catch (css::lang::DisposedException const &) {
    return m_pLink->HasBroken() ? serverUnavailable : CO_E_OBJNOTCONNECTED;
  } catch (css::uno::Exception const & exception) {
    if (m_pLink->HasBroken()) return serverUnavailable;
    return hasGone() ? CO_E_OBJNOTCONNECTED
                     : TellSentence(*this, record, servers::applicationError, sentenceOf(exception.Message));
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace office
