// Values as JSON text, with or without lines.

#include "tools/records/json_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>
#include <zpbase/platform/bytes.h>

#include "tools/shown_text.h"

namespace {

constexpr size_t passedBytes = 0x10000;

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
char * putPlain(char * out, std::string_view digits, int exponent)
{
  if (exponent < 0) {
    out = std::copy_n("0.0000", 1 - exponent, out);
    return std::copy(digits.begin(), digits.end(), out);
  }
  size_t const whole = static_cast<size_t>(exponent) + 1;
  size_t const shown = std::min(whole, digits.size());
  out = std::copy_n(digits.begin(), shown, out);
  out = std::fill_n(out, whole - shown, '0');
  *out++ = '.';
  if (shown == digits.size()) *out++ = '0';
  return std::copy(digits.begin() + shown, digits.end(), out);
}

constexpr size_t mostRealBytes = 40;

template <class Real>
char * putReal(char * out, Real number)
{
  constexpr int lowestPlain = -4;
  constexpr int highestPlain = 15;
  char shortest[mostRealBytes];
  char const * const end = std::to_chars(shortest, shortest + sizeof shortest, number, std::chars_format::scientific).ptr;
  char * const mark = std::find(shortest, shortest + sizeof shortest, 'e');
  int exponent = 0;
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
  if (exponent < lowestPlain || exponent >= highestPlain) return std::copy<char const *>(shortest, end, out);
  char * first = shortest;
  if (*first == '-') *out++ = *first++;
  if (first[1] == '.') {
    first[1] = first[0];
    ++first;
  }
  return putPlain(out, {first, static_cast<size_t>(mark - first)}, exponent);
}

// The text behind its first quote; plain characters are copied in runs.
void appendQuoted(std::string & json, std::string_view utf8)
{
  while (!utf8.empty()) {
    size_t const plain = plainBytes(utf8);
    json += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) break;
    size_t const control = ControlBytes(utf8);
    if (control > 0) {
      AppendJsonControl(json, utf8.substr(0, control));
    } else {
      json += '\\';
      json += utf8.front();
    }
    utf8.remove_prefix(std::max<size_t>(control, 1));
  }
  json += '"';
}

}  // namespace

// Where count characters of a value or of a key go, behind what stands between it and the former one.
char * JsonText::Room(size_t count)
{
  PassOn();
  bool const isNext = m_Place == Place::Value;
  bool const isLine = m_nStep != noLines && m_Place != Place::Key;
  size_t const before = m_Text.size();
  size_t const blanks = isLine ? m_nLevel * static_cast<size_t>(m_nStep) : 0;
  m_Text.append((isNext ? 1U : 0U) + (isLine ? 1U : 0U) + blanks + count, ' ');
  char * at = &m_Text[before];
  if (isNext) *at++ = ',';
  if (isLine) *at++ = '\n';
  m_Place = Place::Value;
  return at + blanks;
}

JsonText & JsonText::Begin(char bracket)
{
  *Room(1) = bracket;
  ++m_nLevel;
  m_Place = Place::Opened;
  return *this;
}

void JsonText::PassOn()
{
  if (!m_Pass || m_Text.size() < passedBytes) return;
  m_Pass(m_Text);
  m_Text.clear();
}

void JsonText::End(char bracket)
{
  PassOn();
  --m_nLevel;
  if (m_Place == Place::Value && m_nStep != noLines) {
    m_Text += '\n';
    m_Text.append(m_nLevel * static_cast<size_t>(m_nStep), ' ');
  }
  m_Text += bracket;
  m_Place = Place::Value;
}

JsonText & JsonText::Key(std::string_view name)
{
  constexpr size_t marks = 3;
  char * at = Room(name.size() + marks + (m_nStep != noLines ? 1U : 0U));
  *at++ = '"';
  at = std::copy(name.begin(), name.end(), at);
  *at++ = '"';
  *at = ':';
  m_Place = Place::Key;
  return *this;
}

void JsonText::Put(std::string_view value)
{
  std::copy(value.begin(), value.end(), Room(value.size()));
}

void JsonText::Null()
{
  Put("null");
}

void JsonText::Whole(long long number)
{
  char text[24];
  Put({text, static_cast<size_t>(std::to_chars(text, text + sizeof text, number).ptr - text)});
}

void JsonText::Text(std::string_view utf8)
{
  *Room(1) = '"';
  appendQuoted(m_Text, utf8);
}

void JsonText::Hex(std::string_view bytes)
{
  *Room(1) = '"';
  zp::AppendHex(m_Text, bytes);
  m_Text += '"';
}

template <class Number>
void JsonText::PutReal(Number number)
{
  if (std::isfinite(number)) {
    char text[mostRealBytes];
    Put({text, static_cast<size_t>(putReal(text, number) - text)});
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
