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

// Preferences: one reader each, with its section, key and default fixed. Those marked "kept" are read from the store once and
// then live in memory, where their writers keep them in step; a change made to the store by other ways is not seen. Without an
// application object they give their defaults, and none is kept.

// Reports and accounting. Off or empty unless set; the file is GetDefOutFile, which isn't written back.
ZP_API int GetDefAcctFlag();
ZP_API void SetDefAcctFlag(int flag);
ZP_API void GetDefAcctCode(CString & code);
ZP_API void SetDefAcctCode(CString const & code);
ZP_API int GetDefASCIIFlag();
ZP_API void SetDefASCIIFlag(int flag);
ZP_API void GetDefASCIIFile(CString & file);
ZP_API void SetDefASCIIFile(CString const & file);
ZP_API int GetDefExcelFlag();
ZP_API void SetDefExcelFlag(int flag);

// The spreadsheet. Saving after a run is on if unset or "Yes", off on any other text; the other two are off unless set, and
// kept, and their setters give the former value.
ZP_API int GetSaveAfterRunFlag();
ZP_API int GetShowExcelFlag();
ZP_API int SetShowExcelFlag(int flag);
ZP_API int GetIsVBServerFlag();
ZP_API int SetIsVBServerFlag(int flag);

// Behaviour, all kept. Beeps, the Enter key, the older calculation sequence and calculation are off unless set; the Esc key and
// flushing the message window are on unless "No". How components are selected is 0 unless set.
ZP_API int AllowBeep();
ZP_API int AllowEnter();
ZP_API int AllowEsc();
ZP_API int UseKeshCalcSequence();
ZP_API void SetKeshCalcSequence(int flag);
ZP_API int CalcAccordingToKesh();
ZP_API int FlushMsgWin();
ZP_API int GetCompSelectBy();
ZP_API void SetCompSelectBy(int value);

// Colours as 0x00BBGGRR, kept. A setting is the text "red, green, blue"; one without three numbers counts as unset.
ZP_API unsigned long GetEULabelColor();
ZP_API unsigned long GetRequiredLabelColor();
ZP_API unsigned long GetReadOnlyFgColor();
ZP_API unsigned long GetFocusFgColor();
ZP_API unsigned long GetFocusBkColor();
ZP_API unsigned long GetUserFgColor();
ZP_API unsigned long GetUserBkColor();

// Reference values of the engineering units, kept unless 0: 0 degrees Celsius in K (273.15) and 0 degrees Fahrenheit on the
// Rankine scale (459.67); the standard atmosphere in bar (1.01325), kg/cm2 (1.033227) and psi (14.69594).
ZP_API double GetKBase();
ZP_API double GetRBase();
ZP_API double GetBarBase();
ZP_API double GetKgCm2Base();
ZP_API double GetPsiBase();

// Formats, kept until FlushSysINIValues: the short date pattern of the user's locale, else "mm/dd/yy", and the formats of
// values in the reports of the simulation database, else those of the string resources 43415 and 43414.
ZP_API CString const & GetShortDateFormat();
ZP_API CString const & GetSDBCFRValFormat();
ZP_API CString const & GetSDBPropValFormat();

// Rights levels from 0 to 7: "None", "Case", "Job", "User", "Mgr", "PoolMgr", "SysMax", "ProgDog". A name is one of them to the
// letter, else 3. The mark of a level outside is '\0'. The user's level is 3 unless set, and kept unless 0; the level for
// loading is the program's, 0 at start, and its setter gives the former one.
ZP_API int GetSysAuthority(CString const & name);
ZP_API char GetAuthorityAppendChar(int level);
ZP_API int GetUserAuthority();
ZP_API int GetLoadAuthority();
ZP_API int SetLoadAuthority(int level);

// Ids of the application messages that the modules share, registered at load: the id of a name such as "UWM_DOQUICKSHEET", or
// 0 for null and for a name that isn't one of them.
ZP_API unsigned int GetAppMessage(char const * name);

// The short label of class number index of engineering units, such as "PRES" for 3; null outside.
ZP_API char const * GetEULabel(int index);
ZP_API int GetEULabelCount();

// Reference constants. The epsilons are the distances from 1 to the next number, 1.1920929e-07 and 2.220446049250313e-16, the
// root of the first taken in single precision; the temperatures are fixed points on the Kelvin and Rankine scales.
ZP_API double GetSqrtSingleEpsilon();
ZP_API double GetSqrtDoubleEpsilon();
ZP_API double GetKelvinAt0C();     // 273.15 K
ZP_API double GetKelvinAt25C();    // 298.15 K
ZP_API double GetKelvinAt100C();   // 373.15 K
ZP_API double GetRankineAt32F();   // 491.67 R
ZP_API double GetRankineAt60F();   // 519.67 R
ZP_API double GetRankineAt212F();  // 671.67 R

// A table of strings in memory that can stand in for the resources of the application.
struct ResString {
  unsigned int m_nID = 0;
  CString m_strText;
};

// Fills the table with copies, in place of what it held. Entries may come in any order; of two with one id the first stays.
ZP_API void LoadResStrings(ResString const * entries, unsigned int count);
ZP_API int ResStringsAreLoaded();
ZP_API void UnloadResStrings();

// The text under id, "NOT FOUND" if a filled table lacks it, empty if the table is. Valid until the table changes.
ZP_API char const * GetStringFromResourceID(unsigned int id);

// The module under which the application's resources are found.
ZP_API HINSTANCE GetZPLWResourceHandle();

namespace zp {

// Forgets every preference that is kept, so that the next call of its reader reads the store.
ZP_API void ForgetCachedSettings();

}  // namespace zp
