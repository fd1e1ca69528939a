// From a package to a workbook: the list of sheets, what each leads to, and what of the package is left.

#include "servers/embedded/workbook_reader.h"

#include <algorithm>
#include <set>

#include "servers/embedded/book_part.h"
#include "servers/embedded/cell_text.h"
#include "servers/embedded/chart_contents.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/package.h"
#include "servers/embedded/relations.h"
#include "servers/embedded/shared_strings.h"
#include "servers/embedded/sheet_part.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr XmlNamespace propertiesNamespace = {"http://schemas.openxmlformats.org/officeDocument/2006/custom-properties|",
                                              "http://purl.oclc.org/ooxml/officeDocument/customProperties|"};

std::string findBookPart(Package & package)
{
  Relations const relations(package, "");
  Relation const * const book = relations.FindByKind("officeDocument");
  std::string part = book != nullptr ? book->target : "xl/workbook.xml";
  if (part.ends_with(".bin")) throw BookFailure("The file is a workbook in binary parts (.xlsb), not in XML");
  if (!package.Has(part)) throw BookFailure("The file is no .xlsx file: there is no workbook in the archive");
  return part;
}

class Reader {
 public:
  explicit Reader(Package & package) : m_Package(package), m_strBook(findBookPart(package)), m_Relations(package, m_strBook) {}

  Workbook Read()
  {
    BookPart const part = ReadBookPart(m_Package.Open(m_strBook, mostBookPartBytes), m_Book.unkept);
    m_Book.from1904 = part.from1904;
    ReadTexts();
    for (SheetEntry const & entry : part.sheets) ReadSheet(entry);
    if (m_Book.sheets.empty()) throw BookFailure("The file has no worksheet");
    LookAtRest();
    return std::move(m_Book);
  }

 private:
  // A part that nobody has can't be asked for by a cell either, or the cell is refused.
  void ReadTexts()
  {
    Relation const * const texts = m_Relations.FindByKind("sharedStrings");
    if (texts == nullptr || !m_Package.Has(texts->target)) return;
    m_Texts = ReadSharedStrings(m_Package.Open(texts->target, mostUnpackedBytes), m_Book.unkept);
  }

  Relation const & Follow(SheetEntry const & entry)
  {
    Relation const * const relation = m_Relations.FindById(entry.relation);
    if (relation == nullptr || !m_Package.Has(relation->target)) {
      throw BookFailure("The sheet \"" + entry.name + "\" is missing in the file");
    }
    if (!m_SheetParts.insert(relation->target).second) {
      throw BookFailure("The sheet \"" + entry.name + "\" has the same part of the file as another one");
    }
    return *relation;
  }

  void CheckName(std::string const & name)
  {
    if (name.empty() || CountUnits(name) > mostNameUnits) {
      throw BookFailure("The file has a sheet with a name of " + std::to_string(CountUnits(name)) + " characters");
    }
    if (!m_Names.insert(FoldCase(name)).second) throw BookFailure("The file has two sheets named \"" + name + "\"");
  }

  void ReadSheet(SheetEntry const & entry)
  {
    CheckName(entry.name);
    Relation const & relation = Follow(entry);
    bool const isChart = relation.kind == "chartsheet";
    if (!isChart && relation.kind != "worksheet") return m_Book.unkept.Add(Unkept::OtherSheets);
    auto sheet = std::make_unique<Sheet>();
    sheet->kind = isChart ? SheetKind::Chart : SheetKind::Worksheet;
    sheet->name = entry.name;
    sheet->hidden = entry.hidden;
    if (isChart)
      LookIntoChart(m_Package, relation.target, m_ChartParts, m_Book.unkept);
    else
      ReadSheetPart(m_Package.Open(relation.target, mostUnpackedBytes), m_Texts, m_Book.from1904, *sheet, m_Book.unkept);
    m_Book.sheets.push_back(std::move(sheet));
  }

  // The parts that nobody has read.
  void LookAtRest()
  {
    for (auto const & [name, index] : m_Package.GetParts()) {
      if (m_ChartParts.count(name) != 0) continue;
      bool const isEmpty = name == "docprops/custom.xml" &&
                           !HasElement(m_Package.Open(name, mostBookPartBytes), propertiesNamespace, {"property"});
      if (!isEmpty) m_Book.unkept.AddPart(name);
    }
  }

  Package & m_Package;
  std::string m_strBook;
  Relations m_Relations;
  Workbook m_Book;
  std::vector<SharedText> m_Texts;
  std::set<std::string> m_SheetParts;
  std::set<std::string> m_ChartParts;
  std::set<std::string> m_Names;
};

}  // namespace

Workbook ReadWorkbook(std::string const & path)
{
  Package package(path);
  return Reader(package).Read();
}

Workbook ReadWorkbook(std::span<std::byte const> bytes)
{
  Package package(bytes);
  return Reader(package).Read();
}

}  // namespace embedded
