// CString: the text operations. Formatting and number reading have rooms of their own.

#include <zpbase/platform/string.h>

#include <algorithm>
#include <cstring>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/format.h>

namespace {

int indexOrNone(size_t found)
{
  return found == std::string::npos ? -1 : static_cast<int>(found);
}

std::string_view viewOf(char const * text)
{
  return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

CString & CString::operator=(char const * text)
{
  m_Text.assign(viewOf(text));
  return *this;
}

CString & CString::operator=(char c)
{
  m_Text.assign(1, c);
  return *this;
}

CString & CString::operator+=(CString const & text)
{
  m_Text += text.m_Text;
  return *this;
}

CString & CString::operator+=(char const * text)
{
  m_Text += viewOf(text);
  return *this;
}

CString & CString::operator+=(std::string_view text)
{
  m_Text += text;
  return *this;
}

CString & CString::operator+=(char c)
{
  m_Text += c;
  return *this;
}

int CString::Compare(char const * other) const
{
  return m_Text.compare(viewOf(other));
}

int CString::CompareNoCase(char const * other) const
{
  return zp::CompareNoCase(m_Text, viewOf(other));
}

CString CString::Mid(int first) const
{
  return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const
{
  first = std::clamp(first, 0, GetLength());
  return CString(View().substr(static_cast<size_t>(first), static_cast<size_t>(std::max(count, 0))));
}

CString CString::Left(int count) const
{
  return Mid(0, count);
}

CString CString::Right(int count) const
{
  return Mid(GetLength() - std::clamp(count, 0, GetLength()));
}

int CString::Find(char c, int start) const
{
  return start < 0 ? -1 : indexOrNone(m_Text.find(c, static_cast<size_t>(start)));
}

int CString::Find(char const * text, int start) const
{
  return start < 0 ? -1 : indexOrNone(m_Text.find(viewOf(text), static_cast<size_t>(start)));
}

int CString::ReverseFind(char c) const
{
  return indexOrNone(m_Text.rfind(c));
}

int CString::FindOneOf(char const * characters) const
{
  return indexOrNone(m_Text.find_first_of(viewOf(characters)));
}

CString & CString::MakeUpper()
{
  std::transform(m_Text.begin(), m_Text.end(), m_Text.begin(), [](char c) { return zp::ToUpper(c); });
  return *this;
}

CString & CString::MakeLower()
{
  std::transform(m_Text.begin(), m_Text.end(), m_Text.begin(), [](char c) { return zp::ToLower(c); });
  return *this;
}

CString & CString::TrimLeft()
{
  m_Text.erase(m_Text.begin(), std::find_if_not(m_Text.begin(), m_Text.end(), [](char c) { return zp::IsWhite(c); }));
  return *this;
}

CString & CString::TrimRight()
{
  m_Text.erase(std::find_if_not(m_Text.rbegin(), m_Text.rend(), [](char c) { return zp::IsWhite(c); }).base(), m_Text.end());
  return *this;
}

int CString::Insert(int index, char const * text)
{
  m_Text.insert(static_cast<size_t>(std::clamp(index, 0, GetLength())), viewOf(text));
  return GetLength();
}

int CString::Delete(int index, int count)
{
  index = std::clamp(index, 0, GetLength());
  m_Text.erase(static_cast<size_t>(index), static_cast<size_t>(std::max(count, 0)));
  return GetLength();
}

void CString::Format(char const * format, ...)
{
  va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
}

void CString::FormatV(char const * format, va_list args)
{
  // The old text may be one of the arguments.
  std::string formatted;
  zp::FormatInto(formatted, format, args);
  m_Text = std::move(formatted);
}

char * CString::GetBuffer(int length)
{
  m_Text.resize(std::max(m_Text.size(), static_cast<size_t>(length)));
  return m_Text.data();
}

void CString::ReleaseBuffer(int length)
{
  m_Text.resize(length < 0 ? std::strlen(m_Text.c_str()) : static_cast<size_t>(length));
}

CString operator+(CString const & a, CString const & b)
{
  CString sum(a);
  return sum += b;
}

CString operator+(CString const & a, char const * b)
{
  CString sum(a);
  return sum += b;
}

CString operator+(char const * a, CString const & b)
{
  CString sum(a);
  return sum += b;
}

CString operator+(CString const & a, char b)
{
  CString sum(a);
  return sum += b;
}
