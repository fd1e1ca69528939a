// One open workbook: its sheets, and the way back to its file.

#include <algorithm>
#include <filesystem>

#include <zpbase/platform/ascii.h>
#include <zpbase/spreadsheet.h>

#include "servers/common/wide_text.h"
#include "servers/embedded/cell_text.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/open_books.h"
#include "servers/embedded/sheet_values.h"
#include "servers/embedded/workbook_writer.h"

namespace embedded {
namespace {

constexpr std::string_view extension = ".xlsx";

// What a worksheet and a chart have in common: a sheet of a workbook that may be closed meanwhile.
class SheetOfBook {
 public:
  SheetOfBook(std::shared_ptr<OpenBook> book, Sheet & sheet) : m_pBook(std::move(book)), m_Sheet(sheet) {}

  Workbook & GetBook() const { return m_pBook->GetContent(); }
  Sheet & Get() const
  {
    GetBook();
    return m_Sheet;
  }
  std::u16string GetName() const { return servers::ToWide(Get().name); }
  void SetName(std::u16string_view name) const { m_pBook->Rename(Get(), servers::FromWide(name)); }

 private:
  std::shared_ptr<OpenBook> m_pBook;
  Sheet & m_Sheet;
};

class OpenWorksheet : public servers::Worksheet {
 public:
  explicit OpenWorksheet(SheetOfBook sheet) : m_Sheet(std::move(sheet)) {}

  std::u16string GetName() override { return m_Sheet.GetName(); }
  void SetName(std::u16string_view name) override { m_Sheet.SetName(name); }
  void Select() override { m_Sheet.Get(); }

  std::optional<servers::Block> FindNamed(std::u16string_view) override
  {
    m_Sheet.Get();
    return std::nullopt;
  }
  servers::Block GetUsed() override { return m_Sheet.Get().cells.GetUsed().value_or(servers::Block{0, 0, 0, 0}); }

  VARIANT ReadCell(servers::Place const & place) override { return embedded::ReadCell(m_Sheet.Get().cells, place); }
  void ReadBlock(servers::Block const & block, servers::MadeBlock & values) override
  {
    embedded::ReadBlock(m_Sheet.Get().cells, block, values);
  }
  void Write(servers::Block const & block, servers::GivenValues const & values) override
  {
    WriteBlock(m_Sheet.GetBook(), m_Sheet.Get().cells, block, values);
  }

 private:
  SheetOfBook m_Sheet;
};

class OpenChart : public servers::Chart {
 public:
  explicit OpenChart(SheetOfBook sheet) : m_Sheet(std::move(sheet)) {}

  std::u16string GetName() override { return m_Sheet.GetName(); }
  void SetName(std::u16string_view name) override { m_Sheet.SetName(name); }
  void Select() override { m_Sheet.Get(); }

 private:
  SheetOfBook m_Sheet;
};

std::string listed(UnkeptList const & unkept)
{
  std::string list;
  for (std::string const & phrase : unkept.GetPhrases()) list += (list.empty() ? "" : ", ") + phrase;
  return list;
}

bool isTaken(Workbook const & book, std::string const & name, Sheet const * butFor)
{
  std::string const folded = FoldCase(name);
  return std::any_of(book.sheets.begin(), book.sheets.end(),
                     [&](auto const & sheet) { return sheet.get() != butFor && FoldCase(sheet->name) == folded; });
}

bool isSheetName(std::string const & name)
{
  if (name.empty() || CountUnits(name) > mostNameUnits || name.front() == '\'' || name.back() == '\'') return false;
  std::u16string const wide = servers::ToWide(name);
  return std::none_of(wide.begin(), wide.end(), [](char16_t c) {
    return c < 0x20 || c == 0xFFFE || c == 0xFFFF || std::u16string_view(u":\\/?*[]").find(c) != std::u16string_view::npos;
  });
}

}  // namespace

OpenBook::OpenBook(Workbooks & owner, Workbook content, std::string name)
    : m_Owner(owner), m_pContent(std::make_unique<Workbook>(std::move(content))), m_strFile(std::move(name))
{
}

OpenBook::OpenBook(Workbooks & owner, Workbook content, std::string file, servers::FileStamp const & stamp)
    : OpenBook(owner, std::move(content), std::move(file))
{
  m_Stamp = stamp;
}

Workbook & OpenBook::GetContent()
{
  if (m_pContent == nullptr) servers::Fail(CO_E_OBJNOTCONNECTED);
  return *m_pContent;
}

std::u16string OpenBook::GetFullName()
{
  GetContent();
  return m_Stamp ? servers::InsidePathOf(m_strFile) : servers::ToWide(m_strFile);
}

bool OpenBook::IsOf(std::string const & file) const
{
  if (!m_Stamp) return false;
  std::error_code error;
  return m_strFile == file || std::filesystem::equivalent(m_strFile, file, error);
}

void OpenBook::Close()
{
  GetContent();
  m_pContent.reset();
  m_Owner.Remove(*this);
}

size_t OpenBook::Count(SheetKind kind)
{
  auto const & sheets = GetContent().sheets;
  return static_cast<size_t>(
      std::count_if(sheets.begin(), sheets.end(), [=](auto const & sheet) { return sheet->kind == kind; }));
}

Sheet & OpenBook::GetSheet(SheetKind kind, size_t index)
{
  for (auto const & sheet : GetContent().sheets)
    if (sheet->kind == kind && index-- == 0) return *sheet;
  servers::Fail(DISP_E_BADINDEX);
}

// With the first free name of those that begin with stem. Worksheets come in front of all others, charts behind them.
Sheet & OpenBook::AddSheet(SheetKind kind, char const * stem)
{
  Workbook & book = GetContent();
  if (book.sheets.size() >= mostSheets)
    servers::Refuse("A workbook holds no more than " + std::to_string(mostSheets) + " sheets");
  auto sheet = std::make_unique<Sheet>();
  sheet->kind = kind;
  unsigned int number = 0;
  do sheet->name = stem + std::to_string(++number);
  while (isTaken(book, sheet->name, nullptr));
  auto const place = kind == SheetKind::Worksheet ? book.sheets.begin() : book.sheets.end();
  return **book.sheets.insert(place, std::move(sheet));
}

std::shared_ptr<servers::Worksheet> OpenBook::GetWorksheet(size_t index)
{
  return std::make_shared<OpenWorksheet>(SheetOfBook(shared_from_this(), GetSheet(SheetKind::Worksheet, index)));
}

std::shared_ptr<servers::Worksheet> OpenBook::AddWorksheet()
{
  return std::make_shared<OpenWorksheet>(SheetOfBook(shared_from_this(), AddSheet(SheetKind::Worksheet, "Sheet")));
}

std::shared_ptr<servers::Chart> OpenBook::GetChart(size_t index)
{
  return std::make_shared<OpenChart>(SheetOfBook(shared_from_this(), GetSheet(SheetKind::Chart, index)));
}

std::shared_ptr<servers::Chart> OpenBook::AddChart()
{
  return std::make_shared<OpenChart>(SheetOfBook(shared_from_this(), AddSheet(SheetKind::Chart, "Chart")));
}

void OpenBook::Rename(Sheet & sheet, std::string name)
{
  if (!isSheetName(name) || isTaken(GetContent(), name, &sheet)) servers::Fail(E_INVALIDARG);
  sheet.name = std::move(name);
}

// The file that is there holds more than the workbook: it isn't written over unless that is asked for.
void OpenBook::RequireKept() const
{
  if (m_pContent->unkept.IsEmpty() || !m_Owner.GetAlerts()) return;
  servers::Refuse(m_strFile + " would lose " + listed(m_pContent->unkept), zp::contentsWouldBeLost);
}

void OpenBook::Write(std::string const & file, servers::FileStamp const & former)
{
  if (!m_pContent->unkept.IsEmpty()) servers::Warn(file + " is written without " + listed(m_pContent->unkept));
  m_Stamp = OnFile(file, [&] { return WriteWorkbook(*m_pContent, file, former); });
  m_pContent->unkept = UnkeptList();
}

void OpenBook::Save()
{
  GetContent();
  if (!m_Stamp) servers::Refuse("The workbook has no file yet: save it under a name");
  RequireKept();
  Write(m_strFile, *m_Stamp);
}

void OpenBook::SaveAs(std::u16string_view path)
{
  GetContent();
  std::string const file = servers::HostPathOf(path);
  if (m_Stamp && servers::LeadToSameFile(m_strFile, file)) return Save();
  if (file.size() <= extension.size() ||
      !zp::EqualsNoCase(std::string_view(file).substr(file.size() - extension.size()), extension))
    servers::Refuse(file + " can't be saved in another format than .xlsx");
  servers::RequireFolder(file);
  servers::RequireNewFile(file);
  if (m_Owner.Find(file) != nullptr) servers::Refuse(file + " is the file of another open workbook");
  Write(file, {});
  m_strFile = file;
}

}  // namespace embedded
