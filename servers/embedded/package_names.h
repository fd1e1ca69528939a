// Names of the parts of a package: lower case, with slashes, from the package's root without a slash in front.
#pragma once

#include <string>
#include <string_view>

namespace embedded {

// The name of an entry of the archive as that of a part: "XL\Workbook.xml" is "xl/workbook.xml".
std::string NormalizePart(std::string_view name);

// The part that a relation of the part from leads to: "/xl/a.xml" counts from the root, "../a.xml" from beside from's folder.
std::string ResolveTarget(std::string_view from, std::string_view target);

// The part that tells the relations of a part: "xl/_rels/workbook.xml.rels" of "xl/workbook.xml".
std::string RelationsOf(std::string_view part);

}  // namespace embedded
