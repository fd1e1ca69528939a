// What a file tells about itself as a document: title, author, company and their kind, as texts that pass through unread.
#pragma once

#include <array>
#include <string>

#include "servers/embedded/package.h"
#include "servers/embedded/unkept.h"

namespace embedded {

// The two parts that hold them.
enum class PropertyPart : unsigned char { Core, Extended };

inline constexpr size_t propertyCount = 21;

// In the order of their table; empty where there is none.
using Properties = std::array<std::string, propertyCount>;

// Puts what a part tells into properties. What is no text of at most mostPropertyBytes, or isn't in the table, is told as lost.
void ReadProperties(PartStream part, Properties & properties, UnkeptList & unkept);

// The part without its head; empty where there is nothing to tell.
std::string MakePropertyPart(PropertyPart part, Properties const & properties);

}  // namespace embedded
