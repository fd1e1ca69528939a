// What cells without a format of their own look like, and what else of a file's styles and theme isn't made by itself.
#pragma once

#include <string>

#include "servers/embedded/package.h"
#include "servers/embedded/unkept.h"
#include "servers/embedded/workbook.h"

namespace embedded {

// Takes the default font, as far as it has a name and a size. Formats that no cell uses, and those of names that every writer
// gives, aren't told.
void ReadStylesPart(PartStream part, DefaultFont & font, UnkeptList & unkept);

// Tells a theme, unless it is one of the makers' own.
void ReadThemePart(PartStream part, UnkeptList & unkept);

}  // namespace embedded
