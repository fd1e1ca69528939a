// Text for a terminal.

#pragma once

#include <string>
#include <string_view>

namespace zp {

// The text in lines of at most width characters, broken at blanks, each with a line end; a longer word is cut. Control characters
// that could steer a terminal become '?', tabs blanks.
std::string WrapText(std::string_view text, size_t width);

}  // namespace zp
