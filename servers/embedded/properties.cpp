// The table of properties, reading and writing.

#include "servers/embedded/properties.h"

#include <algorithm>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr std::string_view coreSpace = "http://schemas.openxmlformats.org/package/2006/metadata/core-properties|";
constexpr std::string_view elementSpace = "http://purl.org/dc/elements/1.1/|";
constexpr std::string_view termSpace = "http://purl.org/dc/terms/|";
constexpr std::string_view extendedSpace = "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties|";
constexpr std::string_view strictSpace = "http://purl.oclc.org/ooxml/officeDocument/extendedProperties|";

struct PropertyName {
  PropertyPart part;
  std::string_view space;
  std::string_view own;
  std::string_view tag;  // as it is written
};

constexpr std::array<PropertyName, propertyCount> names = {{
    {PropertyPart::Core, elementSpace, "title", "dc:title"},
    {PropertyPart::Core, elementSpace, "subject", "dc:subject"},
    {PropertyPart::Core, elementSpace, "creator", "dc:creator"},
    {PropertyPart::Core, coreSpace, "keywords", "cp:keywords"},
    {PropertyPart::Core, elementSpace, "description", "dc:description"},
    {PropertyPart::Core, elementSpace, "identifier", "dc:identifier"},
    {PropertyPart::Core, elementSpace, "language", "dc:language"},
    {PropertyPart::Core, coreSpace, "lastModifiedBy", "cp:lastModifiedBy"},
    {PropertyPart::Core, coreSpace, "revision", "cp:revision"},
    {PropertyPart::Core, coreSpace, "lastPrinted", "cp:lastPrinted"},
    {PropertyPart::Core, termSpace, "created", "dcterms:created"},
    {PropertyPart::Core, termSpace, "modified", "dcterms:modified"},
    {PropertyPart::Core, coreSpace, "category", "cp:category"},
    {PropertyPart::Core, coreSpace, "contentStatus", "cp:contentStatus"},
    {PropertyPart::Core, coreSpace, "contentType", "cp:contentType"},
    {PropertyPart::Core, coreSpace, "version", "cp:version"},
    {PropertyPart::Extended, extendedSpace, "Template", "Template"},
    {PropertyPart::Extended, extendedSpace, "TotalTime", "TotalTime"},
    {PropertyPart::Extended, extendedSpace, "Manager", "Manager"},
    {PropertyPart::Extended, extendedSpace, "Company", "Company"},
    {PropertyPart::Extended, extendedSpace, "HyperlinkBase", "HyperlinkBase"},
}};

// What the writer of a file tells of itself and of its pages.
constexpr std::array<std::string_view, 12> toldByWriters = {"Application",       "AppVersion", "HeadingPairs", "TitlesOfParts",
                                                            "DocSecurity",       "ScaleCrop",  "SharedDoc",    "LinksUpToDate",
                                                            "HyperlinksChanged", "Pages",      "Words",        "Characters"};

struct AnyNamespace {
  char const * FindOwnName(char const * name) const { return name; }
};

class PropertyHandler {
 public:
  static constexpr AnyNamespace space = {};

  PropertyHandler(Properties & properties, UnkeptList & unkept) : m_Properties(properties), m_Unkept(unkept) {}

  bool Start(std::string_view name, XmlAttributes)
  {
    if (m_nDepth == 0) return Enter();
    size_t const bar = name.find('|') + 1;
    bool const isExtended = name.substr(0, bar) == extendedSpace || name.substr(0, bar) == strictSpace;
    if (isExtended && std::ranges::find(toldByWriters, name.substr(bar)) != toldByWriters.end()) return false;
    auto const * const known = std::ranges::find_if(names, [&](PropertyName const & row) {
      return row.own == name.substr(bar) && (row.part == PropertyPart::Core ? row.space == name.substr(0, bar) : isExtended);
    });
    m_pText = m_nDepth == 1 && known != names.end() ? &m_Properties[static_cast<size_t>(known - names.begin())] : nullptr;
    if (m_pText == nullptr) m_Unkept.Add(Unkept::Properties);
    return m_pText != nullptr && Enter();
  }
  void End()
  {
    m_pText = nullptr;
    --m_nDepth;
  }
  void Characters(std::string_view text)
  {
    if (m_pText == nullptr) return;
    if (m_pText->size() + text.size() <= mostPropertyBytes) {
      *m_pText += text;
      return;
    }
    m_pText->clear();
    m_pText = nullptr;
    m_Unkept.Add(Unkept::Properties);
  }

 private:
  bool Enter()
  {
    ++m_nDepth;
    return true;
  }

  Properties & m_Properties;
  UnkeptList & m_Unkept;
  std::string * m_pText = nullptr;  // of the property that is being read
  unsigned int m_nDepth = 0;
};

constexpr std::string_view coreRoot =
    R"(cp:coreProperties xmlns:cp="http://schemas.openxmlformats.org/package/2006/metadata/core-properties" )"
    R"(xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:dcterms="http://purl.org/dc/terms/" )"
    R"(xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")";
constexpr std::string_view extendedRoot =
    R"(Properties xmlns="http://schemas.openxmlformats.org/officeDocument/2006/extended-properties")";

}  // namespace

void ReadProperties(PartStream part, Properties & properties, UnkeptList & unkept)
{
  PropertyHandler handler(properties, unkept);
  ReadXml(std::move(part), handler);
}

std::string MakePropertyPart(PropertyPart part, Properties const & properties)
{
  std::string content;
  for (size_t i = 0; i < propertyCount; ++i) {
    if (names[i].part != part || properties[i].empty()) continue;
    content.append("<").append(names[i].tag);
    if (names[i].space == termSpace) content += " xsi:type=\"dcterms:W3CDTF\"";
    content += '>';
    AppendAttribute(content, properties[i]);
    content.append("</").append(names[i].tag).append(">");
  }
  if (content.empty()) return {};
  std::string_view const root = part == PropertyPart::Core ? coreRoot : extendedRoot;
  return std::string("<")
      .append(root)
      .append(">")
      .append(content)
      .append("</")
      .append(root.substr(0, root.find(' ')))
      .append(">");
}

}  // namespace embedded
