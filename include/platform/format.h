// The engine behind all formatting: it follows the C locale whatever the process has set and knows longs as 32-bit numbers.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

#include "types.h"

namespace zp {

// One argument of a format that comes from a setting or a caller. Longs keep their low 32 bits.
class FormatArg {
 public:
  enum class Kind { Integer, Real, Text };

  FormatArg(int value) : m_Kind(Kind::Integer), m_Integer(value) {}
  FormatArg(unsigned int value) : m_Kind(Kind::Integer), m_Integer(static_cast<int32_t>(value)) {}
  FormatArg(long value) : m_Kind(Kind::Integer), m_Integer(static_cast<int32_t>(value)) {}
  FormatArg(unsigned long value) : m_Kind(Kind::Integer), m_Integer(static_cast<int32_t>(value)) {}
  FormatArg(double value) : m_Kind(Kind::Real), m_Real(value) {}
  FormatArg(char const * value) : m_Kind(Kind::Text), m_Text(value) {}

  Kind GetKind() const { return m_Kind; }
  int32_t GetInteger() const { return m_Integer; }
  double GetReal() const { return m_Real; }
  char const * GetText() const { return m_Text; }

 private:
  Kind m_Kind;
  union {
    int32_t m_Integer;
    double m_Real;
    char const * m_Text;
  };
};

// What the text of a string resource can take in: numbers and texts, a CString too.
template <class... Args>
concept FormatArgs = sizeof...(Args) != 0 && (std::is_constructible_v<FormatArg, Args const &> && ...);

// Append the formatted text to out. The first is for formats that stand in the code. The second takes exactly the arguments
// given: a conversion that doesn't fit the argument at its place, and "%n", appear as text.
ZP_API void FormatInto(std::string & out, char const * format, va_list args);
ZP_API void FormatInto(std::string & out, char const * format, std::span<FormatArg const> args);

}  // namespace zp
