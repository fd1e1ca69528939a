// The objects of the published table: application, workbooks, workbook, worksheets, worksheet, range, charts, chart.
#pragma once

#include <span>

#include <com/sun/star/container/XIndexAccess.hpp>

#include "dispatch_object.h"

namespace office {

// The spreadsheet itself.
class Application : public ObjectOf<Application> {
 public:
  using ObjectOf::ObjectOf;
  static std::span<Member<Application> const> Members();

 private:
  void Workbooks(Call & call);
};

// The open workbooks, the oldest first.
class WorkbookList : public ObjectOf<WorkbookList> {
 public:
  using ObjectOf::ObjectOf;
  static std::span<Member<WorkbookList> const> Members();

 private:
  void Count(Call & call);
  void Add(Call & call);
  void Open(Call & call);
};

class WorkbookObject : public ObjectOf<WorkbookObject> {
 public:
  WorkbookObject(std::shared_ptr<Link> link, Workbook workbook) : ObjectOf(std::move(link)), m_Workbook(std::move(workbook)) {}
  static std::span<Member<WorkbookObject> const> Members();

 private:
  void Charts(Call & call);
  void Worksheets(Call & call);
  void Activate(Call & call);
  void Close(Call & call);
  void FullName(Call & call);
  void Save(Call & call);
  void SaveAs(Call & call);

  Workbook m_Workbook;
};

class WorksheetList : public ObjectOf<WorksheetList> {
 public:
  WorksheetList(std::shared_ptr<Link> link, Workbook workbook) : ObjectOf(std::move(link)), m_Workbook(std::move(workbook)) {}
  static std::span<Member<WorksheetList> const> Members();

 private:
  void Count(Call & call);
  void Add(Call & call);

  Workbook m_Workbook;
};

// Ranges hold it together with the worksheet.
using SharedSheet = std::shared_ptr<Sheet const>;

class WorksheetObject : public ObjectOf<WorksheetObject> {
 public:
  WorksheetObject(std::shared_ptr<Link> link, Sheet sheet)
      : ObjectOf(std::move(link)), m_pSheet(std::make_shared<Sheet const>(std::move(sheet)))
  {
  }
  static std::span<Member<WorksheetObject> const> Members();

 private:
  void GetName(Call & call);
  void SetName(Call & call);
  void Range(Call & call);
  void UsedRange(Call & call);
  void Select(Call & call);

  SharedSheet m_pSheet;
};

// A block of cells, or its rows or columns, which differ in what they count.
class RangeObject : public ObjectOf<RangeObject> {
 public:
  enum class Unit { Cells, Rows, Columns };

  RangeObject(std::shared_ptr<Link> link, SharedSheet sheet, Area const & area, Unit unit = Unit::Cells)
      : ObjectOf(std::move(link)), m_pSheet(std::move(sheet)), m_Area(area), m_Unit(unit)
  {
  }
  static std::span<Member<RangeObject> const> Members();

 private:
  void GetValue(Call & call);
  void SetValue(Call & call);
  void Count(Call & call);
  void Row(Call & call) { call.Return(static_cast<LONG>(m_Area.firstRow + 1)); }
  void Column(Call & call) { call.Return(static_cast<LONG>(m_Area.firstColumn + 1)); }
  void Rows(Call & call) { call.Return(new RangeObject(ShareLink(), m_pSheet, m_Area, Unit::Rows)); }
  void Columns(Call & call) { call.Return(new RangeObject(ShareLink(), m_pSheet, m_Area, Unit::Columns)); }

  SharedSheet m_pSheet;
  Area m_Area;
  Unit m_Unit;
};

class ChartList : public ObjectOf<ChartList> {
 public:
  ChartList(std::shared_ptr<Link> link, Workbook workbook) : ObjectOf(std::move(link)), m_Workbook(std::move(workbook)) {}
  static std::span<Member<ChartList> const> Members();

 private:
  void Count(Call & call);
  void Add(Call & call);

  Workbook m_Workbook;
};

class ChartObject : public ObjectOf<ChartObject> {
 public:
  ChartObject(std::shared_ptr<Link> link, Workbook workbook, std::shared_ptr<ChartEntry> chart)
      : ObjectOf(std::move(link)), m_Workbook(std::move(workbook)), m_pChart(std::move(chart))
  {
  }
  static std::span<Member<ChartObject> const> Members();

 private:
  void GetName(Call & call);
  void SetName(Call & call);
  void Select(Call & call);

  Workbook m_Workbook;
  std::shared_ptr<ChartEntry> m_pChart;
};

// The worksheets of a workbook.
Reference<css::container::XIndexAccess> SheetsOf(Workbook const & workbook);

// An index from 1 as one from 0; DISP_E_BADINDEX as Failure beyond count.
LONG CheckIndex(LONG index, size_t count);

}  // namespace office
