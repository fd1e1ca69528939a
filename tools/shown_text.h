// Characters of files, settings and names that steer a terminal, and how they are shown instead.
#pragma once

#include <string>
#include <string_view>

// The bytes of the character with which a text in UTF-8 begins; 0 if that is none.
size_t CharacterBytes(std::string_view utf8);

// How many bytes the control character takes with which a text in UTF-8 begins: 1 below 0x20 and for 0x7F, 2 for U+0080 to
// U+009F, and 1 for a byte that no UTF-8 begins with; 0 for anything else.
size_t ControlBytes(std::string_view utf8);

// For people: each control character as \xNN.
std::string Visible(std::string_view utf8);

// For a terminal: the ends of lines and pages stay, and tabs.
std::string VisibleLines(std::string_view utf8);

// The escape that JSON has for it.
void AppendJsonControl(std::string & json, std::string_view control);

// JSON text that only a terminal would mistake: its raw control characters as escapes. Line ends of the layout stay.
std::string VisibleJson(std::string_view json);
