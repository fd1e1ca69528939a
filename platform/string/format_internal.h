// The parts of the format engine: one conversion as it stands in a format, and what lays out each kind of value.
// Nothing here asks the process's locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zp {

// Widths and precisions beyond this are cut, so that a short format can't ask for much memory.
inline constexpr int maxFormatWidth = 5000;

enum class LengthMark { None, Char, Short, Long, LongLong };

struct FormatField {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool alternate = false;
  bool zero = false;
  bool widthIsArgument = false;
  bool precisionIsArgument = false;
  int width = 0;
  int precision = -1;  // -1: none given
  LengthMark length = LengthMark::None;
  char conversion = 0;  // one of the known letters, 0 when the conversion isn't known
};

// A value laid out, piece by piece in the order of the output.
struct FormatPieces {
  std::string_view sign = {};  // or the prefix 0x
  size_t zerosInFront = 0;
  std::string_view body = {};
  size_t zerosBehind = 0;
  std::string_view exponent = {};
};

// Reads the conversion behind a '%' at p; p moves behind it, or behind what was understood of it.
FormatField ReadFormatField(char const *& p);

// A width or precision that came as an argument: a negative width means left-aligned, a negative precision none.
void SetFormatWidth(FormatField & field, int width);
void SetFormatPrecision(FormatField & field, int precision);

// magnitude is the absolute value; negative counts for d and i only.
void AppendInteger(std::string & out, FormatField const & field, uint64_t magnitude, bool negative);
void AppendReal(std::string & out, FormatField const & field, double value);
void AppendText(std::string & out, FormatField const & field, std::string_view text);

// Appends the pieces, padded to the width: by zeros behind the sign, or by blanks in front or behind.
void AppendPadded(std::string & out, FormatField const & field, FormatPieces const & pieces, bool zeros);

}  // namespace zp
