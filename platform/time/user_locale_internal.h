// A category of the user's locale, as the environment names it; the process's own locale stays what it is.

#pragma once

#include <locale.h>

#include <memory>
#include <type_traits>

namespace zp {

using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;

// The C locale if the host lacks the user's.
inline Locale UserLocale(int categoryMask)
{
  locale_t const user = newlocale(categoryMask, "", nullptr);
  return {user != nullptr ? user : newlocale(categoryMask, "C", nullptr), &freelocale};
}

}  // namespace zp
