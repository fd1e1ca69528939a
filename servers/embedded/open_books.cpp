// Opening workbooks, and finding those that are open.

#include "servers/embedded/open_books.h"

#include <algorithm>

#include "servers/embedded/workbook_reader.h"

namespace embedded {
namespace {

std::weak_ptr<Workbooks> g_workbooks;

Workbook emptyWorkbook()
{
  Workbook book;
  book.sheets.push_back(std::make_unique<Sheet>());
  book.sheets.front()->name = "Sheet1";
  return book;
}

}  // namespace

std::shared_ptr<Workbooks> Workbooks::Get()
{
  std::shared_ptr<Workbooks> workbooks = g_workbooks.lock();
  if (workbooks == nullptr) {
    workbooks = std::make_shared<Workbooks>();
    g_workbooks = workbooks;
  }
  return workbooks;
}

std::shared_ptr<servers::Book> Workbooks::GetBook(size_t index)
{
  return m_Books[index];
}

std::shared_ptr<servers::Book> Workbooks::AddBook()
{
  std::string const name = "Book" + std::to_string(++m_nMade);
  m_Books.push_back(std::make_shared<embedded::OpenBook>(*this, emptyWorkbook(), name));
  return m_Books.back();
}

std::shared_ptr<servers::Book> Workbooks::OpenBook(std::u16string_view path)
{
  std::string const file = servers::HostPathOf(path);
  if (auto const open = Find(file); open != nullptr) return open;
  servers::RequireFile(file);
  servers::FileStamp const stamp = servers::StampOf(file);
  Workbook content = OnFile(file, [&] { return ReadWorkbook(file); });
  m_Books.push_back(std::make_shared<embedded::OpenBook>(*this, std::move(content), file, stamp));
  return m_Books.back();
}

std::shared_ptr<embedded::OpenBook> Workbooks::Find(std::string const & file) const
{
  auto const found = std::find_if(m_Books.begin(), m_Books.end(), [&](auto const & book) { return book->IsOf(file); });
  return found != m_Books.end() ? *found : nullptr;
}

void Workbooks::Remove(embedded::OpenBook const & book)
{
  std::erase_if(m_Books, [&](auto const & open) { return open.get() == &book; });
}

}  // namespace embedded
