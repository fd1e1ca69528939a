// Facts that the system tells: the texts of its error numbers.
#pragma once

#include <cstdarg>

#include "types.h"

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
inline constexpr DWORD LANG_USER_DEFAULT = 0x0400;

// The sentence for a system error number, its length as result; 0 if there is none. With the first flag buffer is the address of
// a char * that gets a block to be released with LocalFree, else the sentence must fit in size characters with its terminator.
// There are no other sources than the system, and one language.
ZP_API DWORD FormatMessageA(DWORD flags, void const * source, DWORD error, DWORD language, char * buffer, DWORD size,
                            va_list * args);
ZP_API void LocalFree(void * block);
