// Text: tokens, numeric lines and columns, whole text files, and the string and path functions.
//
// Numbers are read by the rules of the C locale whatever the process has set; a text that is no number reads as 0, or as the
// number at its head. Reading operations report the end of the text in their results: -1, 0, 0.0 or an empty string.
#pragma once

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include "foundation.h"
#include "job_folders.h"
#include "platform/memory_pages.h"
#include "platform/registry.h"
#include "platform/security.h"
#include "store.h"

// Kinds of token, by their characters and not by grammar: "1-2.5" and "E" are real numbers.
enum TokenType {
  noToken,       // the offset stands at or behind the end of the text
  emptyToken,    // nothing, or white space alone
  integerToken,  // digits behind at most one sign
  realToken,     // digits and "+.Ee"
  textToken,
  quotedToken,  // begins with a double quote
  rangeToken    // two integers joined by a minus sign
};

// A tokenizer over the string that it is itself. A token is what stands between characters of the delimiter set, at first a
// blank and a tab; the delimiter behind a token stays for the next call. Given as CString const & it is the whole text, as
// char const * the unread rest. A text assigned through the base leaves the offset where it was: call ResetOffset. Where memory
// runs out what an operation has put into its outputs by then stays.
class ZP_API ParseString : public CString {
 public:
  ParseString() = default;
  explicit ParseString(char const * text) : CString(text) {}
  explicit ParseString(CString const & text) : CString(text) {}
  ParseString(ParseString const & other) = default;
  ParseString & operator=(ParseString const & other);
  using CString::operator=;

  void ResetOffset();
  operator char const *() const;  // the unread rest

  void SetTokenDelimeters(CString const & delimiters);
  void AddTokenDelimeters(CString const & delimiters);
  void AddTokenDelimeter(char delimiter);
  void GetTokenDelimeters(CString & delimiters) { delimiters = m_strDelimeters; }

  // How many delimiters may stand in front of one token and are passed over, -1 for any number. With 1 each delimiter separates,
  // so that "a,,b" has an empty token. A limit of 0 would never get past a delimiter: it counts as 1.
  void SetDelimeterLimit(int limit) { m_nDelimeterLimit = limit == 0 ? 1 : limit; }

  // The next token: its length, or -1 and an empty token at the end. A text that ends in delimiters has a last empty token.
  int GetNextString(CString & token) { return GetToken(token); }
  long GetNextLong();  // 32 bits, wrapped
  int GetNextInt();
  double GetNext_Double();

  // Puts the values of the next tokens into out, at most count of them, as so many calls of GetNext_Double would give them; only
  // the end of the text stops it earlier. Gives how many there were; what stands behind them in out is left alone.
  int GetNext_Doubles(double * out, int count);
  float GetNextFloat();
  int DiscardNextToken();  // 0 at the end

  // The text between the next two double quotes wherever they stand, tabs expanded as at their column in the text. A backslash
  // keeps the quote behind it from closing, and stays. Without a closing quote it runs to the end; without an opening one the
  // result is 0, out stays as it was and the offset is at the end.
  int GetNextQuotedString(CString & out);

  // Appends all tokens left, quoted ones without their quotes. Gives their count.
  int BuildTokenArray(CStringArray & out);

  // Replaces out by the numbers and ranges left, such as "1 3-7 12", added under GPUIntArray's flags; other tokens are passed
  // over. Blanks around a minus sign are taken out of this text first, which sets offsets, delimiters and limit back.
  int GetUIntArray(GPUIntArray & out, unsigned int flags, GPUIntArray const & valid);

  int GetNextTokenType();   // a TokenType; nothing moves
  char GetCurChar() const;  // 0 at the end
  int GetRemainingString(CString & out) const;
  int DiscardChars(int count);  // 0, and nothing moves, for a place outside the text
  void DiscardDelimeters();
  void RestoreToken() { m_nOffset = m_nTokenStart; }  // one level

  // The tokens left if all are numbers or empty, else 0. Nothing moves.
  int GetValueCount();

  // First and last index of each value left; 0, and empty arrays, unless all are values. An empty value ends before it starts.
  // Under a delimiter limit a value is looked for behind the delimiters in front of it and as many more as the limit allows.
  int GetValuePositions(CUIntArray & starts, CUIntArray & ends);

  // The texts at the positions, or in exactly count fields cut at every single delimiter from the begin of the text; empty
  // unless all tokens left are values. 1 if a string isn't empty.
  int GetValueStrings(CStringArray & out, CUIntArray const & starts, CUIntArray const & ends);
  int GetValueStrings(CStringArray & out, int count);

 protected:
  // Replaces the text and sets the offsets back.
  void SetLine(std::string_view line);

 private:
  void Init(ParseString const & other);
  bool InitParsing() const { return m_nOffset < GetLength(); }
  char const * BehindDelimeters(char const * p, char const * last) const;
  char const * EndOfToken(char const * p, char const * last) const;
  std::string_view ParseToken();
  void NoteToken(char const * start, char const * end);
  double TakeDouble();
  double FinishDouble(char const * token, uint64_t mantissa, int64_t exponent, ptrdiff_t length, char const * end);
  int GetToken(CString & token);
  bool GetToken(std::string_view & token);
  int FindNextQuotes(int honourEscape);
  int TakeToken(CString & token, int type);
  void NoteDelimeters();
  static constexpr std::array<bool, 256> BlankAndTab()
  {
    std::array<bool, 256> set{};
    set[' '] = set['\t'] = true;
    return set;
  }
  bool IsDelimeter(char c) const { return m_IsDelimeter[static_cast<unsigned char>(c)]; }

  int m_nOffset = 0;
  int m_nTokenStart = 0;
  CString m_strDelimeters{" \t"};
  int m_nDelimeterLimit = -1;
  std::array<bool, 256> m_IsDelimeter = BlankAndTab();
  bool m_bNumbersAreTokens = true;  // no character that can stand in a number is a delimiter
};

// A whole text file, read at once; each line in turn becomes the text that the object is. A line ends at a CR or a zero byte,
// with the LFs and SUBs (26) behind it, and so does the file unless its last byte is an LF. So bare LFs end nothing. Raises the
// file's exception for a file that is missing, can't be read or is 2 GiB or longer.
class ZP_API ParseFile : public ParseString {
 public:
  static constexpr int maxParsedLine = 2000;  // characters

  explicit ParseFile(CString const & path);
  virtual ~ParseFile();
  ParseFile(ParseFile const &) = delete;
  ParseFile & operator=(ParseFile const &) = delete;

  int GetLineCount() { return m_nLineCount; }

  // Makes line, from 1, the one that ReadLine reads next; the line behind the last one is the end. 0 for other numbers.
  int GotoLineNumber(int line);

  // 0 before the first line, then the number of the line last read; -1 when GotoLineNumber went to the end.
  int GetCurLineNumber() { return m_nCurLine; }

  // The next line as it stands: its length, or -1 and an empty text at the end.
  int ReadLine();

  // The next line without LFs and SUBs that stand in it: its length, or -1 at the end; an empty last line is the end. A line of
  // more than maxParsedLine characters comes in pieces, which count as one line.
  int ParseLine();

  int GetRemainingLine(CString & out) const { return GetRemainingString(out); }

  // The one tab, blank or comma that comes first in every numeric line that has any; 0 if they differ or none has one.
  int GetDelimeter();

  // First and last column of each value when the values of all numeric lines are laid over each other, under the delimiters that
  // are set. 0, and empty arrays, if there are none or a column has grown into its neighbour.
  int GetColumnPositions(CUIntArray & starts, CUIntArray & ends);

  int GetMaxValuesPerLine();

  void Close();

 private:
  void LoadContent();
  void InitLineOffsets();
  void CountLine();

  GPFile m_File;
  zp::PageBlock m_Content;  // each CR has become a zero byte
  DWORD m_nContentLength = 0;
  DWORD m_nReadPos = 0;
  int m_nCurLine = 0;
  std::vector<DWORD> m_LineOffsets;  // of each line, and of what stands behind the last one; empty if there are no lines
  int m_nLineCount = 0;
};

// Strings

// Appends the pieces of text between CR LFs; an empty last one isn't a line. Gives the longest one's length.
ZP_API int ChopString(CStringArray & lines, CString const & text);

// Replaces each tab by blanks, at least one, up to the next multiple of tabWidth; below 1 by one blank. Gives their count.
ZP_API unsigned int ExpandTabs(CString & text, int tabWidth);

// Puts a blank between groups of that many characters, from the left, or from the right for a negative group; there a blank
// comes first if the groups are all full. A group of 0 changes nothing.
ZP_API void InsertSpaces(CString & text, int group);

ZP_API int RemoveSpaces(CString & text);          // blanks alone; gives the new length
ZP_API int PadString(CString & text, int width);  // 0, and no change, for a longer text
ZP_API int IsCharDigit(char c);                   // by the platform's character classes: '0' to '9' and three raised digits
ZP_API int IsCharDigit(unsigned int c);           // '0' to '9'
inline int IsCharDigit(int c)
{
  return IsCharDigit(static_cast<unsigned int>(c));
}
ZP_API int FindString(CStringArray const & array, CString const & text);  // index of the first equal element, or -1

// Paths, in the inside form: the backslash alone separates

ZP_API int FindExtension(CString const & path);                              // index of the last dot of the last part, or -1
ZP_API void ExtractFileName(CString & out, CString const & path);            // path without the extension and its dot
ZP_API void ExtractFileExtension(CString & out, CString const & path);       // with its dot
ZP_API CString GetDirectoryPrefix(CString const & path, int keepSeparator);  // before, or up to, the last backslash
ZP_API int DirExists(CString const & dir);

// Creates every directory on path, the last part included. 0, with a message, for a failure other than 183 (exists) and 5
// (access denied); 1 for a path without a backslash.
ZP_API int MakeParentDirectories(CString const & path);

// The simulator's search for a file: job_path, workfile_path, the system's directory, and the system's own search for a name
// with an extension. A name without one is tried as ".UF" there, then as ".PF" in poolfile_path, then as ".SF" in the system's
// directory. A name with a backslash is its own only candidate. found is empty on failure.
ZP_API int FindZephlowFile(CString & found, CString const & name);

// Default security for a new directory.
class ZP_API CSecurityAttributes : public SECURITY_ATTRIBUTES {
 public:
  CSecurityAttributes() : SECURITY_ATTRIBUTES{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE} {}
  CSecurityAttributes(CSecurityAttributes const &) = default;
  CSecurityAttributes & operator=(CSecurityAttributes const & other) = default;
};
