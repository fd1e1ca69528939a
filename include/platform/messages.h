// The thread's messages.
#pragma once

#include "types.h"

// The id, from 0xC000 to 0xFFFF, of a message named by a string: one string has one id in the whole process. 0 for an empty
// string, one of more than 255 characters, and when all ids are taken.
ZP_API UINT RegisterWindowMessageA(char const * name);
