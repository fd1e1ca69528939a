// What a sheet's part holds beside its cells: what of it is kept, and what isn't.
#pragma once

#include <string>
#include <string_view>

#include "servers/embedded/unkept.h"
#include "servers/embedded/workbook.h"
#include "servers/embedded/xml_reader.h"

namespace embedded {

// Has the calls of a handler of XML for the children of the sheet's root but <sheetData>, and for what stands in them.
class SheetFrame {
 public:
  SheetFrame(Sheet & sheet, UnkeptList & unkept) : m_Sheet(sheet), m_Unkept(unkept) {}

  bool Start(std::string_view name, XmlAttributes attributes);
  void Characters(std::string_view text);

  // Whether the element that ended was a child of the root.
  bool End();

 private:
  bool StartChild(std::string_view name, XmlAttributes attributes);
  bool StartBelow(std::string_view name, XmlAttributes attributes);
  void Require(bool isUsual, Unkept kind);
  void TakeDefaultWidth(char const * text);
  void TakeTabColor(XmlAttributes attributes);
  void FinishHeader();

  Sheet & m_Sheet;
  UnkeptList & m_Unkept;
  unsigned int m_nDepth = 0;
  std::string m_strElement;  // the one that was started last
  std::string m_strHeader;   // of a header or footer
};

}  // namespace embedded
