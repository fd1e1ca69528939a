// The format engine: walks a format, takes the arguments, from a va_list or from a span of typed ones, and lays out
// integers and texts. Real numbers are laid out in format_real.cpp.
#include "platform/format_internal.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <iterator>

#include <zpbase/platform/string.h>

namespace zp {

namespace {

bool isDigit(char c)
{
  return c >= '0' && c <= '9';
}

// A decimal number at p, cut at the largest int.
int readCount(char const *& p)
{
  int64_t value = 0;
  for (; isDigit(*p); ++p) value = std::min<int64_t>(value * 10 + (*p - '0'), INT_MAX);
  return static_cast<int>(value);
}

void readFlags(FormatSpec & spec, char const *& p)
{
  for (;; ++p) {
    switch (*p) {
      case '-':
        spec.left = true;
        break;
      case '+':
        spec.plus = true;
        break;
      case ' ':
        spec.space = true;
        break;
      case '#':
        spec.alternate = true;
        break;
      case '0':
        spec.zero = true;
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
void appendCut(std::string & out, FormatSpec const & spec, int64_t value)
{
  bool const isSigned = isSignedConversion(spec.conversion);
  switch (spec.length) {
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
  AppendInteger(out, spec, negative ? uint64_t{0} - bits : bits, negative);
}

void appendCharacter(std::string & out, FormatSpec const & spec, int value)
{
  char const c = static_cast<char>(value);
  AppendPadded(out, spec, {.body = {&c, 1}}, false);
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

  bool Append(std::string & out, FormatSpec const & spec)
  {
    if (spec.conversion == 's') {
      AppendText(out, spec, cutText(va_arg(m_Args, char const *), spec.precision));
    } else if (spec.conversion == 'c') {
      appendCharacter(out, spec, va_arg(m_Args, int));
    } else if (isRealConversion(spec.conversion)) {
      AppendReal(out, spec, va_arg(m_Args, double));
    } else {
      appendCut(out, spec, takeInteger(spec.length));
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

  bool Append(std::string & out, FormatSpec const & spec)
  {
    bool const isReal = isRealConversion(spec.conversion);
    bool const isText = spec.conversion == 's';
    FormatArg const * arg = take(isText ? FormatArg::Kind::Text : isReal ? FormatArg::Kind::Real : FormatArg::Kind::Integer);
    if (arg == nullptr) return false;
    if (isText) {
      AppendText(out, spec, cutText(arg->GetText(), spec.precision));
    } else if (isReal) {
      AppendReal(out, spec, arg->GetReal());
    } else if (spec.conversion == 'c') {
      appendCharacter(out, spec, arg->GetInteger());
    } else {
      int32_t const value = arg->GetInteger();
      appendCut(out, spec, isSignedConversion(spec.conversion) ? int64_t{value} : static_cast<uint32_t>(value));
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

template <class Source>
bool appendConversion(std::string & out, FormatSpec & spec, Source & source)
{
  if (spec.conversion == 0) return false;
  if (spec.conversion == '%') {
    out += '%';
    return true;
  }
  int width = spec.width;
  int precision = spec.precision;
  bool const widthFits = !spec.widthIsArgument || source.TakeCount(width);
  bool const precisionFits = !spec.precisionIsArgument || source.TakeCount(precision);
  if (!widthFits || !precisionFits) {
    source.Skip();
    return false;
  }
  SetFormatWidth(spec, width);
  SetFormatPrecision(spec, precision);
  return source.Append(out, spec);
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
    FormatSpec spec = ReadFormatSpec(p);
    if (!appendConversion(out, spec, source)) out.append(start, p);
  }
}

}  // namespace

FormatSpec ReadFormatSpec(char const *& p)
{
  FormatSpec spec;
  readFlags(spec, p);
  spec.widthIsArgument = *p == '*';
  if (spec.widthIsArgument) {
    ++p;
  } else {
    SetFormatWidth(spec, readCount(p));
  }
  if (*p == '.') {
    spec.precisionIsArgument = *++p == '*';
    if (spec.precisionIsArgument) {
      ++p;
    } else {
      SetFormatPrecision(spec, readCount(p));
    }
  }
  spec.length = readLength(p);
  if (isKnown(*p, spec.length)) spec.conversion = *p;
  if (*p != 0) ++p;
  return spec;
}

void SetFormatWidth(FormatSpec & spec, int width)
{
  if (width < 0) {
    spec.left = true;
    width = width == INT_MIN ? INT_MAX : -width;
  }
  spec.width = std::min(width, maxFormatWidth);
}

void SetFormatPrecision(FormatSpec & spec, int precision)
{
  spec.precision = precision < 0 ? -1 : precision;
}

void AppendPadded(std::string & out, FormatSpec const & spec, FormatPieces const & pieces, bool zeros)
{
  size_t const length =
      pieces.sign.size() + pieces.zerosInFront + pieces.body.size() + pieces.zerosBehind + pieces.exponent.size();
  size_t const width = static_cast<size_t>(spec.width);
  size_t const padding = width > length ? width - length : 0;
  if (!spec.left && !zeros) out.append(padding, ' ');
  out.append(pieces.sign);
  out.append(pieces.zerosInFront + (!spec.left && zeros ? padding : 0), '0');
  out.append(pieces.body);
  out.append(pieces.zerosBehind, '0');
  out.append(pieces.exponent);
  if (spec.left) out.append(padding, ' ');
}

void AppendText(std::string & out, FormatSpec const & spec, std::string_view text)
{
  AppendPadded(out, spec, {.body = text}, false);
}

void AppendInteger(std::string & out, FormatSpec const & spec, uint64_t magnitude, bool negative)
{
  bool const isSigned = isSignedConversion(spec.conversion);
  bool const isHex = spec.conversion == 'x' || spec.conversion == 'X';
  int const base = isHex ? 16 : spec.conversion == 'o' ? 8 : 10;

  char digits[24];
  char * const end = magnitude == 0 ? digits : std::to_chars(digits, std::end(digits), magnitude, base).ptr;
  if (spec.conversion == 'X')
    std::transform(digits, end, digits, [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });

  FormatPieces pieces{.body = {digits, static_cast<size_t>(end - digits)}};
  size_t const wanted = spec.precision < 0 ? 1 : static_cast<size_t>(std::min(spec.precision, maxFormatWidth));
  if (wanted > pieces.body.size()) pieces.zerosInFront = wanted - pieces.body.size();
  if (base == 8 && spec.alternate && pieces.zerosInFront == 0) pieces.zerosInFront = 1;
  if (isSigned) pieces.sign = negative ? "-" : spec.plus ? "+" : spec.space ? " " : "";
  if (isHex && spec.alternate && magnitude != 0) pieces.sign = spec.conversion == 'x' ? "0x" : "0X";
  AppendPadded(out, spec, pieces, spec.zero && spec.precision < 0);
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
