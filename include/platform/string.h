// The platform's text: CString, single-byte, counted, mutable, in Windows-1252.
#pragma once

#include <compare>
#include <cstdarg>
#include <string>
#include <string_view>

#include "types.h"

class ZP_API CString {
 public:
  CString() = default;
  CString(char const * text) : m_Text(text != nullptr ? text : "") {}
  CString(char const * text, int length) : m_Text(text, static_cast<size_t>(length)) {}
  explicit CString(char c, int count = 1) : m_Text(static_cast<size_t>(count), c) {}
  explicit CString(std::string_view text) : m_Text(text) {}
  explicit CString(std::string && text) : m_Text(std::move(text)) {}

  CString & operator=(char const * text);
  CString & operator=(char c);
  CString & operator=(std::string_view text)
  {
    m_Text.assign(text);
    return *this;
  }

  int GetLength() const { return static_cast<int>(m_Text.size()); }
  bool IsEmpty() const { return m_Text.empty(); }
  void Empty() { m_Text.clear(); }

  // The characters with a terminating zero; valid until the text changes.
  operator char const *() const { return m_Text.c_str(); }
  char const * GetString() const { return m_Text.c_str(); }
  std::string_view View() const { return m_Text; }

  // index counts from 0 and must be inside the text.
  char GetAt(int index) const { return m_Text[static_cast<size_t>(index)]; }
  char operator[](int index) const { return m_Text[static_cast<size_t>(index)]; }
  void SetAt(int index, char c) { m_Text[static_cast<size_t>(index)] = c; }

  CString & operator+=(CString const & text);
  CString & operator+=(char const * text);
  CString & operator+=(std::string_view text);
  CString & operator+=(char c);

  // Negative, 0 or positive, by unsigned bytes; the second ignores the case of ASCII letters.
  int Compare(char const * other) const;
  int CompareNoCase(char const * other) const;

  // Pieces; bounds outside the text are cut to it.
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString Left(int count) const;
  CString Right(int count) const;

  // Index of the first or last match, or -1.
  int Find(char c, int start = 0) const;
  int Find(char const * text, int start = 0) const;
  int ReverseFind(char c) const;
  int FindOneOf(char const * characters) const;

  // Change case of ASCII letters, cut white space, take out or put in characters. Insert and Delete give the new length.
  CString & MakeUpper();
  CString & MakeLower();
  CString & TrimLeft();
  CString & TrimRight();
  int Insert(int index, char const * text);
  int Delete(int index, int count = 1);

  // Replaces the text by the formatted one. A class object never goes through `...`: pass its characters.
  void Format(char const * format, ...) __attribute__((format(printf, 2, 3)));
  void FormatV(char const * format, va_list args);

  // The text of string resource id from the registered modules; 0 and an empty text if none has it.
  int LoadString(UINT id);

  // A buffer for at least length characters, to be filled and then given back with its new length, -1: up to the first zero.
  char * GetBuffer(int length);
  void ReleaseBuffer(int length = -1);

 private:
  std::string m_Text;
};

inline bool operator==(CString const & a, CString const & b)
{
  return a.View() == b.View();
}
inline bool operator==(CString const & a, char const * b)
{
  return a.View() == (b != nullptr ? b : "");
}
inline bool operator<(CString const & a, CString const & b)
{
  return a.View() < b.View();
}
ZP_API CString operator+(CString const & a, CString const & b);
ZP_API CString operator+(CString const & a, char const * b);
ZP_API CString operator+(char const * a, CString const & b);
ZP_API CString operator+(CString const & a, char b);
