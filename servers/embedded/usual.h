// What every writer of .xlsx files puts into a file although nobody asked for it: attributes at the values that LibreOffice,
// openpyxl and the office of the format's makers give them by themselves. To lose them is no loss.
#pragma once

#include <string_view>

#include "servers/embedded/xml_reader.h"

namespace embedded {

// Whether an element has no attribute but usual ones. The names of elements are those of the sheet, the workbook or the styles;
// attributes of other namespaces don't count.
bool IsUsual(std::string_view element, XmlAttributes attributes);

// Whether a page's header or footer is the one that LibreOffice makes: the sheet's name, the number of the page.
bool IsUsualHeader(std::string_view text);
bool IsUsualFooter(std::string_view text);

}  // namespace embedded
