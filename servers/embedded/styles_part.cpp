// Reading the styles and the theme.

#include "servers/embedded/styles_part.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

#include <zpbase/platform/ascii.h>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/limits.h"
#include "servers/embedded/number_text.h"
#include "servers/embedded/usual.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {
namespace {

constexpr size_t mostGeneral = 64;      // names of the one format that shows a value as it is
constexpr double mostFontSize = 409.0;  // points

char const * valueOr(char const * value, char const * other)
{
  return value != nullptr ? value : other;
}

// Follows the path to the first font, the first border and the first format of cells, from the root in depth 0.
class StylesHandler {
 public:
  static constexpr XmlNamespace const & space = sheetNamespace;

  StylesHandler(DefaultFont & font, UnkeptList & unkept) : m_Font(font), m_Unkept(unkept) {}

  bool Start(std::string_view name, XmlAttributes attributes)
  {
    switch (m_nDepth) {
      case 0:
        return Enter();
      case 1:
        m_List = ListOf(name);
        m_bFirst = true;
        return m_List != List::Other && Enter();
      case 2:
        return StartItem(attributes);
      default:
        StartInItem(name, attributes);
        return false;
    }
  }
  void End() { --m_nDepth; }
  void Characters(std::string_view) {}

 private:
  enum class List : unsigned char { Other, NumberFormats, Fonts, Borders, CellFormats, CellStyles, TableStyles };

  static List ListOf(std::string_view name)
  {
    struct Row {
      std::string_view name;
      List list;
    };
    static constexpr std::array rows = {Row{"numFmts", List::NumberFormats}, Row{"fonts", List::Fonts},
                                        Row{"borders", List::Borders},       Row{"cellXfs", List::CellFormats},
                                        Row{"cellStyles", List::CellStyles}, Row{"tableStyles", List::TableStyles}};
    auto const * const found = std::ranges::find(rows, name, &Row::name);
    return found != rows.end() ? found->list : List::Other;
  }

  bool Enter()
  {
    ++m_nDepth;
    return true;
  }

  bool StartItem(XmlAttributes attributes)
  {
    switch (m_List) {
      case List::NumberFormats:
        if (m_General.size() < mostGeneral && zp::EqualsNoCase(valueOr(attributes.Find("formatCode"), ""), "General"))
          m_General.insert(valueOr(attributes.Find("numFmtId"), ""));
        return false;
      case List::CellStyles:
        if (attributes.Find("builtinId") == nullptr || (attributes.IsOn("customBuiltin") && !attributes.Has("builtinId", "0")))
          m_Unkept.Add(Unkept::Styles);
        return false;
      case List::TableStyles:
        m_Unkept.Add(Unkept::Styles);
        return false;
      case List::CellFormats:
        if (!m_bFirst) return false;
        Require(IsUsual("xf", attributes) && m_General.count(valueOr(attributes.Find("numFmtId"), "0")) != 0);
        break;
      case List::Fonts:
      case List::Borders:
      case List::Other:
        break;
    }
    return std::exchange(m_bFirst, false) && Enter();
  }

  void StartInItem(std::string_view name, XmlAttributes attributes)
  {
    if (m_List == List::Borders)
      Require(attributes.Find("style") == nullptr || attributes.Has("style", "none"));
    else if (m_List == List::CellFormats)
      Require(IsUsual(name, attributes));
    else if (name == "name")
      TakeName(attributes.Find("val"));
    else if (name == "sz")
      TakeSize(attributes.Find("val"));
    else if (name != "family" && name != "charset" && name != "scheme")
      Require((name == "color" && IsUsual(name, attributes)) || attributes.Has("val", "0") || attributes.Has("val", "false"));
  }

  void Require(bool isUsual)
  {
    if (!isUsual) m_Unkept.Add(Unkept::Formats);
  }

  void TakeName(char const * name)
  {
    if (name != nullptr && CountUnits(name) <= mostNameUnits) m_Font.name = name;
  }

  void TakeSize(char const * text)
  {
    double const size = ReadNumber(valueOr(text, "")).value_or(0.0);
    if (size >= 1.0 && size <= mostFontSize) m_Font.size = size;
  }

  DefaultFont & m_Font;
  UnkeptList & m_Unkept;
  unsigned int m_nDepth = 0;
  List m_List = List::Other;
  bool m_bFirst = true;                     // no item of the list has been read
  std::set<std::string> m_General = {"0"};  // the numbers of formats that show a value as it is
};

class ThemeHandler {
 public:
  static constexpr XmlNamespace space = {"http://schemas.openxmlformats.org/drawingml/2006/main|",
                                         "http://purl.oclc.org/ooxml/drawingml/main|"};

  explicit ThemeHandler(UnkeptList & unkept) : m_Unkept(unkept) {}

  bool Start(std::string_view name, XmlAttributes attributes)
  {
    if (name == "theme" || name == "themeElements") return true;
    if (name != "clrScheme" && name != "fontScheme") return false;
    std::string_view const given = valueOr(attributes.Find("name"), "");
    bool const isOwn = std::ranges::any_of(std::array<std::string_view, 3>{"Office", "LibreOffice", "Larissa"},
                                           [&](std::string_view own) { return given.starts_with(own); });
    if (!isOwn) m_Unkept.Add(Unkept::Theme);
    return false;
  }
  void End() {}
  void Characters(std::string_view) {}

 private:
  UnkeptList & m_Unkept;
};

}  // namespace

void ReadStylesPart(PartStream part, DefaultFont & font, UnkeptList & unkept)
{
  StylesHandler handler(font, unkept);
  ReadXml(std::move(part), handler);
}

void ReadThemePart(PartStream part, UnkeptList & unkept)
{
  ThemeHandler handler(unkept);
  ReadXml(std::move(part), handler);
}

}  // namespace embedded
