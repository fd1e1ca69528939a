// Reading the list of sheets.

#include "servers/embedded/book_part.h"

#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr XmlNamespace relationNamespace = {"http://schemas.openxmlformats.org/officeDocument/2006/relationships|",
                                            "http://purl.oclc.org/ooxml/officeDocument/relationships|"};

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
        if (!attributes.IsEmpty() || name != "workbookProtection") m_Unkept.AddBookElement(name);
        if (name == "workbookPr") m_Book.from1904 = attributes.IsOn("date1904");
        if (name != "sheets" && name != "definedNames") return false;
        break;
      default:
        if (name == "sheet") AddSheet(attributes);
        if (name == "definedName") m_Unkept.Add(Unkept::Names);
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
  void AddSheet(XmlAttributes attributes)
  {
    if (m_Book.sheets.size() == mostSheets) throw BookFailure("The file has more than " + std::to_string(mostSheets) + " sheets");
    char const * const name = attributes.Find("name");
    char const * const relation = attributes.FindIn(relationNamespace, "id");
    bool const isHidden = attributes.Has("state", "hidden") || attributes.Has("state", "veryHidden");
    m_Book.sheets.push_back({name == nullptr ? "" : name, relation == nullptr ? "" : relation, isHidden});
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
