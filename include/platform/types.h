// The platform's scalar types, at the widths that every record and stream of the system relies on, and the export mark.
#pragma once

#if __cplusplus < 202002L
#error "zpbase needs C++20: compile with -std=c++20 or later"
#include <zpbase needs C++20>  // ends the compilation here, before a page of what follows from it
#endif

#include <cstddef>
#include <cstdint>

#define ZP_API __attribute__((visibility("default")))

using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using UINT = uint32_t;
using LONG = int32_t;
using BOOL = int32_t;
using COLORREF = uint32_t;  // 0x00BBGGRR
using LONGLONG = long long;
using ULONGLONG = unsigned long long;

// Other libraries' headers, included before, may have made macros of these names.
#ifndef TRUE
inline constexpr BOOL TRUE = 1;
#endif
#ifndef FALSE
inline constexpr BOOL FALSE = 0;
#endif

// A place in a list; null is no place. Only the list that gave it out can read it.
struct ListPosition;
using POSITION = ListPosition *;

// An address inside a loaded module; null is the program itself.
struct ModuleInstance;
using HINSTANCE = ModuleInstance *;

// A window, as the table of windows knows it, and a brush; null is none. A handle is never given out twice.
struct HWND__;
using HWND = HWND__ *;
struct HBRUSH__;
using HBRUSH = HBRUSH__ *;

// What a message carries, and its handler's answer. All hold an address.
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
