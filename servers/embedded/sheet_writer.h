// The parts of sheets as they are written: the cells of a worksheet, and a chart that shows nothing yet.
#pragma once

#include <string>
#include <string_view>

#include "servers/embedded/package_writer.h"
#include "servers/embedded/workbook.h"

namespace embedded {

inline constexpr std::string_view xmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

std::string MakeSheetPart(Sheet const & sheet);

// The sheet of a chart, its drawing and its chart, under the chart's number from 1.
void AddChartParts(PackageWriter & package, size_t number);

}  // namespace embedded
