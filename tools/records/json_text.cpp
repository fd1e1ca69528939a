// Values as JSON text, and its layout in lines.

#include "tools/records/json_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "tools/shown_text.h"

namespace {

constexpr size_t pieceBytes = 0x10000;

// How many bytes may stand in a JSON text as they are.
size_t plainBytes(std::string_view utf8)
{
  size_t at = 0;
  while (at < utf8.size()) {
    char const c = utf8[at];
    if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
      ++at;
    } else {
      size_t const bytes =
          static_cast<unsigned char>(c) < 0x80 || ControlBytes(utf8.substr(at)) > 0 ? 0 : CharacterBytes(utf8.substr(at));
      if (bytes == 0) break;
      at += bytes;
    }
  }
  return at;
}

// From the shortest digits and the exponent of ten: plain from 1e-4 to below 1e15 and with a point, else with the exponent.
void appendPlain(std::string & text, std::string_view digits, int exponent)
{
  if (exponent < 0) {
    text += "0.";
    text.append(static_cast<size_t>(-exponent - 1), '0');
    text += digits;
    return;
  }
  size_t const whole = static_cast<size_t>(exponent) + 1;
  text += digits.substr(0, whole);
  if (digits.size() < whole) text.append(whole - digits.size(), '0');
  text += '.';
  text += digits.size() > whole ? digits.substr(whole) : "0";
}

template <class Real>
void appendReal(std::string & text, Real number)
{
  constexpr int lowestPlain = -4;
  constexpr int highestPlain = 15;
  char shortest[40];
  char const * const end = std::to_chars(shortest, shortest + sizeof shortest, number, std::chars_format::scientific).ptr;
  char * const mark = std::find(shortest, shortest + sizeof shortest, 'e');
  int exponent = 0;
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
  if (exponent < lowestPlain || exponent >= highestPlain) {
    text.append(shortest, static_cast<size_t>(end - shortest));
    return;
  }
  char * first = shortest;
  if (*first == '-') text += *first++;
  if (first[1] == '.') {
    first[1] = first[0];
    ++first;
  }
  appendPlain(text, {first, static_cast<size_t>(mark - first)}, exponent);
}

}  // namespace

void JsonText::Separate()
{
  if (m_bComma) m_Text += ',';
  m_bComma = true;
}

void JsonText::Begin(char bracket)
{
  Separate();
  m_Text += bracket;
  m_bComma = false;
}

void JsonText::End(char bracket)
{
  m_Text += bracket;
  m_bComma = true;
}

JsonText & JsonText::Key(std::string_view name)
{
  Separate();
  m_Text += '"';
  m_Text += name;
  m_Text += "\":";
  m_bComma = false;
  return *this;
}

void JsonText::Value(std::string_view json)
{
  Separate();
  m_Text += json;
}

void JsonText::Whole(long long number)
{
  char text[24];
  Value({text, static_cast<size_t>(std::to_chars(text, text + sizeof text, number).ptr - text)});
}

void JsonText::Text(std::string_view utf8)
{
  Separate();
  Quote(utf8);
}

// Plain characters are copied in runs.
void JsonText::Quote(std::string_view utf8)
{
  m_Text += '"';
  while (!utf8.empty()) {
    size_t const plain = plainBytes(utf8);
    m_Text += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) break;
    size_t const control = ControlBytes(utf8);
    if (control > 0) {
      AppendJsonControl(m_Text, utf8.substr(0, control));
    } else {
      m_Text += '\\';
      m_Text += utf8.front();
    }
    utf8.remove_prefix(std::max<size_t>(control, 1));
  }
  m_Text += '"';
}

template <class Number>
void JsonText::PutReal(Number number)
{
  if (std::isfinite(number)) {
    Separate();
    appendReal(m_Text, number);
  } else if (!std::isnan(number)) {
    Text(number > 0 ? "inf" : "-inf");
  } else if constexpr (sizeof number == sizeof(uint32_t)) {
    Text(fmt::format("nan:{:08x}", std::bit_cast<uint32_t>(number)));
  } else {
    Text(fmt::format("nan:{:016x}", std::bit_cast<uint64_t>(number)));
  }
}

void JsonText::Real(float number)
{
  PutReal(number);
}

void JsonText::Real(double number)
{
  PutReal(number);
}

void JsonIndenter::NewLine()
{
  m_Out += '\n';
  m_Out.append(m_nLevel * m_nStep, ' ');
  if (m_Out.size() < pieceBytes) return;
  m_pfnPass(m_Out);
  m_Out.clear();
}

// Up to the quote that ends the text, or the piece's end: what comes behind it.
size_t JsonIndenter::CopyText(std::string_view json, size_t at)
{
  size_t end = at;
  for (; end < json.size() && m_bInText; ++end) {
    m_bInText = m_bEscaped || json[end] != '"';
    m_bEscaped = !m_bEscaped && json[end] == '\\';
  }
  m_Out += json.substr(at, end - at);
  return end;
}

void JsonIndenter::Write(std::string_view json)
{
  for (size_t i = 0; i < json.size();) {
    if (m_bInText) {
      i = CopyText(json, i);
      continue;
    }
    char const c = json[i++];
    bool const ends = c == '}' || c == ']';
    if (ends) --m_nLevel;
    if (m_bOpened != ends) NewLine();
    m_bOpened = c == '{' || c == '[';
    m_Out += c;
    if (m_bOpened) ++m_nLevel;
    if (c == ':') m_Out += ' ';
    if (c == ',') NewLine();
    m_bInText = c == '"';
  }
}

void JsonIndenter::Finish()
{
  m_Out += '\n';
  m_pfnPass(m_Out);
  m_Out.clear();
}
