// Writing and reading single values.

#include "tools/sheet/cell_text.h"

#include <charconv>
#include <cmath>

#include <fmt/format.h>
#include <zpbase/platform/ascii.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

#include "tools/records/json_text.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr std::string_view largestWhole = "9007199254740992";  // 2^53: a double holds all integers up to it

void appendNumber(std::string & text, double number)
{
  char digits[32];
  // With an exponent beyond the integers that a double holds, so that the text isn't taken for one of them.
  constexpr double largest = 9007199254740992.0;  // 2^53
  char * const limit = digits + sizeof digits;
  text.append(digits, std::fabs(number) > largest ? std::to_chars(digits, limit, number, std::chars_format::scientific).ptr
                                                  : std::to_chars(digits, limit, number).ptr);
}

// Readers of JSON take "-0" for an integer, which has no sign there.
void appendJsonNumber(std::string & json, double number)
{
  appendNumber(json, number);
  if (number == 0.0 && std::signbit(number)) json += ".0";
}

std::string errorText(HRESULT code)
{
  int const number = code - zp::cellErrorBase;
  char const * const text = zp::CellErrorText(number);
  return text != nullptr ? text : fmt::format("#ERROR {:08X}", static_cast<unsigned int>(code));
}

// Other servers may send other types: each is a number or a text.
COleVariant inPlainType(VARIANT const & value)
{
  COleVariant plain(value);
  try {
    plain.ChangeType(VT_R8);
  } catch (COleException * refused) {
    zp::ExceptionGuard const guard(refused);
    plain.ChangeType(VT_BSTR);
  }
  return plain;
}

bool isPlainText(std::string_view text)
{
  return text.find_first_of(",\"\r\n") == std::string_view::npos && !text.starts_with('#') && !text.starts_with(' ') &&
         !text.starts_with('\t') && !text.ends_with(' ') && !text.ends_with('\t');
}

void appendCsvText(std::string & line, BSTR text)
{
  size_t const begin = line.size();
  zp::AppendUtf8(line, zp::ViewOf(text));
  if (isPlainText(std::string_view(line).substr(begin))) return;
  std::string const utf8 = line.substr(begin);
  line.resize(begin);
  line += '"';
  for (char const c : utf8) line.append(c == '"' ? 2 : 1, c);
  line += '"';
}

size_t countDigits(std::string_view & rest)
{
  size_t count = 0;
  while (count < rest.size() && zp::IsDigit(rest[count])) ++count;
  rest.remove_prefix(count);
  return count;
}

bool take(std::string_view & rest, std::string_view any)
{
  if (rest.empty() || any.find(rest.front()) == std::string_view::npos) return false;
  rest.remove_prefix(1);
  return true;
}

// -?(0|[1-9]d*)(.d+)?([eE][+-]?d+)?
bool isNumberText(std::string_view text, bool & isWhole)
{
  take(text, "-");
  bool const leadsWithZero = text.starts_with('0');
  size_t const digits = countDigits(text);
  if (digits == 0 || (leadsWithZero && digits > 1)) return false;
  isWhole = text.empty();
  if (take(text, ".") && countDigits(text) == 0) return false;
  if (take(text, "eE")) {
    take(text, "+-");
    if (countDigits(text) == 0) return false;
  }
  return text.empty();
}

// By its digits: as a double it may have been rounded down to the largest one.
bool isBeyondWhole(std::string_view text)
{
  take(text, "-");
  return text.size() != largestWhole.size() ? text.size() > largestWhole.size() : text > largestWhole;
}

bool readNumber(std::string_view text, double & number)
{
  bool isWhole = false;
  if (!isNumberText(text, isWhole) || (isWhole && isBeyondWhole(text))) return false;
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

}  // namespace

void AppendCsvCell(std::string & line, VARIANT const & value)
{
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return;
    case VT_R8:
      return appendNumber(line, value.dblVal);
    case VT_BSTR:
      return appendCsvText(line, value.bstrVal);
    case VT_BOOL:
      line += value.boolVal != VARIANT_FALSE ? "TRUE" : "FALSE";
      return;
    case VT_ERROR: {
      bool const isComment = line.empty() || line.ends_with('\n');  // unless it is quoted
      line += isComment ? '"' + errorText(value.scode) + '"' : errorText(value.scode);
      return;
    }
    default:
      return AppendCsvCell(line, inPlainType(value));
  }
}

void AppendJsonCell(std::string & json, VARIANT const & value)
{
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      json += "null";
      return;
    case VT_R8:
      if (std::isfinite(value.dblVal)) return appendJsonNumber(json, value.dblVal);
      return JsonText(json).Real(value.dblVal);
    case VT_BSTR: {
      std::string text;
      zp::AppendUtf8(text, zp::ViewOf(value.bstrVal));
      return JsonText(json).Text(text);
    }
    case VT_BOOL:
      json += value.boolVal != VARIANT_FALSE ? "true" : "false";
      return;
    case VT_ERROR:
      json += "{\"error\":\"" + errorText(value.scode) + "\"}";
      return;
    default:
      return AppendJsonCell(json, inPlainType(value));
  }
}

COleVariant ReadCsvCell(std::string_view field)
{
  if (field.empty()) return {};
  double number = 0.0;
  if (readNumber(field, number)) return COleVariant(number);
  if (field == "TRUE" || field == "FALSE") return COleVariant(static_cast<short>(field == "TRUE"), VT_BOOL);
  int const error = zp::CellErrorNumber(field);
  return error != 0 ? COleVariant(zp::cellErrorBase + error, VT_ERROR) : TextVariant(field);
}
