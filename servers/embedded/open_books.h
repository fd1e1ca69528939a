// The open workbooks of the process: what Zephlow.Workbooks is behind its objects.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "servers/common/book_files.h"
#include "servers/common/failure.h"
#include "servers/common/model.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/workbook.h"

namespace embedded {

class OpenBook;

class Workbooks : public servers::Spreadsheet {
 public:
  // The process's own, as long as anybody holds an object of it, else a new one without workbooks.
  static std::shared_ptr<Workbooks> Get();

  Workbooks() : Spreadsheet("Zephlow.Workbooks") {}

  size_t CountBooks() override { return m_Books.size(); }
  std::shared_ptr<servers::Book> GetBook(size_t index) override;
  std::shared_ptr<servers::Book> AddBook() override;
  std::shared_ptr<servers::Book> OpenBook(std::u16string_view path) override;

  // The open workbook of a file, or null.
  std::shared_ptr<embedded::OpenBook> Find(std::string const & file) const;
  void Remove(embedded::OpenBook const & book);

 private:
  std::vector<std::shared_ptr<embedded::OpenBook>> m_Books;
  unsigned int m_nMade = 0;
};

class OpenBook : public servers::Book, public std::enable_shared_from_this<OpenBook> {
 public:
  // A new workbook, and that of a file, which is the host's full path; stamp is from before it was read.
  OpenBook(Workbooks & owner, Workbook content, std::string name);
  OpenBook(Workbooks & owner, Workbook content, std::string file, servers::FileStamp const & stamp);

  std::u16string GetFullName() override;
  void Activate() override { GetContent(); }
  void Close() override;
  void Save() override;
  void SaveAs(std::u16string_view path) override;

  size_t CountWorksheets() override { return Count(SheetKind::Worksheet); }
  std::shared_ptr<servers::Worksheet> GetWorksheet(size_t index) override;
  std::shared_ptr<servers::Worksheet> AddWorksheet() override;
  size_t CountCharts() override { return Count(SheetKind::Chart); }
  std::shared_ptr<servers::Chart> GetChart(size_t index) override;
  std::shared_ptr<servers::Chart> AddChart() override;

  // CO_E_OBJNOTCONNECTED as Failure once the workbook is closed.
  Workbook & GetContent();

  // E_INVALIDARG as Failure for what is no name of a sheet, or another sheet's.
  void Rename(Sheet & sheet, std::string name);

  bool IsOf(std::string const & file) const;

 private:
  size_t Count(SheetKind kind);
  Sheet & GetSheet(SheetKind kind, size_t index);
  Sheet & AddSheet(SheetKind kind, char const * stem);
  void RequireKept() const;
  void Write(std::string const & file, servers::FileStamp const & former);

  Workbooks & m_Owner;
  std::unique_ptr<Workbook> m_pContent;       // null once it is closed
  std::string m_strFile;                      // the name alone of a workbook that has none
  std::optional<servers::FileStamp> m_Stamp;  // of its file as it was read or written here
};

// Does the work on a file; why it fails is refused with the file's name in front.
template <class Work>
auto OnFile(std::string const & file, Work const & work)
{
  try {
    return work();
  } catch (BookFailure const & failure) {
    servers::Refuse(file + ": " + failure.what());
  }
}

}  // namespace embedded
