// What a workbook may hold at most, in one place: the grid and the texts of the .xlsx format, and bounds that keep a file made to
// harm from taking memory or time. A file beyond one of them is refused with a sentence that names the bound.
#pragma once

#include <cstddef>
#include <cstdint>

namespace embedded {

// The grid, whose rows and columns servers/common/cell_names.h counts.
inline constexpr size_t mostTextUnits = 32767;  // 16-bit characters of a cell's text
inline constexpr size_t mostNameUnits = 31;     // of a sheet's name

// The package.
inline constexpr uint64_t mostPackedBytes = uint64_t{1} << 30;    // of the file
inline constexpr uint64_t mostUnpackedBytes = uint64_t{1} << 31;  // of all parts that are read, together
inline constexpr uint64_t mostBookPartBytes = 16u << 20;          // of a part that tells about the others
inline constexpr uint64_t mostParts = 65536;
inline constexpr size_t mostSheets = 1024;

inline constexpr size_t mostPropertyBytes = 4096;  // of a title, an author and their kind

// The XML of a part.
inline constexpr unsigned int mostDepth = 64;               // of elements in elements
inline constexpr uint64_t mostTokenBytes = 1u << 20;        // of one tag, comment or instruction
inline constexpr size_t mostTextBytes = 8 * mostTextUnits;  // of a cell's text, as it stands with its escapes

}  // namespace embedded
