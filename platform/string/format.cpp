// The format engine: walks a format, takes the arguments, from a va_list or from a span of typed ones, and lays out
// integers and texts. Real numbers are laid out in format_real.cpp.
#include "platform/string/format_internal.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <iterator>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/format.h>

namespace zp {

namespace {

// A decimal number at p, cut at the largest int.
int readCount(char const *& p)
{
  int64_t value = 0;
  for (; IsDigit(*p); ++p) value = std::min<int64_t>(value * 10 + (*p - '0'), INT_MAX);
  return static_cast<int>(value);
}

void readFlags(FormatField & field, char const *& p)
{
  for (;; ++p) {
    switch (*p) {
      case '-':
        field.left = true;
        break;
      case '+':
        field.plus = true;
        break;
      case ' ':
        field.space = true;
        break;
      case '#':
        field.alternate = true;
        break;
      case '0':
        field.zero = true;
        break;
      default:
        return;
    }
  }
}

LengthMark readLength(char const *& p)
{
  auto const take = [&p](std::string_view mark) {
    if (std::strncmp(p, mark.data(), mark.size()) != 0) return false;
    p += mark.size();
    return true;
  };
  if (take("hh")) return LengthMark::Char;
  if (take("h")) return LengthMark::Short;
  if (take("ll") || take("I64")) return LengthMark::LongLong;
  if (take("l")) return LengthMark::Long;
  return LengthMark::None;
}

bool isIntegerConversion(char c)
{
  return c != 0 && std::strchr("diuxXo", c) != nullptr;
}

bool isRealConversion(char c)
{
  return c != 0 && std::strchr("eEfFgG", c) != nullptr;
}

bool isSignedConversion(char c)
{
  return c == 'd' || c == 'i';
}

// Wide characters and texts have no place in single-byte output.
bool isKnown(char c, LengthMark length)
{
  if (c == 'c' || c == 's') return length != LengthMark::Long && length != LengthMark::LongLong;
  return c == '%' || isIntegerConversion(c) || isRealConversion(c);
}

// The value as its conversion sees it: cut to the width of the length mark, signed or not.
void appendCut(std::string & out, FormatField const & field, int64_t value)
{
  bool const isSigned = isSignedConversion(field.conversion);
  switch (field.length) {
    case LengthMark::Char:
      value = isSigned ? int64_t{static_cast<int8_t>(value)} : static_cast<uint8_t>(value);
      break;
    case LengthMark::Short:
      value = isSigned ? int64_t{static_cast<int16_t>(value)} : static_cast<uint16_t>(value);
      break;
    case LengthMark::None:
    case LengthMark::Long:
      value = isSigned ? int64_t{static_cast<int32_t>(value)} : static_cast<uint32_t>(value);
      break;
    case LengthMark::LongLong:
      break;
  }
  bool const negative = isSigned && value < 0;
  auto const bits = static_cast<uint64_t>(value);
  AppendInteger(out, field, negative ? uint64_t{0} - bits : bits, negative);
}

void appendCharacter(std::string & out, FormatField const & field, int value)
{
  char const c = static_cast<char>(value);
  AppendPadded(out, field, {.body = {&c, 1}}, false);
}

// At most precision characters of a text that need not end before that.
std::string_view cutText(char const * text, int precision)
{
  if (text == nullptr) return precision < 0 || precision >= 6 ? "(null)" : "";
  if (precision < 0) return text;
  return {text, strnlen(text, static_cast<size_t>(precision))};
}

// Arguments of a trusted format, at the widths of the host's calls.
class VaSource {
 public:
  explicit VaSource(va_list args) { va_copy(m_Args, args); }
  ~VaSource() { va_end(m_Args); }
  VaSource(VaSource const &) = delete;
  VaSource & operator=(VaSource const &) = delete;

  bool TakeCount(int & count)
  {
    count = va_arg(m_Args, int);
    return true;
  }

  void Skip() {}

  bool Append(std::string & out, FormatField const & field)
  {
    if (field.conversion == 's') {
      AppendText(out, field, cutText(va_arg(m_Args, char const *), field.precision));
    } else if (field.conversion == 'c') {
      appendCharacter(out, field, va_arg(m_Args, int));
    } else if (isRealConversion(field.conversion)) {
      AppendReal(out, field, va_arg(m_Args, double));
    } else {
      appendCut(out, field, takeInteger(field.length));
    }
    return true;
  }

 private:
  int64_t takeInteger(LengthMark length)
  {
    if (length == LengthMark::LongLong) return va_arg(m_Args, long long);
    if (length == LengthMark::Long) return va_arg(m_Args, long);
    return va_arg(m_Args, int);
  }

  va_list m_Args;
};

// Typed arguments of a format that isn't trusted. Each conversion has its place, also one that doesn't fit what stands there.
class SpanSource {
 public:
  explicit SpanSource(std::span<FormatArg const> args) : m_Args(args) {}

  bool TakeCount(int & count)
  {
    FormatArg const * arg = take(FormatArg::Kind::Integer);
    if (arg != nullptr) count = arg->GetInteger();
    return arg != nullptr;
  }

  void Skip() { ++m_Next; }

  bool Append(std::string & out, FormatField const & field)
  {
    bool const isReal = isRealConversion(field.conversion);
    bool const isText = field.conversion == 's';
    FormatArg const * arg = take(isText ? FormatArg::Kind::Text : isReal ? FormatArg::Kind::Real : FormatArg::Kind::Integer);
    if (arg == nullptr) return false;
    if (isText) {
      AppendText(out, field, cutText(arg->GetText(), field.precision));
    } else if (isReal) {
      AppendReal(out, field, arg->GetReal());
    } else if (field.conversion == 'c') {
      appendCharacter(out, field, arg->GetInteger());
    } else {
      int32_t const value = arg->GetInteger();
      appendCut(out, field, isSignedConversion(field.conversion) ? int64_t{value} : static_cast<uint32_t>(value));
    }
    return true;
  }

 private:
  FormatArg const * take(FormatArg::Kind kind)
  {
    if (m_Next >= m_Args.size()) return nullptr;
    FormatArg const & arg = m_Args[m_Next++];
    return arg.GetKind() == kind ? &arg : nullptr;
  }

  std::span<FormatArg const> m_Args;
  size_t m_Next = 0;
};

// A width or a precision that isn't there takes the value's place along, so that the conversions behind it keep theirs.
template <class Source>
bool appendConversion(std::string & out, FormatField & field, Source & source)
{
  if (field.conversion == 0) return false;
  if (field.conversion == '%') {
    out += '%';
    return true;
  }
  int width = field.width;
  int precision = field.precision;
  bool const widthFits = !field.widthIsArgument || source.TakeCount(width);
  bool const precisionFits = !field.precisionIsArgument || source.TakeCount(precision);
  if (!widthFits || !precisionFits) {
    source.Skip();
    return false;
  }
  SetFormatWidth(field, width);
  SetFormatPrecision(field, precision);
  return source.Append(out, field);
}

template <class Source>
void formatFrom(std::string & out, char const * format, Source & source)
{
  for (char const * p = format; *p != 0;) {
    char const * const plain = p;
    while (*p != 0 && *p != '%') ++p;
    out.append(plain, p);
    if (*p == 0) return;
    char const * const start = p++;
    FormatField field = ReadFormatField(p);
    if (!appendConversion(out, field, source)) out.append(start, p);
  }
}

}  // namespace

FormatField ReadFormatField(char const *& p)
{
  FormatField field;
  readFlags(field, p);
  field.widthIsArgument = *p == '*';
  if (field.widthIsArgument) {
    ++p;
  } else {
    SetFormatWidth(field, readCount(p));
  }
  if (*p == '.') {
    field.precisionIsArgument = *++p == '*';
    if (field.precisionIsArgument) {
      ++p;
    } else {
      SetFormatPrecision(field, readCount(p));
    }
  }
  field.length = readLength(p);
  if (isKnown(*p, field.length)) field.conversion = *p;
  if (*p != 0) ++p;
  return field;
}

void SetFormatWidth(FormatField & field, int width)
{
  if (width < 0) {
    field.left = true;
    width = width == INT_MIN ? INT_MAX : -width;
  }
  field.width = std::min(width, maxFormatWidth);
}

void SetFormatPrecision(FormatField & field, int precision)
{
  field.precision = precision < 0 ? -1 : precision;
}

void AppendPadded(std::string & out, FormatField const & field, FormatPieces const & pieces, bool zeros)
{
  size_t const length =
      pieces.sign.size() + pieces.zerosInFront + pieces.body.size() + pieces.zerosBehind + pieces.exponent.size();
  size_t const width = static_cast<size_t>(field.width);
  size_t const padding = width > length ? width - length : 0;
  if (!field.left && !zeros) out.append(padding, ' ');
  out.append(pieces.sign);
  out.append(pieces.zerosInFront + (!field.left && zeros ? padding : 0), '0');
  out.append(pieces.body);
  out.append(pieces.zerosBehind, '0');
  out.append(pieces.exponent);
  if (field.left) out.append(padding, ' ');
}

void AppendText(std::string & out, FormatField const & field, std::string_view text)
{
  AppendPadded(out, field, {.body = text}, false);
}

void AppendInteger(std::string & out, FormatField const & field, uint64_t magnitude, bool negative)
{
  bool const isSigned = isSignedConversion(field.conversion);
  bool const isHex = field.conversion == 'x' || field.conversion == 'X';
  int const base = isHex ? 16 : field.conversion == 'o' ? 8 : 10;

  char digits[24];
  char * const end = magnitude == 0 ? digits : std::to_chars(digits, std::end(digits), magnitude, base).ptr;
  if (field.conversion == 'X') std::transform(digits, end, digits, [](char c) { return ToUpper(c); });

  FormatPieces pieces{.body = {digits, static_cast<size_t>(end - digits)}};
  size_t const wanted = field.precision < 0 ? 1 : static_cast<size_t>(std::min(field.precision, maxFormatWidth));
  if (wanted > pieces.body.size()) pieces.zerosInFront = wanted - pieces.body.size();
  if (base == 8 && field.alternate && pieces.zerosInFront == 0) pieces.zerosInFront = 1;
  if (isSigned) pieces.sign = negative ? "-" : field.plus ? "+" : field.space ? " " : "";
  if (isHex && field.alternate && magnitude != 0) pieces.sign = field.conversion == 'x' ? "0x" : "0X";
  AppendPadded(out, field, pieces, field.zero && field.precision < 0);
}

void FormatInto(std::string & out, char const * format, va_list args)
{
  VaSource source(args);
  formatFrom(out, format, source);
}

void FormatInto(std::string & out, char const * format, std::span<FormatArg const> args)
{
  SpanSource source(args);
  formatFrom(out, format, source);
}

}  // namespace zp
