// The objects of the published table: application, workbooks, workbook, worksheets, worksheet, charts and chart.

#include <span>

#include "servers/common/dispatch_object.h"
#include "servers/common/failure.h"
#include "servers/common/range_object.h"
#include "servers/common/values.h"
#include "servers/common/wide_text.h"

namespace servers {
namespace {

constexpr WORD get = DISPATCH_PROPERTYGET;
constexpr WORD put = DISPATCH_PROPERTYPUT;
constexpr WORD method = DISPATCH_METHOD;

class WorksheetObject : public ObjectOver<WorksheetObject, Worksheet> {
 public:
  using ObjectOver::ObjectOver;

  static std::span<Member<WorksheetObject> const> Members()
  {
    static constexpr Member<WorksheetObject> members[] = {
        {0xC5, u"Range", get, &WorksheetObject::Range, true}, {0x6E, u"Name", get, &WorksheetObject::GetName},
        {0x6E, u"Name", put, &WorksheetObject::SetName},      {0x19C, u"UsedRange", get, &WorksheetObject::UsedRange},
        {0xEB, u"Select", method, &WorksheetObject::Select},
    };
    return members;
  }

 private:
  void GetName(Call & call) { call.ReturnText(m_pModel->GetName()); }
  void SetName(Call & call) { m_pModel->SetName(call.GetText(0)); }
  void Select(Call &) { m_pModel->Select(); }
  void UsedRange(Call & call) { call.Return(new RangeObject(GetSpreadsheet(), m_pModel, m_pModel->GetUsed())); }

  void Range(Call & call)
  {
    std::u16string const name = call.GetText(0);
    std::string const utf8 = FromWide(name);
    std::optional<Block> block = ReadBlockName(utf8);
    if (!block) block = m_pModel->FindNamed(name);
    if (!block) Refuse("There are no cells of the name \"" + utf8 + "\"");
    call.Return(new RangeObject(GetSpreadsheet(), m_pModel, *block));
  }
};

class ChartObject : public ObjectOver<ChartObject, Chart> {
 public:
  using ObjectOver::ObjectOver;

  static std::span<Member<ChartObject> const> Members()
  {
    static constexpr Member<ChartObject> members[] = {
        {0x6E, u"Name", get, &ChartObject::GetName},
        {0x6E, u"Name", put, &ChartObject::SetName},
        {0xEB, u"Select", method, &ChartObject::Select},
    };
    return members;
  }

 private:
  void GetName(Call & call) { call.ReturnText(m_pModel->GetName()); }
  void SetName(Call & call) { m_pModel->SetName(call.GetText(0)); }
  void Select(Call &) { m_pModel->Select(); }
};

class WorksheetList : public ObjectOver<WorksheetList, Book> {
 public:
  using ObjectOver::ObjectOver;

  static std::span<Member<WorksheetList> const> Members()
  {
    static constexpr Member<WorksheetList> members[] = {
        {0x76, u"Count", get, &WorksheetList::Count},
        {0xB5, u"Add", method, &WorksheetList::Add},
    };
    return members;
  }

 private:
  void Count(Call & call) { call.ReturnNumber(m_pModel->CountWorksheets()); }
  void Add(Call & call) { call.Return(new WorksheetObject(GetSpreadsheet(), m_pModel->AddWorksheet())); }
};

class ChartList : public ObjectOver<ChartList, Book> {
 public:
  using ObjectOver::ObjectOver;

  static std::span<Member<ChartList> const> Members()
  {
    static constexpr Member<ChartList> members[] = {
        {0x76, u"Count", get, &ChartList::Count},
        {0xB5, u"Add", method, &ChartList::Add},
    };
    return members;
  }

 private:
  void Count(Call & call) { call.ReturnNumber(m_pModel->CountCharts()); }
  void Add(Call & call) { call.Return(new ChartObject(GetSpreadsheet(), m_pModel->AddChart())); }
};

class BookObject : public ObjectOver<BookObject, Book> {
 public:
  using ObjectOver::ObjectOver;

  static std::span<Member<BookObject> const> Members()
  {
    static constexpr Member<BookObject> members[] = {
        {0x79, u"Charts", get, &BookObject::Charts},         {0x1EE, u"Worksheets", get, &BookObject::Worksheets},
        {0x121, u"FullName", get, &BookObject::FullName},    {0x115, u"Close", method, &BookObject::Close},
        {0x11B, u"Save", method, &BookObject::Save},         {0x11C, u"SaveAs", method, &BookObject::SaveAs},
        {0x130, u"Activate", method, &BookObject::Activate},
    };
    return members;
  }

 private:
  void Charts(Call & call)
  {
    if (!call.Has(0)) return call.Return(new ChartList(GetSpreadsheet(), m_pModel));
    call.Return(new ChartObject(GetSpreadsheet(), m_pModel->GetChart(call.GetIndex(0, m_pModel->CountCharts()))));
  }

  void Worksheets(Call & call)
  {
    if (!call.Has(0)) return call.Return(new WorksheetList(GetSpreadsheet(), m_pModel));
    call.Return(new WorksheetObject(GetSpreadsheet(), m_pModel->GetWorksheet(call.GetIndex(0, m_pModel->CountWorksheets()))));
  }

  void Close(Call & call)
  {
    if (call.Has(0) && call.GetFlag(0)) m_pModel->Save();
    m_pModel->Close();
  }

  void FullName(Call & call) { call.ReturnText(m_pModel->GetFullName()); }
  void Activate(Call &) { m_pModel->Activate(); }
  void Save(Call &) { m_pModel->Save(); }
  void SaveAs(Call & call) { m_pModel->SaveAs(call.GetText(0)); }
};

class BookList : public ObjectOf<BookList> {
 public:
  using ObjectOf::ObjectOf;

  static std::span<Member<BookList> const> Members()
  {
    static constexpr Member<BookList> members[] = {
        {0x76, u"Count", get, &BookList::Count},
        {0xB5, u"Add", method, &BookList::Add},
        {0x2AA, u"Open", method, &BookList::Open},
    };
    return members;
  }

 private:
  void Count(Call & call) { call.ReturnNumber(GetSpreadsheet()->CountBooks()); }
  void Add(Call & call) { call.Return(new BookObject(GetSpreadsheet(), GetSpreadsheet()->AddBook())); }
  void Open(Call & call) { call.Return(new BookObject(GetSpreadsheet(), GetSpreadsheet()->OpenBook(call.GetText(0)))); }
};

class Application : public ObjectOf<Application> {
 public:
  using ObjectOf::ObjectOf;

  static std::span<Member<Application> const> Members()
  {
    static constexpr Member<Application> members[] = {
        {0x23C, u"Workbooks", get, &Application::Workbooks},
        {0x157, u"DisplayAlerts", get, &Application::GetAlerts},
        {0x157, u"DisplayAlerts", put, &Application::SetAlerts},
    };
    return members;
  }

 private:
  void Workbooks(Call & call)
  {
    if (!call.Has(0)) return call.Return(new BookList(GetSpreadsheet()));
    size_t const index = call.GetIndex(0, GetSpreadsheet()->CountBooks());
    call.Return(new BookObject(GetSpreadsheet(), GetSpreadsheet()->GetBook(index)));
  }

  void GetAlerts(Call & call) { call.Return(BooleanValue(GetSpreadsheet()->GetAlerts())); }
  void SetAlerts(Call & call) { GetSpreadsheet()->SetAlerts(call.GetFlag(0)); }
};

}  // namespace

IDispatch * MakeApplication(std::shared_ptr<Spreadsheet> spreadsheet)
{
  return new Application(std::move(spreadsheet));
}

}  // namespace servers
