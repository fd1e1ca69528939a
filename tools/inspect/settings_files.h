// Profile files among texts.
#pragma once

#include "tools/inspect/inspection.h"

// text is what the file holds behind a byte order mark.
bool IsProfile(std::string_view text, InspectedFile const & file, Inspection & found);
