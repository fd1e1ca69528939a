// How a tool bar finds its buttons.

#pragma once

#include <zpbase/platform/bars.h>

namespace zp {

// The tool bar of that id in the registered modules, or null.
ToolBarResource const * FindToolBarResource(UINT id);

}  // namespace zp
