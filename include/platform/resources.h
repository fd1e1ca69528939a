// String resources: texts by number, asked of the registered modules in order, the application's first.
#pragma once

#include <initializer_list>

#include "format.h"
#include "string.h"
#include "types.h"

namespace zp {

// The text of a string resource in a module, or null.
using FindResourceText = char const * (*)(UINT id);

// Puts a module in front of those registered before, or takes it out again.
ZP_API void RegisterResourceModule(FindResourceText find);
ZP_API void UnregisterResourceModule(FindResourceText find);

// The string resource id formatted with exactly these arguments. Where no module has a text: the id and the arguments.
ZP_API CString FormatResource(UINT id, std::initializer_list<FormatArg> args);

}  // namespace zp
