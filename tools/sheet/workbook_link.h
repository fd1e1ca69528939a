// A workbook in a server of spreadsheets, as the commands need it: opened or made, looked through, added to, saved. Names are
// UTF-8.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/spreadsheet.h>

class SpreadsheetLink {
 public:
  // A program identifier; the empty one stands for that of the settings, else "Excel.Application". Raises Failure if there is no
  // such server, or none that starts.
  explicit SpreadsheetLink(std::string const & server);

  GPExcel & GetExcel() { return m_Excel; }

  // What a file holds and the server can't keep may be lost when it is saved.
  void AllowLoss() { m_Excel.SetDisplayAlerts(0); }

 private:
  CWinApp m_App{"Zephlow"};  // whose settings count
  GPExcel m_Excel;
};

// What the server refuses passes as an exception of the framework. The workbook is closed without saving, unless it was open
// before.
class WorkbookLink {
 public:
  enum class Source { File, New, FileOrNew };

  // name is a host's. A new workbook is saved under it by Save, which refuses to overwrite a file.
  WorkbookLink(SpreadsheetLink & server, std::string const & name, Source source);
  ~WorkbookLink();
  WorkbookLink(WorkbookLink const &) = delete;
  WorkbookLink & operator=(WorkbookLink const &) = delete;

  std::string const & GetName() const { return m_strName; }
  bool IsNew() const { return m_bNew; }  // not yet saved

  std::vector<std::string> ListWorksheets();

  // Gives take each worksheet with its name.
  void ForEachWorksheet(std::function<void(std::string const & name, GPWorkSheet & sheet)> const & take);
  std::vector<std::string> ListCharts();

  // By its name without case. Raises Failure for one that isn't there.
  GPWorkSheet FindWorksheet(std::string_view name);

  // Raise Failure for a name that a sheet or chart has already, or that none can have. The first worksheet of a new workbook is
  // the one that it has.
  GPWorkSheet AddWorksheet(std::string const & name);
  void AddChart(std::string const & name);

  void Save();

 private:
  void RequireFree(std::string const & name);
  [[noreturn]] void RefuseName(std::string const & name);

  GPWorkBook m_Book;
  std::string m_strName;
  bool m_bNew = false;
  bool m_bHasOwnSheet = false;  // the one of a new workbook, which has no name of ours yet
  bool m_bWasOpen = false;
};

// A link to what a call gives, which takes the reference over.
template <class Link>
Link Attached(IDispatch * object)
{
  Link link;
  link.AttachDispatch(object);
  return link;
}

// A value of UTF-8, which is known to be well-formed.
COleVariant TextVariant(std::string_view utf8);
