// One pass over the bytes, which gathers what is told once the element is known to be whole.

#include "servers/embedded/plain_xml.h"

#include <algorithm>
#include <array>

#include <zpbase/platform/ascii.h>

namespace embedded {
namespace {

constexpr size_t mostOpen = 8;  // elements in elements

// What a character may be part of.
constexpr unsigned char blank = 1;
constexpr unsigned char nameStart = 2;
constexpr unsigned char nameRest = 4;
constexpr unsigned char value = 8;
constexpr unsigned char text = 16;

constexpr unsigned char kindsOf(char c)
{
  unsigned char kinds = 0;
  if (c == ' ' || c == '\t' || c == '\n') kinds |= blank | text;
  if (zp::IsLetter(c) || c == '_') kinds |= nameStart;
  if (zp::IsLetter(c) || zp::IsDigit(c) || c == '_' || c == '-' || c == '.') kinds |= nameRest;
  bool const isShown = c >= ' ' && c <= '~' && c != '<' && c != '&';
  if (isShown && c != '"') kinds |= value;
  if (isShown && c != ']') kinds |= text;  // "]]>" ends a section
  return kinds;
}

constexpr auto kinds = [] {
  std::array<unsigned char, 256> table = {};
  for (size_t i = 0; i < table.size(); ++i) table[i] = kindsOf(static_cast<char>(i));
  return table;
}();

bool isOf(char c, unsigned char kind)
{
  return (kinds[static_cast<unsigned char>(c)] & kind) != 0;
}

}  // namespace

PlainElement::Found PlainElement::Scan(std::span<char> bytes)
{
  m_pBegin = m_pAt = bytes.data();
  m_pEnd = m_pBegin + bytes.size();
  m_Steps.clear();
  m_Open.clear();
  m_Attributes.clear();
  m_Ends.clear();
  if (ScanAll()) m_Found = Found::Whole;
  return m_Found;
}

bool PlainElement::ScanAll()
{
  if (std::string_view const blanks = TakeRun(blank); !blanks.empty()) m_Steps.push_back({blanks, 0, Kind::Text});
  do {
    if (!ScanTag()) return false;
    if (!m_Open.empty()) ScanText();
  } while (!m_Open.empty());
  return true;
}

bool PlainElement::ScanTag()
{
  if (!Take('<')) return false;
  return IsAt('/') ? ScanEnd() : ScanStart();
}

bool PlainElement::ScanStart()
{
  if (m_pAt == m_pEnd || !isOf(*m_pAt, nameStart) || m_Open.size() == mostOpen) return Fail();
  std::string_view const name = TakeRun(nameRest);
  m_Steps.push_back({name, m_Attributes.size(), Kind::Start});
  if (!ScanAttributes()) return false;
  if (!IsAt('/')) {
    m_Open.push_back(name);
    return Take('>');
  }
  ++m_pAt;
  m_Steps.push_back({{}, 0, Kind::End});
  return Take('>');
}

bool PlainElement::ScanAttributes()
{
  m_Names.clear();
  while (!TakeRun(blank).empty() && !IsAt('/') && !IsAt('>')) {
    if (!ScanAttribute()) return false;
  }
  m_Attributes.push_back(nullptr);
  return true;
}

// A declaration of a namespace, and a name that is there already, are left to expat.
bool PlainElement::ScanAttribute()
{
  if (m_pAt == m_pEnd || !isOf(*m_pAt, nameStart)) return Fail();
  std::string_view const name = TakeRun(nameRest);
  if (name == "xmlns" || std::find(m_Names.begin(), m_Names.end(), name) != m_Names.end()) {
    m_Found = Found::Other;
    return false;
  }
  m_Names.push_back(name);
  m_Attributes.push_back(name.data());
  m_Ends.push_back(m_pAt);
  if (!Take('=') || !Take('"')) return false;
  m_Attributes.push_back(m_pAt);
  TakeRun(value);
  m_Ends.push_back(m_pAt);
  return Take('"');
}

bool PlainElement::ScanEnd()
{
  ++m_pAt;
  std::string_view const name = TakeRun(nameRest);
  if (m_pAt == m_pEnd || m_Open.empty() || name != m_Open.back()) return Fail();
  m_Open.pop_back();
  m_Steps.push_back({{}, 0, Kind::End});
  TakeRun(blank);
  return Take('>');
}

void PlainElement::ScanText()
{
  if (std::string_view const run = TakeRun(text); !run.empty()) m_Steps.push_back({run, 0, Kind::Text});
}

std::string_view PlainElement::TakeRun(unsigned char kind)
{
  char const * const begin = m_pAt;
  while (m_pAt != m_pEnd && isOf(*m_pAt, kind)) ++m_pAt;
  return {begin, static_cast<size_t>(m_pAt - begin)};
}

bool PlainElement::Take(char c)
{
  if (!IsAt(c)) return Fail();
  ++m_pAt;
  return true;
}

bool PlainElement::Fail()
{
  m_Found = m_pAt == m_pEnd ? Found::Cut : Found::Other;
  return false;
}

}  // namespace embedded
