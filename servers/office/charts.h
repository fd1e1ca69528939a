// Charts as named sheets. The office has none: a chart is an object on a worksheet, which can't be renamed. So a new chart stands
// in a list of ours, under a name of its own, until it gets its name or its workbook is saved; then it is made.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>

namespace office {

namespace css = com::sun::star;
using css::uno::Reference;

using Workbook = Reference<css::sheet::XSpreadsheetDocument>;

// A chart that somebody holds: made or not, under its present name.
struct ChartEntry {
  rtl::OUString name;
  bool isMade;
};

class ChartLists {
 public:
  // The charts of a workbook: those that stand on its worksheets, in their order, then those that aren't made yet.
  std::vector<std::shared_ptr<ChartEntry>> List(Workbook const & workbook);

  // A new one, with the first free name of "Chart1", "Chart2", ...
  std::shared_ptr<ChartEntry> Add(Workbook const & workbook);

  // Gives a chart its name, with which it is made. Failure(E_INVALIDARG) for a name that is taken,
  // is none, or comes too late.
  void Rename(Workbook const & workbook, ChartEntry & chart, rtl::OUString const & name);

  // Makes what isn't made yet.
  void MakeAll(Workbook const & workbook);

  // Whether a chart was given its name here, which it has only as long as the workbook's format keeps it.
  bool HasNamed(Workbook const & workbook) const;

  // Forgets a workbook that was closed; all.
  void Forget(Workbook const & workbook);
  void Clear()
  {
    m_Pending.clear();
    m_Named.clear();
  }

 private:
  struct Pending {
    Workbook workbook;
    std::shared_ptr<ChartEntry> chart;
  };

  bool IsTaken(Workbook const & workbook, rtl::OUString const & name, ChartEntry const * butFor);

  std::vector<Pending> m_Pending;
  std::vector<Workbook> m_Named;
};

}  // namespace office
