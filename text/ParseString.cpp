// ParseString: taking tokens, and telling their kind.

#include <zpbase/text.h>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/number_text.h>

#include "text/tabs_internal.h"

namespace {

constexpr int quotedTabWidth = 8;  // columns

bool isRealCharacter(char c)
{
  return c == '+' || c == '.' || c == 'E' || c == 'e';
}

// What atof may take, apart from white space.
constexpr std::string_view numberCharacters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz+-.()_";

int numberType(std::string_view token)
{
  int type = integerToken;
  for (char const c : token) {
    if (zp::IsDigit(c)) continue;
    if (c == '-' && type != rangeToken) {
      if (type == integerToken) type = rangeToken;
    } else if (isRealCharacter(c)) {
      type = realToken;
    } else {
      return textToken;
    }
  }
  return type;
}

int tokenType(std::string_view token)
{
  while (!token.empty() && zp::IsWhite(token.front())) token.remove_prefix(1);
  if (token.empty()) return emptyToken;
  if (token.front() == '"') return quotedToken;
  if (token.front() == '+' || token.front() == '-') token.remove_prefix(1);
  return numberType(token);
}

}  // namespace

ParseString & ParseString::operator=(ParseString const & other)
{
  if (this != &other) Init(other);
  return *this;
}

void ParseString::Init(ParseString const & other)
{
  CString::operator=(other);
  m_nOffset = other.m_nOffset;
  m_nTokenStart = other.m_nTokenStart;
  m_strDelimeters = other.m_strDelimeters;
  m_nDelimeterLimit = other.m_nDelimeterLimit;
  NoteDelimeters();
}

void ParseString::SetLine(std::string_view line)
{
  CString::operator=(line);
  m_nOffset = 0;
  m_nTokenStart = 0;
}

void ParseString::ResetOffset()
{
  m_nOffset = 0;
  m_nTokenStart = 0;
}

ParseString::operator char const *() const
{
  return GetString() + (m_nOffset < GetLength() ? m_nOffset : GetLength());
}

void ParseString::SetTokenDelimeters(CString const & delimiters)
{
  m_strDelimeters = delimiters;
  NoteDelimeters();
}

void ParseString::AddTokenDelimeters(CString const & delimiters)
{
  m_strDelimeters += delimiters.View();
  NoteDelimeters();
}

void ParseString::AddTokenDelimeter(char delimiter)
{
  m_strDelimeters += delimiter;
  NoteDelimeters();
}

void ParseString::NoteDelimeters()
{
  m_IsDelimeter = {};
  for (char const c : m_strDelimeters.View()) m_IsDelimeter[static_cast<unsigned char>(c)] = true;
  m_bNumbersAreTokens = m_strDelimeters.View().find_first_of(numberCharacters) == std::string_view::npos;
}

// The first place from offset on that isn't a delimiter, or is one too many.
inline size_t ParseString::BehindDelimeters(std::string_view text, size_t offset) const
{
  for (int count = 0; offset < text.size() && count != m_nDelimeterLimit && IsDelimeter(text[offset]); ++count) ++offset;
  return offset;
}

void ParseString::DiscardDelimeters()
{
  m_nOffset = static_cast<int>(BehindDelimeters(View(), static_cast<size_t>(m_nOffset)));
}

std::string_view ParseString::ParseToken()
{
  std::string_view const text = View();
  auto const start = static_cast<size_t>(m_nOffset);
  size_t end = start;
  while (end < text.size() && !IsDelimeter(text[end])) ++end;
  m_nTokenStart = m_nOffset;
  m_nOffset = static_cast<int>(end);
  return text.substr(start, end - start);
}

bool ParseString::GetToken(std::string_view & token)
{
  if (!InitParsing()) return false;
  DiscardDelimeters();
  token = ParseToken();
  return true;
}

int ParseString::GetToken(CString & token)
{
  std::string_view found;
  bool const isThere = GetToken(found);
  token = found;
  return isThere ? token.GetLength() : -1;
}

long ParseString::GetNextLong()
{
  std::string_view token;
  return GetToken(token) ? zp::TextToInt(token) : 0;
}

int ParseString::GetNextInt()
{
  return static_cast<int>(GetNextLong());
}

// The number's end is the token's when a delimiter or the end of the text follows it. That saves looking for the token's end
// beforehand; it takes that no delimiter stands inside a number, and white space isn't skipped for being in front of one.
double ParseString::GetNext_Double()
{
  if (!InitParsing()) return 0.0;
  std::string_view const text = View();
  size_t const start = BehindDelimeters(text, static_cast<size_t>(m_nOffset));
  m_nOffset = static_cast<int>(start);
  if (!m_bNumbersAreTokens || zp::IsWhite(text.data()[start])) return zp::TextToDouble(ParseToken());
  zp::NumberText const number = zp::ReadNumber(text.data() + start);
  auto end = static_cast<size_t>(number.end - text.data());
  while (end < text.size() && !IsDelimeter(text[end])) ++end;
  m_nTokenStart = static_cast<int>(start);
  m_nOffset = static_cast<int>(end);
  return number.value;
}

float ParseString::GetNextFloat()
{
  return static_cast<float>(GetNext_Double());
}

int ParseString::DiscardNextToken()
{
  std::string_view token;
  return GetToken(token);
}

int ParseString::GetNextTokenType()
{
  int const offset = m_nOffset;
  int const tokenStart = m_nTokenStart;
  std::string_view token;
  int const type = GetToken(token) ? tokenType(token) : noToken;
  m_nOffset = offset;
  m_nTokenStart = tokenStart;
  return type;
}

int ParseString::FindNextQuotes(int honourEscape)
{
  std::string_view const text = View();
  auto offset = static_cast<size_t>(m_nOffset);
  bool escaped = false;
  for (; offset < text.size(); ++offset) {
    if (text[offset] == '"' && !(honourEscape && escaped)) break;
    escaped = text[offset] == '\\';
  }
  m_nOffset = static_cast<int>(offset);
  return offset < text.size();
}

int ParseString::GetNextQuotedString(CString & out)
{
  if (!InitParsing()) {
    out.Empty();
    return 0;
  }
  m_nTokenStart = m_nOffset;
  if (!FindNextQuotes(0)) return 0;
  auto const start = static_cast<size_t>(++m_nOffset);
  int const isClosed = FindNextQuotes(1);
  std::string_view const quoted = View().substr(start, static_cast<size_t>(m_nOffset) - start);
  m_nOffset += isClosed;
  out = CString(zp::ExpandedTabs(quoted, start, quotedTabWidth));
  return out.GetLength();
}

char ParseString::GetCurChar() const
{
  return InitParsing() ? GetAt(m_nOffset) : '\0';
}

int ParseString::GetRemainingString(CString & out) const
{
  int const count = GetLength() - m_nOffset;
  if (count >= 1) {
    out = Right(count);
  } else {
    out.Empty();
  }
  return count;
}

int ParseString::DiscardChars(int count)
{
  int64_t const place = int64_t{m_nOffset} + count;
  if (place < 0 || place > GetLength()) return 0;
  m_nOffset = static_cast<int>(place);
  m_nTokenStart = m_nOffset;
  return 1;
}
