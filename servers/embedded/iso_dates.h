// Dates and times of ISO 8601 as the spreadsheet counts them: days, of which the fraction is the time.
#pragma once

#include <optional>
#include <string_view>

namespace embedded {

// "2024-02-29", "2024-02-29T12:00:00.5Z" and "12:00:00": the number of the day in the epoch of 1900, with its day 60 that never
// was, or of 1904. Nothing for another text, and for a date before the epoch or behind the year 9999.
std::optional<double> ReadIsoDate(std::string_view text, bool from1904);

}  // namespace embedded
