// The system's own profile, of which one entry exists here: the short date pattern, made of the user's locale.

#include <zpbase/platform/time.h>

#include <langinfo.h>
#include <locale.h>

#include <string>
#include <string_view>

#include <zpbase/platform/ascii.h>

#include "platform/time/locale_formats_internal.h"
#include "platform/time/user_locale_internal.h"

namespace {

// Empty for the C locale, which says nothing of what the user prefers.
std::string shortDatePicture()
{
  zp::Locale const user = zp::UserLocale(LC_TIME_MASK);
  zp::Locale const plain(newlocale(LC_TIME_MASK, "C", nullptr), &freelocale);
  if (!user || !plain) return {};
  bool const isPlain = std::string_view(nl_langinfo_l(D_FMT, user.get())) == nl_langinfo_l(D_FMT, plain.get());
  return isPlain ? std::string() : zp::ShortDatePicture(user.get());
}

}  // namespace

DWORD GetProfileStringA(char const * section, char const * key, char const * defaultValue, char * text, DWORD size)
{
  if (size == 0) return 0;
  std::string value;
  if (zp::EqualsNoCase(section, "intl") && zp::EqualsNoCase(key, "sShortDate")) value = shortDatePicture();
  if (value.empty() && defaultValue != nullptr) value = defaultValue;
  size_t const length = value.copy(text, size - 1);
  text[length] = '\0';
  return static_cast<DWORD>(length);
}
