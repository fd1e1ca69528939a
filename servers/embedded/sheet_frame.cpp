// The elements around the cells.

#include "servers/embedded/sheet_frame.h"

#include <algorithm>
#include <array>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/number_text.h"
#include "servers/embedded/usual.h"

namespace embedded {
namespace {

constexpr double mostWidth = 255.0;         // of a column, in characters
constexpr size_t mostColorBytes = 32;       // of an attribute of a colour
constexpr size_t mostHeaderBytes = 1 << 9;  // a longer header is no usual one

constexpr std::array<std::string_view, 5> colorAttributes = {"rgb", "theme", "indexed", "tint", "auto"};

bool isOne(std::string_view name, std::initializer_list<std::string_view> names)
{
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

bool SheetFrame::Start(std::string_view name, XmlAttributes attributes)
{
  bool const enters = m_nDepth == 0 ? StartChild(name, attributes) : StartBelow(name, attributes);
  if (!enters) return false;
  ++m_nDepth;
  m_strElement = name;
  return true;
}

// A child that isn't entered is told by its name, or says nothing.
bool SheetFrame::StartChild(std::string_view name, XmlAttributes attributes)
{
  if (isOne(name, {"sheetViews", "cols"})) return true;
  if (name == "sheetPr") {
    Require(IsUsual(name, attributes), Unkept::Other);
    return true;
  }
  if (name == "sheetFormatPr") {
    TakeDefaultWidth(attributes.Find("defaultColWidth"));
    Require(IsUsual(name, attributes), Unkept::Layout);
    return false;
  }
  if (isOne(name, {"pageMargins", "printOptions", "pageSetup", "headerFooter"})) {
    Require(IsUsual(name, attributes), Unkept::PageSetup);
    return name == "headerFooter";
  }
  m_Unkept.AddSheetElement(name);
  return false;
}

bool SheetFrame::StartBelow(std::string_view name, XmlAttributes attributes)
{
  if (name == "sheetView") {
    m_Sheet.rightToLeft = m_Sheet.rightToLeft || attributes.IsOn("rightToLeft");
    Require(IsUsual(name, attributes), Unkept::Views);
    return true;
  }
  if (isOne(name, {"oddHeader", "oddFooter"})) {
    m_strHeader.clear();
    return true;
  }
  if (name == "tabColor")
    TakeTabColor(attributes);
  else if (name == "col")
    Require(IsUsual(name, attributes) && attributes.IsOn("bestFit"), Unkept::Layout);
  else if (name == "outlinePr")
    Require(IsUsual(name, attributes), Unkept::Filters);
  else if (name == "pageSetUpPr")
    Require(IsUsual(name, attributes), Unkept::PageSetup);
  else if (name == "pane")
    m_Unkept.Add(Unkept::Views);
  else if (name != "selection")
    m_Unkept.Add(m_strElement == "headerFooter" ? Unkept::PageSetup : Unkept::Other);
  return false;
}

void SheetFrame::Characters(std::string_view text)
{
  if (m_nDepth == 2 && m_strHeader.size() < mostHeaderBytes) m_strHeader += text.substr(0, mostHeaderBytes);
}

bool SheetFrame::End()
{
  if (m_nDepth == 2 && isOne(m_strElement, {"oddHeader", "oddFooter"})) FinishHeader();
  return --m_nDepth == 0;
}

void SheetFrame::FinishHeader()
{
  Require(m_strElement == "oddHeader" ? IsUsualHeader(m_strHeader) : IsUsualFooter(m_strHeader), Unkept::PageSetup);
  m_strElement = "headerFooter";
}

void SheetFrame::Require(bool isUsual, Unkept kind)
{
  if (!isUsual) m_Unkept.Add(kind);
}

void SheetFrame::TakeDefaultWidth(char const * text)
{
  if (text == nullptr) return;
  double const width = ReadNumber(text).value_or(0.0);
  if (width > 0.0 && width <= mostWidth)
    m_Sheet.defaultWidth = width;
  else
    m_Unkept.Add(Unkept::Layout);
}

void SheetFrame::TakeTabColor(XmlAttributes attributes)
{
  m_Sheet.tabColor.clear();
  for (char const ** at = attributes.GetList(); *at != nullptr; at += 2) {
    bool const isKept =
        std::ranges::find(colorAttributes, *at) != colorAttributes.end() && std::string_view(at[1]).size() <= mostColorBytes;
    if (!isKept) {
      m_Unkept.Add(Unkept::Views);
      continue;
    }
    m_Sheet.tabColor.append(" ").append(*at).append("=\"");
    AppendAttribute(m_Sheet.tabColor, at[1]);
    m_Sheet.tabColor += '"';
  }
}

}  // namespace embedded
