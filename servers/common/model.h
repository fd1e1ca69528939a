// What a server of spreadsheets is able to do. The objects that a program sees are made over it by MakeApplication; they turn
// late-bound calls into calls of these, and what these raise into the published codes and records.
//
// Texts are 16-bit characters, names of files the inside form. Indices count from 0. Failure refuses a call: E_INVALIDARG for a
// name that a sheet or chart can't have, a sentence where one is due, CO_E_OBJNOTCONNECTED for what was closed.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <zpbase/platform/variants.h>

#include "servers/common/cell_names.h"
#include "servers/common/value_blocks.h"

namespace servers {

class Part {
 public:
  virtual ~Part() = default;

  // Whether it is no more; asked after a call that failed.
  virtual bool HasGone() { return false; }
};

class Worksheet : public Part {
 public:
  virtual std::u16string GetName() = 0;
  virtual void SetName(std::u16string_view name) = 0;
  virtual void Select() = 0;

  // The block of a name that isn't a cell's or two cells'; nothing where there is none.
  virtual std::optional<Block> FindNamed(std::u16string_view name) = 0;
  virtual Block GetUsed() = 0;  // the first cell in an empty worksheet

  virtual VARIANT ReadCell(Place const & place) = 0;  // the caller owns it
  virtual void ReadBlock(Block const & block, MadeBlock & values) = 0;
  virtual void Write(Block const & block, GivenValues const & values) = 0;
};

class Chart : public Part {
 public:
  virtual std::u16string GetName() = 0;
  virtual void SetName(std::u16string_view name) = 0;
  virtual void Select() = 0;
};

class Book : public Part {
 public:
  virtual std::u16string GetFullName() = 0;  // the name alone of a workbook that has no file
  virtual void Activate() = 0;
  virtual void Close() = 0;  // what wasn't saved is lost
  virtual void Save() = 0;
  virtual void SaveAs(std::u16string_view path) = 0;

  virtual size_t CountWorksheets() = 0;
  virtual std::shared_ptr<Worksheet> GetWorksheet(size_t index) = 0;
  virtual std::shared_ptr<Worksheet> AddWorksheet() = 0;

  virtual size_t CountCharts() = 0;
  virtual std::shared_ptr<Chart> GetChart(size_t index) = 0;
  virtual std::shared_ptr<Chart> AddChart() = 0;
};

class Spreadsheet {
 public:
  explicit Spreadsheet(char const * progId) : m_pProgId(progId) {}
  virtual ~Spreadsheet() = default;
  Spreadsheet(Spreadsheet const &) = delete;
  Spreadsheet & operator=(Spreadsheet const &) = delete;

  virtual size_t CountBooks() = 0;
  virtual std::shared_ptr<Book> GetBook(size_t index) = 0;  // the oldest first
  virtual std::shared_ptr<Book> AddBook() = 0;
  virtual std::shared_ptr<Book> OpenBook(std::u16string_view path) = 0;  // the open one, if it is open

  // Called before each member of each object is carried out; the flag tells those that only look at cells.
  virtual void Enter(bool) {}

  // What to tell of an exception that is being handled and is none of those that every server has; hasGone asks whether what was
  // called is no more.
  virtual HRESULT TellCurrent(EXCEPINFO *, std::function<bool()> const &) { return E_FAIL; }

  // Whether nothing of the server is to be touched any more, not even to give it back, at the end of the process.
  virtual bool IsOutOfReach() const { return false; }

  // Whether what is dangerous is refused.
  bool GetAlerts() const { return m_bAlerts; }
  void SetAlerts(bool shown) { m_bAlerts = shown; }

  char const * GetProgId() const { return m_pProgId; }

 private:
  char const * m_pProgId;
  bool m_bAlerts = true;
};

// The object "Application" of a spreadsheet, with the reference that its caller owns. Every object that comes of it keeps the
// spreadsheet alive.
IDispatch * MakeApplication(std::shared_ptr<Spreadsheet> spreadsheet);

// Fills the record of a failure with a code and a sentence (UTF-8); gives DISP_E_EXCEPTION.
HRESULT TellSentence(Spreadsheet const & spreadsheet, EXCEPINFO * record, HRESULT code, std::string_view sentence);

}  // namespace servers
