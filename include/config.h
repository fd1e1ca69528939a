// The system's configuration: the settings store, the preferences that are kept in memory, every fixed name, the registered
// application messages, the labels of engineering units and the table of resource strings.
#pragma once

#include "platform/string.h"
#include "platform/types.h"
#include "well_known_names.h"

// Length of GetTruncateSuffix in characters.
ZP_API int GetTruncateSuffixLength();

// Settings. They are the application object's, addressed by a section and a key; names see well_known_names.h. Without an
// application object readers give their defaults and writers 0. Set operations give the store's result, non-zero on success.

// The text in out, and its length. An empty or missing one is replaced by defaultValue, which then is written to the store.
ZP_API int GetSysString(CString & out, char const * section, char const * key, CString const & defaultValue);
ZP_API int SetSysString(char const * section, char const * key, CString const & value);

// 1 if the text is "Yes", or "No", in any case of letters, else 0: both are 0 for a flag that isn't set.
ZP_API int GetSysYes(char const * section, char const * key);
ZP_API int GetSysNo(char const * section, char const * key);
ZP_API void SetSysFlag(char const * section, char const * key, int flag);
ZP_API void RemoveSysKey(char const * section, char const * key);

// The integer or the default, cut to 16 bits and sign-extended. The second also puts its digits in out, nothing for a 0
// unless keepZero.
ZP_API int GetSysInt(char const * section, char const * key, int defaultValue);
ZP_API int GetSysInt(CString & out, char const * section, char const * key, int keepZero, int defaultValue);
ZP_API int SetSysInt(char const * section, char const * key, int value);

// A 32-bit number held as decimal text, a negative one in its unsigned form. A default that isn't 0 is written to the store.
ZP_API long GetSysLong(char const * section, char const * key, long defaultValue);
ZP_API long GetSysLong(CString & out, char const * section, char const * key, int keepZero, long defaultValue);
ZP_API int SetSysLong(char const * section, char const * key, long value);

// The characters with a zero byte behind them, as a block. A block that is read keeps that byte: it is one longer.
ZP_API int GetSysBinary(char const * section, CString & out, char const * key);
ZP_API int SetSysBinary(char const * section, char const * key, CString const & value);

// Places, each with a backslash at its end: of the application's program file; its drive, such as "C:\"; the older system's
// directory from the setting "ZP3System" of the section "Directory", else that of the program. The second is read anew by
// every call, the third kept until FlushSysINIValues.
ZP_API CString const GetSystemPathPrefix();
ZP_API CString const & GetSystemRootDirectory();
ZP_API CString const & GetZP3SystemPathPrefix();

// Empties the texts that readers of settings keep, so that the next call reads them anew. Numbers, flags, colours and rights
// live until the process ends.
ZP_API void FlushSysINIValues();

// Gives a new user the registry settings of the default user: nothing if the user has the branch Software\company\application
// (\section) already; else the values of that key, or without a section those of each of its sub keys. 1, or 0 on the first
// failure, when what has been created so far stays. A name or a value of more than 259 bytes is a failure.
ZP_API int InitRegistry(CString const & company, CString const & application, CString const & section);
