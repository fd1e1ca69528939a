// What a server tells about its own failure in characters that the code page lacks.
#pragma once

#include <string>
#include <string_view>

#include "exceptions.h"

namespace zp {

// Raised by InvokeHelper in place of the published class, which has a question mark for each of those characters. The catcher's,
// as all exceptions are.
class ZP_API WideDispatchException : public COleDispatchException {
 public:
  WideDispatchException(COleDispatchException const & told, std::u16string_view description)
      : COleDispatchException(told), m_strWide(description)
  {
  }

  std::u16string m_strWide;  // the description
};

}  // namespace zp
