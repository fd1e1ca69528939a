// The code page of all texts inside, Windows-1252: the classes of its characters, and the ways from and to the outside's texts.
#pragma once

#include <string>
#include <string_view>

#include "string.h"
#include "types.h"

// The classes of a Windows-1252 character: letters, and letters or digits, to which the raised 1, 2 and 3 belong.
ZP_API BOOL IsCharAlphaA(char c);
ZP_API BOOL IsCharAlphaNumericA(char c);

namespace zp {

// Of wide characters those that the code page lacks become '?'; of UTF-8, malformed text and characters that the code page lacks
// give false and leave text alone.
ZP_API void AppendWide(std::string & out, std::u16string_view wide);
ZP_API std::u16string TextToWide(std::string_view text);
ZP_API bool Utf8ToText(std::string_view utf8, CString & text);
ZP_API std::string TextToUtf8(std::string_view text);

// Between the outside's two forms, with all characters that there are. Malformed UTF-8 gives false and leaves wide alone; half of
// a pair that stands alone becomes U+FFFD.
ZP_API bool Utf8ToWide(std::string_view utf8, std::u16string & wide);
ZP_API void AppendUtf8(std::string & out, std::u16string_view wide);

// In upper case, character by character and whatever the locale, for comparing names: Latin, Greek, Cyrillic and Armenian.
ZP_API std::u16string FoldCase(std::u16string_view wide);

}  // namespace zp
