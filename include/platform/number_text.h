// Numbers at the start of texts, read as the C locale has them whatever the process has set.
#pragma once

#include <cstddef>
#include <string_view>

#include "types.h"

namespace zp {

// The number at the start of text as atof reads it in the C locale, 0 where there is none; used gets the characters taken.
ZP_API double TextToDouble(std::string_view text, size_t * used = nullptr);

// The number at the start of text as atoi and atol read it, modulo 2^32.
ZP_API int TextToInt(std::string_view text);

}  // namespace zp
