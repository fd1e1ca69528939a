// Tabs, for the strings and the quoted tokens.
#pragma once

#include <string>
#include <string_view>

namespace zp {

// text with each tab as blanks up to the next multiple of tabWidth, at least one, when the text starts at that column.
std::string ExpandedTabs(std::string_view text, size_t column, size_t tabWidth);

}  // namespace zp
