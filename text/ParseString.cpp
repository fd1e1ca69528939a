// ParseString: taking tokens, and telling their kind.

#include <zpbase/text.h>

#include <utility>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/number_reader.h>
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
  CString delimeters = other.m_strDelimeters;
  CString::operator=(other);
  m_nOffset = other.m_nOffset;
  m_nTokenStart = other.m_nTokenStart;
  m_strDelimeters = std::move(delimeters);
  m_nDelimeterLimit = other.m_nDelimeterLimit;
  NoteDelimeters();
}

void ParseString::SetLine(std::string_view line)
{
  CString::operator=(line);
  ResetOffset();
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

// The first place from p on that isn't a delimiter, or is one too many.
inline char const * ParseString::BehindDelimeters(char const * p, char const * last) const
{
  for (int count = 0; IsDelimeter(*p) && p != last && count != m_nDelimeterLimit; ++count) ++p;
  return p;
}

inline char const * ParseString::EndOfToken(char const * p, char const * last) const
{
  while (!IsDelimeter(*p) && p != last) ++p;
  return p;
}

void ParseString::DiscardDelimeters()
{
  if (InitParsing())
    m_nOffset = static_cast<int>(BehindDelimeters(GetString() + m_nOffset, GetString() + GetLength()) - GetString());
}

inline void ParseString::NoteToken(char const * start, char const * end)
{
  m_nTokenStart = static_cast<int>(start - GetString());
  m_nOffset = static_cast<int>(end - GetString());
}

std::string_view ParseString::ParseToken()
{
  char const * const start = GetString() + m_nOffset;
  char const * const end = EndOfToken(start, GetString() + GetLength());
  NoteToken(start, end);
  return {start, static_cast<size_t>(end - start)};
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

// A number's end is its token's when a delimiter or the end of the text follows it. That saves looking for the token's end
// beforehand; it takes that no delimiter stands inside a number, and white space isn't passed over for being in front of one.
inline double ParseString::TakeDouble()
{
  char const * const last = GetString() + GetLength();
  char const * const token = BehindDelimeters(GetString() + m_nOffset, last);
  zp::Decimal const decimal = zp::GatherDecimal(token, zp::TerminatedEnd{});
  if (!m_bNumbersAreTokens || !decimal.isExact) [[unlikely]]
    return FinishDouble(token, decimal.mantissa, decimal.exponent, decimal.length, decimal.end);
  NoteToken(token, EndOfToken(decimal.end, last));
  return zp::ExactValue(token, decimal);
}

double ParseString::GetNext_Double()
{
  return InitParsing() ? TakeDouble() : 0.0;
}

// What TakeDouble gives of a token at which these were gathered, when they aren't its exact number.
double ParseString::FinishDouble(char const * token, uint64_t mantissa, int64_t exponent, ptrdiff_t length, char const * end)
{
  char const * const last = GetString() + GetLength();
  bool const isInside = !m_bNumbersAreTokens || zp::IsWhite(*token);
  char const * const tokenEnd = EndOfToken(token, last);
  NoteToken(token, tokenEnd);
  if (isInside) return zp::TextToDouble({token, static_cast<size_t>(tokenEnd - token)});
  return zp::FinishNumber(token, nullptr, {.mantissa = mantissa, .exponent = exponent, .length = length, .end = end}).value;
}

int ParseString::GetNext_Doubles(double * out, int count)
{
  int i = 0;
  for (; i < count && InitParsing(); ++i) out[i] = TakeDouble();
  return i;
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
