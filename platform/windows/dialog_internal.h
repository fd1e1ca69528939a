// How a dialog finds its template.

#pragma once

#include <zpbase/platform/windows.h>

namespace zp {

// The template of that id in the registered modules, or null.
DialogTemplate const * FindTemplate(UINT id);

}  // namespace zp
