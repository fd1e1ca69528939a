// The spreadsheet program, reached by automation: addresses and values of cells, links to the server's objects, and the session
// that finds, makes, loads and closes workbooks, worksheets and charts and walks the worksheets of a workbook.
//
// Rows count from 1. Columns count from 0 in BuildExcelColLabel and in all names made of a column number, from 1 in
// GPCell::GetColLabel and GetColIndex; labels go up to "ZZ".
#pragma once

#include <string_view>

#include "foundation.h"
#include "platform/automation.h"
#include "platform/collections.h"
#include "platform/string.h"
#include "platform/variants.h"

// 0 is "A", 701 is "ZZ"; a column outside these gives 0 and leaves label alone.
ZP_API int BuildExcelColLabel(CString & label, int column);

// One cell: its address, its name such as "B12", and its value, which is empty, a 16-bit integer, a double or a text when made
// here, and whatever the spreadsheet sends when read from there.
class ZP_API GPCell : public CObject {
 public:
  // Integers keep their low 16 bits. A column outside "A" to "ZZ" leaves the row alone as the name.
  GPCell(int column, int row);
  GPCell(int column, int row, int const & value);
  GPCell(int column, int row, unsigned int const & value);
  GPCell(int column, int row, double const & value);
  GPCell(int column, int row, char const * value);
  GPCell(int column, int row, CString const & value);

  // The label stands in the name as given. The column is GetColIndex of it: counted from 1, 0 if it is no label.
  GPCell(CString & label, int row, double const & value);

  CString & GetName() { return m_strName; }

  COleVariant & GetValue() { return m_Value; }
  void SetValue(COleVariant const & value) { m_Value = value; }

  // The value as a 16-bit integer with or without its sign, as a double, as a text. The cell's own value is changed into that
  // type: a double read as an integer is the rounded number from then on, a number read as text a text. 0, and a zero or empty
  // out, for an empty cell, for a text read as a number, and for what can't be changed (too large a number, an error value).
  int GetValue(int & out);
  int GetValue(unsigned int & out);
  int GetValue(double & out);
  int GetValue(CString & out);

  void GetCellAddress(int & column, int & row) const;
  void SetCellAddress(int column, int row);

  // 1 is "A", 702 is "ZZ"; 0 with label left alone outside these.
  static int GetColLabel(CString & label, int column);

  // The reverse, in any case of letters; 0 with column 0 for what is no label.
  static int GetColIndex(int & column, CString const & label);

 private:
  void BuildName();
  int ChangeType(unsigned short type);

  int m_nColumn;
  int m_nRow;
  CString m_strName;
  COleVariant m_Value;
};

namespace zp {

// An error value of a spreadsheet is a VT_ERROR whose code is this and a number: 2042 is "#N/A". Null, and 0, for what is none.
inline constexpr HRESULT cellErrorBase = static_cast<HRESULT>(0x800A0000);
ZP_API char const * CellErrorText(int number);
ZP_API int CellErrorNumber(std::string_view text);

// The code (m_scError) of a server that refuses to save a workbook over a file with more in it than it can keep, which is told
// with the refusal. With "DisplayAlerts" off it is saved all the same.
inline constexpr HRESULT contentsWouldBeLost = static_cast<HRESULT>(0x80040201);

}  // namespace zp

// A block of cells, by the names of its first and last one, and a format for it. An assignment whose memory runs out may have
// taken some of the texts.
class ZP_API GPRangeFormat : public CObject {
 public:
  GPRangeFormat(int firstColumn, int firstRow, int lastColumn, int lastRow, char const * format);

  CString m_strFirst;
  CString m_strLast;
  CString m_strFormat;
};

// Links to the server's objects. A copy shares the object. Each member is one late-bound call; what fails is raised as
// COleException, or as COleDispatchException where the server itself reports an exception. An object that is returned carries a
// reference that the caller owns: AttachDispatch takes it over. Indices count from 1.

class ZP_API GPRange : public COleDispatchDriver {
 public:
  GPRange() = default;
  GPRange(GPRange const &) = default;
  GPRange & operator=(GPRange const &) = default;
  ~GPRange();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  VARIANT GetValue();  // of several cells a block, VT_ARRAY | VT_VARIANT, of rows and columns from 1; the caller clears it
  void SetValue(VARIANT const & value);
  long GetRow();  // of the first cell, from 1
  long GetColumn();
  IDispatch * GetRows();  // ranges, whose count is that of the rows or columns
  IDispatch * GetColumns();
  long GetCount();
};

class ZP_API GPWorkSheet : public COleDispatchDriver {
 public:
  GPWorkSheet() = default;
  GPWorkSheet(GPWorkSheet const &) = default;
  GPWorkSheet & operator=(GPWorkSheet const &) = default;
  ~GPWorkSheet();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  CString GetName();
  void SetName(char const * name);
  IDispatch * GetCell(tagVARIANT const & name);  // a range, of one cell or of a block such as "A1:CV50"
  IDispatch * GetUsedRange();
  void Select();
};

class ZP_API GPWorkSheets : public COleDispatchDriver {
 public:
  GPWorkSheets() = default;
  GPWorkSheets(GPWorkSheets const &) = default;
  GPWorkSheets & operator=(GPWorkSheets const &) = default;
  ~GPWorkSheets();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  long GetCount();
  IDispatch * Add();
};

class ZP_API GPChart : public COleDispatchDriver {
 public:
  GPChart() = default;
  GPChart(GPChart const &) = default;
  GPChart & operator=(GPChart const &) = default;
  ~GPChart();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  CString GetName();
  void SetName(char const * name);
  void Select();
};

class ZP_API GPCharts : public COleDispatchDriver {
 public:
  GPCharts() = default;
  GPCharts(GPCharts const &) = default;
  GPCharts & operator=(GPCharts const &) = default;
  ~GPCharts();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  long GetCount();
  IDispatch * Add();
};

class ZP_API GPWorkBook : public COleDispatchDriver {
 public:
  GPWorkBook() = default;
  GPWorkBook(GPWorkBook const &) = default;
  GPWorkBook & operator=(GPWorkBook const &) = default;
  ~GPWorkBook();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  CString GetFullName();  // the whole path
  void Activate();
  void Close(tagVARIANT const & saveChanges);
  void Save();
  void SaveAs(tagVARIANT const & fileName);
  IDispatch * GetWorkSheets();
  IDispatch * GetWorkSheet(tagVARIANT const & index);
  IDispatch * GetCharts();
  IDispatch * GetChart(tagVARIANT const & index);
};

class ZP_API GPWorkBooks : public COleDispatchDriver {
 public:
  GPWorkBooks() = default;
  GPWorkBooks(GPWorkBooks const &) = default;
  GPWorkBooks & operator=(GPWorkBooks const &) = default;
  ~GPWorkBooks();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  long GetCount();
  IDispatch * Add();
  IDispatch * Open(tagVARIANT const & fileName);
};

class ZP_API GPApplication : public COleDispatchDriver {
 public:
  GPApplication() = default;
  GPApplication(GPApplication const &) = default;
  GPApplication & operator=(GPApplication const &) = default;
  ~GPApplication();
  int HasOLELink() const { return m_lpDispatch != nullptr; }

  IDispatch * GetWorkBooks();
  IDispatch * GetWorkBook(tagVARIANT const & index);
  void SetDisplayAlerts(int shown);  // 0: what the server would ask about, or refuse as dangerous, is done
};

// The session. Whoever fills an object's link tells by its result whether the object has one in the end. Names are compared
// without case, and the first match in the server's order counts. Exceptions are swallowed only where it is said; all others
// reach the caller, with the references of the work under way released.

class ZP_API GPExcelChart : public CObject {
 public:
  GPExcelChart() : GPExcelChart(CString()) {}
  explicit GPExcelChart(CString const & name) : m_strName(name) {}

  int SetFocus();  // 0, with a message, where the server raises COleException

  GPChart m_Link;
  CString m_strName;
};

class ZP_API GPExcelWorkSheet : public CObject {
 public:
  GPExcelWorkSheet() : GPExcelWorkSheet(CString()) {}
  explicit GPExcelWorkSheet(CString const & name);
  GPExcelWorkSheet(GPExcelWorkSheet const &) = delete;
  GPExcelWorkSheet & operator=(GPExcelWorkSheet const &) = delete;

  int SetFocus();  // 0 where the server raises COleException

  // Reads the block "A1" to "CV50", row by row: each cell's range is attached and its value read, a cell that isn't empty is
  // appended to m_List1, which is emptied first, and then the callback is called with the range still attached. Gives how often
  // it was called. A cell without a range shows a message and ends its row. After an exception the list holds what was read
  // before it.
  int EnumRanges(void (*callback)(GPExcelWorkSheet &, GPRange &), CString const & bookName);
  static void ProcessRanges(GPExcelWorkSheet & sheet, GPRange & range);                           // does nothing
  int BuildWorkSheet(void (*callback)(GPExcelWorkSheet &, GPRange &), CString const & bookName);  // the same, with result 1

  GPWorkSheet m_Link;
  CString m_strName;
  GPObArray m_List1;  // GPCell: what the last scan found, row by row
  GPObArray m_List2;
  GPObArray m_List3;
};

// A workbook, which is its own link. To be found in the server or loaded, its name must be the full path, in the inside form.
class ZP_API GPExcelWorkBook : public GPWorkBook {
 public:
  GPExcelWorkBook() : GPExcelWorkBook(CString()) {}
  explicit GPExcelWorkBook(CString const & name) : m_strName(name) {}
  GPExcelWorkBook(GPExcelWorkBook const &) = delete;
  GPExcelWorkBook & operator=(GPExcelWorkBook const &) = delete;

  int SetFocus();  // 0 where the server raises COleException

  // A new sheet or chart gets the object's name; where the server refuses it with COleException it keeps its automatic one, and
  // the result is success all the same. Without a link in the end a message is shown.
  int FindWorkSheet(GPExcelWorkSheet & sheet);
  int CreateWorkSheet(GPExcelWorkSheet & sheet);
  int FindChart(GPExcelChart & chart);
  int CreateChart(GPExcelChart & chart);

  // Calls the callback for each worksheet and gives their count; 0 without a callback. The callback owns the reference.
  int EnumWorkSheets(void (*callback)(GPExcelWorkBook &, IDispatch *));

  // Appends a worksheet, with its name and cells, to m_WorkSheets. It has no link then.
  static void ProcessWorkSheet(GPExcelWorkBook & book, IDispatch * sheet);

  // Links to the server, finds or loads the workbook, and enumerates its worksheets; 1 if there was one.
  int BuildWorkBook(void (*callback)(GPExcelWorkBook &, IDispatch *));

  CString m_strName;
  int m_nReserved = 0;
  GPObArray m_WorkSheets;  // GPExcelWorkSheet
  GPObArray m_SecondList;
  int m_nMode = -4135;
  CStringArray m_Strings;

 private:
  int InitWorkSheets(GPWorkSheets & sheets);
  int InitCharts(GPCharts & charts);
};

// The link to the spreadsheet program that the setting "ExcelRegID" of section "ExcelSettings" names, "Excel.Application" by
// default.
class ZP_API GPExcel : public GPApplication {
 public:
  static GPExcel * GetExcel();  // the shared instance, made at the first call; it lives as long as the process

  // Makes a new link, to a running server if there is one, else to a new one, with a message if that fails.
  int InitOLELink();

  // A link that no longer answers is renewed once. Closing saves nothing and leaves the object's link alone. Creating, loading
  // and closing show a message if they fail.
  int FindWorkBook(GPExcelWorkBook & book);
  int CreateWorkBook(GPExcelWorkBook & book);
  int LoadWorkBook(GPExcelWorkBook & book);
  int CloseWorkBook(GPExcelWorkBook & book);

  static GPExcel * excel;

 private:
  int InitWorkBooks(GPWorkBooks & books);
};

// The shared instance's link: makes it anew, and gives it up (1 when none is left).
ZP_API int AttachExcel();
ZP_API int DetachExcel();
