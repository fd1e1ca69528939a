// The system's own profile, of which one entry exists here: the short date pattern, made of the user's locale.

#include <zpbase/platform/application.h>

#include <langinfo.h>
#include <locale.h>

#include <memory>
#include <type_traits>

#include "platform/ascii_internal.h"

namespace {

// The letters of the published pictures for what the C library's format names.
struct DatePart {
  char cConversion;
  char const * pPicture;
};

constexpr DatePart g_Parts[] = {{'d', "dd"},   {'e', "d"},    {'m', "MM"},   {'b', "MMM"},      {'h', "MMM"},
                                {'B', "MMMM"}, {'y', "yy"},   {'Y', "yyyy"}, {'D', "MM/dd/yy"}, {'F', "yyyy-MM-dd"},
                                {'a', "ddd"},  {'A', "dddd"}, {'%', "%"}};

char const * pictureOf(char conversion)
{
  for (DatePart const & part : g_Parts)
    if (part.cConversion == conversion) return part.pPicture;
  return nullptr;
}

// Empty for a format with anything else than days, months and years in it.
std::string pictureOf(std::string_view format)
{
  std::string picture;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      picture += format[i];
      continue;
    }
    while (i + 1 < format.size() && std::string_view("-_0OE").find(format[i + 1]) != std::string_view::npos) ++i;
    char const * const part = ++i < format.size() ? pictureOf(format[i]) : nullptr;
    if (part == nullptr) return {};
    picture += part;
  }
  return picture;
}

// The C locale says nothing of what the user prefers.
std::string shortDatePicture()
{
  using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;
  Locale const user(newlocale(LC_TIME_MASK, "", nullptr), &freelocale);
  if (!user) return {};
  Locale const plain(newlocale(LC_TIME_MASK, "C", nullptr), &freelocale);
  std::string const format = nl_langinfo_l(D_FMT, user.get());
  return plain && format == nl_langinfo_l(D_FMT, plain.get()) ? std::string() : pictureOf(format);
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
