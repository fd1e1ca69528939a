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
#include "servers/embedded/styles_part.h"
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
  explicit Reader(Package & package) : m_Package(package), m_strBook(findBookPart(package)), m_Relations(package, m_strBook)
  {
    m_Read.insert(m_strBook);
  }

  Workbook Read()
  {
    BookPart const part = ReadBookPart(m_Package.Open(m_strBook, mostBookPartBytes), m_Book.unkept);
    m_Book.from1904 = part.from1904;
    ReadTexts();
    ReadLook();
    for (SheetEntry const & entry : part.sheets) ReadSheet(entry);
    if (m_Book.sheets.empty()) throw BookFailure("The file has no worksheet");
    LookAtRest();
    return std::move(m_Book);
  }

 private:
  // A part that nobody has can't be asked for by a cell either, or the cell is refused.
  void ReadTexts()
  {
    if (std::string const texts = Take(m_Relations, "sharedStrings"); !texts.empty())
      m_Texts = ReadSharedStrings(m_Package.Open(texts, mostUnpackedBytes), m_Book.unkept);
  }

  void ReadLook()
  {
    Take(m_Relations, "calcChain");  // the order in which formulas were computed
    if (std::string const styles = Take(m_Relations, "styles"); !styles.empty())
      ReadStylesPart(m_Package.Open(styles, mostUnpackedBytes), m_Book.font, m_Book.unkept);
    if (std::string const theme = Take(m_Relations, "theme"); !theme.empty())
      ReadThemePart(m_Package.Open(theme, mostUnpackedBytes), m_Book.unkept);
    Relations const outer(m_Package, "");
    for (char const * kind : {"core-properties", "extended-properties", "extendedProperties"}) {
      if (std::string const part = Take(outer, kind); !part.empty())
        ReadProperties(m_Package.Open(part, mostBookPartBytes), m_Book.properties, m_Book.unkept);
    }
  }

  // The part that the first relation of a kind leads to, which is read from here on; empty where there is none, or none that is
  // left to be read.
  std::string Take(Relations const & relations, char const * kind)
  {
    Relation const * const relation = relations.FindByKind(kind);
    bool const isThere = relation != nullptr && m_Package.Has(relation->target) && m_Read.insert(relation->target).second;
    return isThere ? relation->target : std::string();
  }

  Relation const & Follow(SheetEntry const & entry)
  {
    Relation const * const relation = m_Relations.FindById(entry.relation);
    if (relation == nullptr || !m_Package.Has(relation->target)) {
      throw BookFailure("The sheet \"" + entry.name + "\" is missing in the file");
    }
    if (!m_Read.insert(relation->target).second) {
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
    sheet->visibility = entry.visibility;
    if (isChart)
      LookIntoChart(m_Package, relation.target, m_Read, m_Book.unkept);
    else
      ReadSheetPart(m_Package.Open(relation.target, mostUnpackedBytes), m_Texts, m_Book.from1904, *sheet, m_Book.unkept);
    m_Book.sheets.push_back(std::move(sheet));
  }

  // The parts that nobody has read.
  void LookAtRest()
  {
    for (auto const & [name, index] : m_Package.GetParts()) {
      if (m_Read.count(name) != 0 || IsMadeAnew(name)) continue;
      bool const isEmpty = name == "docprops/custom.xml" &&
                           !HasElement(m_Package.Open(name, mostBookPartBytes), propertiesNamespace, {"property"});
      if (!isEmpty) m_Book.unkept.AddPart(name);
    }
  }

  bool IsMadeAnew(std::string const & part) const
  {
    if (part == "[content_types].xml" || part == "_rels/.rels") return true;
    size_t const folder = part.rfind("_rels/");
    constexpr std::string_view step = "_rels/";
    constexpr std::string_view end = ".rels";
    if (folder == std::string::npos || !part.ends_with(end)) return false;
    std::string teller = part.substr(0, part.size() - end.size()).erase(folder, step.size());
    return m_Package.Has(teller);
  }

  Package & m_Package;
  std::string m_strBook;
  Relations m_Relations;
  Workbook m_Book;
  std::vector<SharedText> m_Texts;
  std::set<std::string> m_Read;  // the parts
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
