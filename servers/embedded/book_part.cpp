// Reading the list of sheets.

#include "servers/embedded/book_part.h"

#include <algorithm>
#include <array>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/usual.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr XmlNamespace relationNamespace = {"http://schemas.openxmlformats.org/officeDocument/2006/relationships|",
                                            "http://purl.oclc.org/ooxml/officeDocument/relationships|"};

// How addresses are written, which chart version and which functions the writer knows: what it adds to every workbook.
constexpr std::array<std::string_view, 3> usualExtensions = {
    "{7626C862-2A13-11E5-B345-FEFF819CDC9F}", "{140A7094-0E35-4892-8432-C4D2E57EDEB5}", "{B58B0392-4F1F-4190-BB64-5DF3571DCE5F}"};

bool isUsualExtension(char const * uri)
{
  return uri != nullptr && std::ranges::find(usualExtensions, uri) != usualExtensions.end();
}

class BookHandler {
 public:
  static constexpr XmlNamespace const & space = sheetNamespace;

  explicit BookHandler(UnkeptList & unkept) : m_Unkept(unkept) {}

  bool Start(std::string_view name, XmlAttributes attributes)
  {
    switch (m_nDepth) {
      case 0:
        if (name != "workbook") return false;
        m_bBook = true;
        break;
      case 1:
        if (name == "bookViews" || name == "sheets" || name == "definedNames" || name == "extLst") break;
        StartChild(name, attributes);
        return false;
      default:
        if (name == "sheet") AddSheet(attributes);
        if (name == "workbookView" && !IsUsual(name, attributes)) m_Unkept.Add(Unkept::Views);
        if (name == "definedName") m_Unkept.Add(Unkept::Names);
        if (name == "ext" && !isUsualExtension(attributes.Find("uri"))) m_Unkept.Add(Unkept::Other);
        return false;
    }
    ++m_nDepth;
    return true;
  }
  void End() { --m_nDepth; }
  void Characters(std::string_view) {}

  bool HasBook() const { return m_bBook; }
  BookPart & GetBook() { return m_Book; }

 private:
  void StartChild(std::string_view name, XmlAttributes attributes)
  {
    if (name == "workbookPr") m_Book.from1904 = attributes.IsOn("date1904");
    if (name == "workbookPr" && !IsUsual(name, attributes)) m_Unkept.Add(Unkept::Other);
    if (name == "calcPr" && !IsUsual(name, attributes)) m_Unkept.Add(Unkept::Calculation);
    bool const saysNothing = name == "workbookProtection" && attributes.IsEmpty();
    if (name != "workbookPr" && name != "calcPr" && !saysNothing) m_Unkept.AddBookElement(name);
  }

  void AddSheet(XmlAttributes attributes)
  {
    if (m_Book.sheets.size() == mostSheets) throw BookFailure("The file has more than " + std::to_string(mostSheets) + " sheets");
    char const * const name = attributes.Find("name");
    char const * const relation = attributes.FindIn(relationNamespace, "id");
    Visibility const visibility = attributes.Has("state", "hidden")       ? Visibility::Hidden
                                  : attributes.Has("state", "veryHidden") ? Visibility::VeryHidden
                                                                          : Visibility::Visible;
    m_Book.sheets.push_back({Unescape(name == nullptr ? "" : name), relation == nullptr ? "" : relation, visibility});
  }

  UnkeptList & m_Unkept;
  BookPart m_Book;
  unsigned int m_nDepth = 0;
  bool m_bBook = false;
};

}  // namespace

BookPart ReadBookPart(PartStream part, UnkeptList & unkept)
{
  BookHandler handler(unkept);
  ReadXml(std::move(part), handler);
  if (!handler.HasBook()) throw BookFailure("The file is no .xlsx file: its workbook holds something else");
  return std::move(handler.GetBook());
}

}  // namespace embedded
