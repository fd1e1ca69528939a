// Texts of cells between their forms: UTF-8 here, 16-bit characters in automation, XML with the format's escapes in files. All
// three hold any row of 16-bit characters: a half of a pair that stands alone has three bytes here and an escape in files.
#pragma once

#include <string>
#include <string_view>

#include "servers/common/wide_text.h"

namespace embedded {

using servers::FromWide;
using servers::ToWide;

// The 16-bit characters that a text has.
size_t CountUnits(std::string_view utf8);

// Takes the escapes out: "_x000D_" is a carriage return, "_x005F_" a low line.
std::string Unescape(std::string_view text);

// Appends the text as content of an element: markup and what XML can't hold is escaped, and so is what would read as an escape.
void AppendContent(std::string & xml, std::string_view utf8);

// The same as the value of an attribute in double quotes: without the format's escapes, and of a name, which has them.
void AppendAttribute(std::string & xml, std::string_view utf8);
void AppendName(std::string & xml, std::string_view utf8);

// Whether an element needs xml:space="preserve" for the text.
bool HasOuterBlanks(std::string_view utf8);

// Without the blanks of XML around it.
std::string_view TrimBlanks(std::string_view text);

// Upper case for comparing names, as zp::FoldCase has it.
std::string FoldCase(std::string_view utf8);

}  // namespace embedded
