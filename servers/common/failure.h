// What goes wrong while a member is carried out, on its way to the caller of Invoke.
#pragma once

#include <cstring>
#include <string>

#include <zpbase/platform/automation.h>

namespace servers {

inline constexpr HRESULT applicationError = static_cast<HRESULT>(0x800A03EC);  // told with a sentence

// A failed call with its code alone, or with a sentence (UTF-8) too, with which it becomes the server's exception.
struct Failure {
  HRESULT code;
  std::string sentence;
};

[[noreturn]] inline void Refuse(std::string sentence, HRESULT code = applicationError)
{
  throw Failure{code, std::move(sentence)};
}

[[noreturn]] inline void Fail(HRESULT code)
{
  throw Failure{code, {}};
}

inline void Check(HRESULT code)
{
  if (FAILED(code)) Fail(code);
}

// The system's words for an errno, in English whatever the user's language, as all sentences are.
inline std::string TextOfError(int error)
{
  char const * const text = strerrordesc_np(error);
  return text != nullptr ? text : "error " + std::to_string(error);
}

}  // namespace servers
