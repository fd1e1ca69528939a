// The parts that hold a workbook together, and its file.

#include "servers/embedded/workbook_writer.h"

#include <algorithm>
#include <cerrno>

#include <fmt/format.h>

#include <zpbase/platform/durable_file.h>

#include "servers/common/failure.h"
#include "servers/embedded/cell_text.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/number_text.h"
#include "servers/embedded/sheet_writer.h"

namespace embedded {
namespace {

constexpr std::string_view stylesHead =
    R"(<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><fonts count="1"><font><sz val=")";
constexpr std::string_view stylesEnd =
    R"("/></font></fonts>)"
    R"(<fills count="2"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/></fill></fills>)"
    R"(<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>)"
    R"(<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>)"
    R"(<cellXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/></cellXfs>)"
    R"(<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>)";

std::string makeStyles(DefaultFont const & font)
{
  std::string xml = std::string(xmlHead).append(stylesHead);
  AppendNumber(xml, font.size);
  xml += "\"/><name val=\"";
  AppendAttribute(xml, font.name);
  return xml.append(stylesEnd);
}

constexpr std::string_view officeRelations = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
constexpr std::string_view packageRelations = "http://schemas.openxmlformats.org/package/2006/relationships/";
constexpr std::string_view officeTypes = "application/vnd.openxmlformats-officedocument.";
constexpr std::string_view packageTypes = "application/vnd.openxmlformats-package.";

std::string makeRelation(size_t id, std::string_view space, std::string_view kind, std::string_view target)
{
  return fmt::format("<Relationship Id=\"rId{}\" Type=\"{}{}\" Target=\"{}\"/>", id, space, kind, target);
}

std::string makeRelations(std::string_view relations)
{
  return fmt::format("{}<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">{}</Relationships>",
                     xmlHead, relations);
}

char const * stateOf(Visibility visibility)
{
  switch (visibility) {
    case Visibility::Hidden:
      return " state=\"hidden\"";
    case Visibility::VeryHidden:
      return " state=\"veryHidden\"";
    case Visibility::Visible:
      break;
  }
  return "";
}

// Writes the lists that tell of the sheets while they are added one by one.
class BookWriter {
 public:
  explicit BookWriter(Workbook const & book) : m_Book(book) {}

  std::string Pack()
  {
    if (m_Book.sheets.empty() || m_Book.sheets.size() > mostSheets) {
      throw BookFailure(fmt::format("A workbook of {} sheets can't be written", m_Book.sheets.size()));
    }
    for (auto const & sheet : m_Book.sheets) Add(*sheet);
    AddRelation(m_Book.sheets.size() + 1, "styles", "styles.xml");
    AddType("/xl/workbook.xml", "spreadsheetml.sheet.main");
    AddType("/xl/styles.xml", "spreadsheetml.styles");
    AddBook();
    AddProperties();
    AddTypes();
    return m_Package.Finish();
  }

 private:
  void Add(Sheet const & sheet)
  {
    bool const isChart = sheet.kind == SheetKind::Chart;
    size_t const number = isChart ? ++m_nCharts : ++m_nWorksheets;
    std::string const target = fmt::format("{}/sheet{}.xml", isChart ? "chartsheets" : "worksheets", number);
    if (isChart) {
      AddChartParts(m_Package, number);
      AddType(fmt::format("/xl/drawings/drawing{}.xml", number), "drawing");
      AddType(fmt::format("/xl/charts/chart{}.xml", number), "drawingml.chart");
    } else {
      m_Package.Add("xl/" + target, MakeSheetPart(sheet));
    }
    AddType("/xl/" + target, isChart ? "spreadsheetml.chartsheet" : "spreadsheetml.worksheet");
    size_t const id = m_nCharts + m_nWorksheets;
    AddRelation(id, isChart ? "chartsheet" : "worksheet", target);
    m_strSheets += "<sheet name=\"";
    AppendName(m_strSheets, sheet.name);
    m_strSheets += fmt::format("\" sheetId=\"{0}\"{1} r:id=\"rId{0}\"/>", id, stateOf(sheet.visibility));
  }

  void AddType(std::string_view part, std::string_view type, std::string_view space = officeTypes)
  {
    m_strTypes += fmt::format("<Override PartName=\"{}\" ContentType=\"{}{}+xml\"/>", part, space, type);
  }

  void AddRelation(size_t id, std::string_view kind, std::string_view target)
  {
    m_strRelations += makeRelation(id, officeRelations, kind, target);
  }

  // The first sheet that people see is the one that a program shows.
  size_t FindActive() const
  {
    auto const found = std::find_if(m_Book.sheets.begin(), m_Book.sheets.end(),
                                    [](auto const & sheet) { return sheet->visibility == Visibility::Visible; });
    return found == m_Book.sheets.end() ? 0 : static_cast<size_t>(found - m_Book.sheets.begin());
  }

  void AddBook()
  {
    m_Package.Add(
        "xl/workbook.xml",
        fmt::format("{}<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
                    "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
                    "<workbookPr{}/><bookViews><workbookView activeTab=\"{}\"/></bookViews><sheets>{}</sheets></workbook>",
                    xmlHead, m_Book.from1904 ? " date1904=\"1\"" : "", FindActive(), m_strSheets));
    m_Package.Add("xl/_rels/workbook.xml.rels", makeRelations(m_strRelations));
    m_Package.Add("xl/styles.xml", makeStyles(m_Book.font));
  }

  // What leads to the workbook leads to what is told of it too.
  void AddProperties()
  {
    std::string relations = makeRelation(1, officeRelations, "officeDocument", "xl/workbook.xml");
    if (std::string const core = MakePropertyPart(PropertyPart::Core, m_Book.properties); !core.empty()) {
      m_Package.Add("docProps/core.xml", std::string(xmlHead).append(core));
      AddType("/docProps/core.xml", "core-properties", packageTypes);
      relations += makeRelation(2, packageRelations, "metadata/core-properties", "docProps/core.xml");
    }
    if (std::string const extended = MakePropertyPart(PropertyPart::Extended, m_Book.properties); !extended.empty()) {
      m_Package.Add("docProps/app.xml", std::string(xmlHead).append(extended));
      AddType("/docProps/app.xml", "extended-properties");
      relations += makeRelation(3, officeRelations, "extended-properties", "docProps/app.xml");
    }
    m_Package.Add("_rels/.rels", makeRelations(relations));
  }

  void AddTypes()
  {
    m_Package.Add("[Content_Types].xml",
                  fmt::format("{}<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
                              "Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
                              "<Default Extension=\"xml\" ContentType=\"application/xml\"/>{}</Types>",
                              xmlHead, m_strTypes));
  }

  Workbook const & m_Book;
  PackageWriter m_Package;
  size_t m_nWorksheets = 0;
  size_t m_nCharts = 0;
  std::string m_strSheets;
  std::string m_strRelations;
  std::string m_strTypes;
};

}  // namespace

std::string PackWorkbook(Workbook const & book)
{
  return BookWriter(book).Pack();
}

servers::FileStamp WriteWorkbook(Workbook const & book, std::string const & path, servers::FileStamp const & former)
{
  if (former.IsOfFile()) servers::RequireWritable(path);
  std::string const bytes = PackWorkbook(book);
  servers::FileStamp written;
  auto const isFormer = [&](std::string const & beside) {
    written = servers::StampOf(beside);
    return servers::StampOf(path) == former;
  };
  int error = 0;
  if (ReplaceFileDurablyIf(path.c_str(), bytes, isFormer, &error)) return written;
  if (error == ECANCELED)
    throw BookFailure(former.IsOfFile() ? "The file was changed by another program since it was opened; open it again"
                                        : "The file was made by another program meanwhile");
  bool const isLocked = error == EWOULDBLOCK;
  throw BookFailure("The file can't be written: " +
                    (isLocked ? "Another program keeps its folder locked" : servers::TextOfError(error)));
}

}  // namespace embedded
