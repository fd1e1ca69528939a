// Numbers as the format writes them, whatever the locale is: read to the nearest double, written with the fewest digits that give
// its bits back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded {

// Nothing for what is no number. What is too large, and what stands for no number ("NaN"), comes as one that isn't finite; what
// is too small as zero.
std::optional<double> ReadNumber(std::string_view text);

void AppendNumber(std::string & text, double value);

}  // namespace embedded
