// Telling encodings and delimiters.

#include "tools/records/table_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/shown_text.h"
#include "tools/text_marks.h"

namespace {

constexpr size_t longestCharacter = 4;

bool isAscii(char c)
{
  return static_cast<unsigned char>(c) < 0x80;
}

bool beginsPair(char16_t unit)
{
  return (unit & 0xFC00) == 0xD800;
}

}  // namespace

std::string_view TableText::Take(std::string_view bytes)
{
  bool const isEnd = bytes.empty();
  std::string const held = std::move(m_Left).append(bytes);
  bytes = held;
  m_Utf8.clear();
  if (m_Form == Form::Begin) bytes.remove_prefix(TakeMark(bytes));
  if (m_Form == Form::Ascii) bytes.remove_prefix(TakeAscii(bytes, isEnd));
  if (m_Form == Form::WideLittle || m_Form == Form::WideBig) bytes.remove_prefix(TakeWide(bytes, isEnd));
  if (m_Form == Form::Windows) m_Utf8 += zp::TextToUtf8(std::exchange(bytes, {}));
  if (m_Form == Form::Utf8) m_Utf8 += std::exchange(bytes, {});
  m_Left = bytes;
  return m_Utf8;
}

size_t TableText::TakeMark(std::string_view bytes)
{
  m_Form = Form::Ascii;
  if (bytes.starts_with(wideMark)) m_Form = Form::WideLittle;
  if (bytes.starts_with(turnedWideMark)) m_Form = Form::WideBig;
  if (m_Form != Form::Ascii) return wideMark.size();
  if (bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0'))
    throw Failure(fmt::format("{}: is UTF-16 without its mark; save it as UTF-8", m_Name));
  if (!bytes.starts_with(utf8Mark)) return 0;
  m_Form = Form::Utf8;
  return utf8Mark.size();
}

size_t TableText::TakeAscii(std::string_view bytes, bool isEnd)
{
  auto const end = std::find_if_not(bytes.begin(), bytes.end(), isAscii);
  auto const count = static_cast<size_t>(end - bytes.begin());
  m_Utf8 = bytes.substr(0, count);
  bytes.remove_prefix(count);
  if (!bytes.empty() && (isEnd || bytes.size() >= longestCharacter))
    m_Form = CharacterBytes(bytes) > 0 ? Form::Utf8 : Form::Windows;
  return count;
}

size_t TableText::TakeWide(std::string_view bytes, bool isEnd)
{
  if (isEnd && bytes.size() % 2 != 0) throw Failure(fmt::format("{}: ends within a character of UTF-16", m_Name));
  size_t const high = m_Form == Form::WideBig ? 0 : 1;
  std::u16string wide(bytes.size() / 2, u'\0');
  for (size_t i = 0; i < wide.size(); ++i) {
    auto const byte = [&](size_t which) { return static_cast<unsigned char>(bytes[2 * i + which]); };
    wide[i] = static_cast<char16_t>(byte(high) << 8 | byte(1 - high));
  }
  if (!isEnd && !wide.empty() && beginsPair(wide.back())) wide.pop_back();
  zp::AppendUtf8(m_Utf8, wide);
  return 2 * wide.size();
}

char DelimiterOf(std::string_view head)
{
  constexpr char delimiters[] = {';', '\t', ','};
  size_t counts[std::size(delimiters)] = {};
  bool isQuoted = false;
  for (char const c : head) {
    isQuoted ^= c == '"';
    for (size_t i = 0; !isQuoted && i < std::size(delimiters); ++i) counts[i] += c == delimiters[i];
  }
  auto const most = std::max_element(std::begin(counts), std::end(counts));
  return *most == 0 ? ',' : delimiters[most - counts];
}

std::string WithDecimalPoint(std::string text)
{
  size_t const comma = text.find(',');
  bool const isNumber = comma != std::string::npos && text.find_first_not_of("0123456789+-,eE") == std::string::npos;
  if (isNumber && text.find(',', comma + 1) == std::string::npos) text[comma] = '.';
  return text;
}
