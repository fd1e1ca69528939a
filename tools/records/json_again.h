// Whether JSON keeps an object: looked at on what is read from the texts that would be written.
#pragma once

#include <span>

#include <zpbase/platform/runtime.h>

// Whether the object that its JSON gives is stored as just these bytes.
bool GivesBack(CObject const & object, std::span<BYTE const> bytes);
