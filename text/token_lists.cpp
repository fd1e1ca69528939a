// ParseString: reading all that is left, as a list of tokens, as numbers and ranges, and as the values of a numeric line.

#include <zpbase/text.h>

#include <zpbase/platform/number_text.h>

namespace {

// The text without the blanks that stand in front of or behind a minus sign.
std::string withoutBlanksAroundMinus(std::string_view text)
{
  std::string out;
  out.reserve(text.size());
  for (char const c : text) {
    if (c == '-') out.erase(out.find_last_not_of(' ') + 1);
    if (c != ' ' || out.empty() || out.back() != '-') out += c;
  }
  return out;
}

bool isValueType(int type)
{
  return type == emptyToken || type == integerToken || type == realToken;
}

int hasText(CStringArray const & strings)
{
  for (int i = 0; i < strings.GetSize(); ++i) {
    if (!strings[i].IsEmpty()) return 1;
  }
  return 0;
}

}  // namespace

int ParseString::TakeToken(CString & token, int type)
{
  return type == quotedToken ? GetNextQuotedString(token) : GetToken(token);
}

int ParseString::BuildTokenArray(CStringArray & out)
{
  int count = 0;
  for (int type; (type = GetNextTokenType()) != noToken; ++count) {
    CString token;
    TakeToken(token, type);
    out.Add(token);
  }
  return count;
}

int ParseString::GetUIntArray(GPUIntArray & out, unsigned int flags, GPUIntArray const & valid)
{
  out.Empty();
  std::string joined = withoutBlanksAroundMinus(View());
  if (joined.size() != View().size()) *this = ParseString(CString(std::move(joined)));
  CString token;
  for (int type; (type = GetNextTokenType()) != noToken;) {
    TakeToken(token, type);
    if (type == integerToken) out.AddUIntVal(static_cast<unsigned int>(zp::TextToInt(token.View())), flags, valid);
    if (type == rangeToken) out.AddUIntRange(token, flags, valid);
  }
  return out.GetSize();
}

int ParseString::GetValueCount()
{
  int const offset = m_nOffset;
  int const tokenStart = m_nTokenStart;
  int count = 0;
  int type;
  while (isValueType(type = GetNextTokenType())) {
    DiscardNextToken();
    ++count;
  }
  m_nOffset = offset;
  m_nTokenStart = tokenStart;
  return type == noToken ? count : 0;
}

int ParseString::GetValuePositions(CUIntArray & starts, CUIntArray & ends)
{
  int const count = GetValueCount();
  starts.SetSize(count);
  ends.SetSize(count);
  if (count == 0) return 0;
  int const offset = m_nOffset;
  int const tokenStart = m_nTokenStart;
  for (int i = 0; i < count; ++i) {
    DiscardDelimeters();
    starts[i] = static_cast<UINT>(m_nOffset);
    DiscardNextToken();
    ends[i] = static_cast<UINT>(m_nOffset - 1);
  }
  m_nOffset = offset;
  m_nTokenStart = tokenStart;
  return 1;
}

int ParseString::GetValueStrings(CStringArray & out, CUIntArray const & starts, CUIntArray const & ends)
{
  bool const hasValues = GetValueCount() != 0;
  out.SetSize(hasValues ? starts.GetSize() : 0);
  std::string_view const text = View();
  for (int i = 0; i < out.GetSize(); ++i) {
    size_t const start = starts[i];
    int const length = static_cast<int>(ends[i] + 1 - starts[i]);
    out[i] = length > 0 && start < text.size() ? CString(text.substr(start, static_cast<size_t>(length))) : CString();
  }
  return hasText(out);
}

int ParseString::GetValueStrings(CStringArray & out, int count)
{
  bool const hasValues = GetValueCount() != 0 && count > 0;
  out.SetSize(hasValues ? count : 0);
  std::string_view const text = View();
  size_t cut = 0;
  for (int i = 0; i < out.GetSize(); ++i) {
    size_t end = cut;
    while (end < text.size() && !IsDelimeter(text[end])) ++end;
    out[i] = cut < text.size() ? CString(text.substr(cut, end - cut)) : CString();
    cut = end + 1;
  }
  return hasText(out);
}
