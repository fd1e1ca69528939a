// The system's error numbers, their sentences for people, and what the host's errno means in them.
#pragma once

#include <cstdarg>

#include "types.h"

// The published numbers, those that this library meets.
enum SystemError : LONG {
  ERROR_SUCCESS = 0,
  ERROR_INVALID_FUNCTION = 1,
  ERROR_FILE_NOT_FOUND = 2,
  ERROR_PATH_NOT_FOUND = 3,
  ERROR_TOO_MANY_OPEN_FILES = 4,
  ERROR_ACCESS_DENIED = 5,
  ERROR_INVALID_HANDLE = 6,
  ERROR_NOT_ENOUGH_MEMORY = 8,
  ERROR_INVALID_DATA = 13,
  ERROR_INVALID_DRIVE = 15,
  ERROR_NOT_SAME_DEVICE = 17,
  ERROR_NO_MORE_FILES = 18,
  ERROR_WRITE_PROTECT = 19,
  ERROR_SEEK = 25,
  ERROR_WRITE_FAULT = 29,
  ERROR_READ_FAULT = 30,
  ERROR_GEN_FAILURE = 31,
  ERROR_SHARING_VIOLATION = 32,
  ERROR_LOCK_VIOLATION = 33,
  ERROR_HANDLE_EOF = 38,
  ERROR_HANDLE_DISK_FULL = 39,
  ERROR_FILE_EXISTS = 80,
  ERROR_INVALID_PARAMETER = 87,
  ERROR_DISK_FULL = 112,
  ERROR_INVALID_NAME = 123,
  ERROR_NEGATIVE_SEEK = 131,
  ERROR_DIR_NOT_EMPTY = 145,
  ERROR_NOT_LOCKED = 158,
  ERROR_BAD_PATHNAME = 161,
  ERROR_ALREADY_EXISTS = 183,
  ERROR_FILENAME_EXCED_RANGE = 206,
  ERROR_FILE_TOO_LARGE = 223,
  ERROR_MORE_DATA = 234,
  ERROR_NO_MORE_ITEMS = 259,
  ERROR_DIRECTORY = 267,
  ERROR_NOT_REGISTRY_FILE = 1017,  // the hive's file has another form; it is left alone
  ERROR_IO_DEVICE = 1117
};

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
inline constexpr DWORD LANG_USER_DEFAULT = 0x0400;

// The sentence for a system error number, its length as result; 0 if there is none. With the first flag buffer is the address of
// a char * that gets a block to be released with LocalFree, else the sentence must fit in size characters with its terminator.
// There are no other sources than the system, and one language.
ZP_API DWORD FormatMessageA(DWORD flags, void const * source, DWORD error, DWORD language, char * buffer, DWORD size,
                            va_list * args);
ZP_API void LocalFree(void * block);

// What the last function of folders.h that failed on this thread ran into.
ZP_API DWORD GetLastError();

namespace zp {

// What a value of errno means: the cause of a file exception, and the system's error number.
ZP_API int CauseOfError(int error);
ZP_API LONG SystemErrorOfError(int error);

}  // namespace zp
