// What the host says of itself: its version, and the languages of the user's locales.

#include <zpbase/platform/facts.h>

#include <langinfo.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include <zpbase/platform/host_calls.h>

#include "platform/time/user_locale_internal.h"

namespace {

constexpr WORD usEnglish = 0x0409;
constexpr WORD unknownLanguage = 0x0400;

// The host's names of languages, and the published language identifiers. A name with a territory stands before its language.
struct Language {
  char const * name;
  WORD id;
};

constexpr Language languages[] = {
    {"ar", 0x0401},    {"bg", 0x0402},    {"ca", 0x0403},    {"zh_TW", 0x0404}, {"zh_HK", 0x0404}, {"zh", 0x0804},
    {"cs", 0x0405},    {"da", 0x0406},    {"de_CH", 0x0807}, {"de", 0x0407},    {"el", 0x0408},    {"en_GB", 0x0809},
    {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en", 0x0409},    {"es_MX", 0x080A}, {"es", 0x0C0A},    {"fi", 0x040B},
    {"fr_BE", 0x080C}, {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C}, {"fr", 0x040C},    {"he", 0x040D},    {"hu", 0x040E},
    {"is", 0x040F},    {"it_CH", 0x0810}, {"it", 0x0410},    {"ja", 0x0411},    {"ko", 0x0412},    {"nl_BE", 0x0813},
    {"nl", 0x0413},    {"nb", 0x0414},    {"no", 0x0414},    {"nn", 0x0814},    {"pl", 0x0415},    {"pt_BR", 0x0416},
    {"pt", 0x0816},    {"rm", 0x0417},    {"ro", 0x0418},    {"ru", 0x0419},    {"hr", 0x041A},    {"sk", 0x041B},
    {"sq", 0x041C},    {"sv", 0x041D},    {"th", 0x041E},    {"tr", 0x041F},    {"ur", 0x0420},    {"id", 0x0421},
    {"sr", 0x081A},
};

// "de_CH.UTF-8@euro" is of "de_CH" and of "de".
bool isOf(std::string_view locale, std::string_view name)
{
  return locale.starts_with(name) &&
         (locale.size() == name.size() || std::string_view("_.@").find(locale[name.size()]) != std::string_view::npos);
}

WORD languageOf(std::string_view locale)
{
  if (isOf(locale, "C") || isOf(locale, "POSIX")) return usEnglish;
  auto const * const found =
      std::find_if(std::begin(languages), std::end(languages), [locale](Language const & row) { return isOf(locale, row.name); });
  return found != std::end(languages) ? found->id : unknownLanguage;
}

WORD userLanguage(int category, int mask)
{
  zp::Locale const locale = zp::UserLocale(mask);
  return locale ? languageOf(nl_langinfo_l(NL_LOCALE_NAME(category), locale.get())) : usEnglish;
}

}  // namespace

BOOL GetVersionExA(OSVERSIONINFOA * version)
{
  return zp::GetHostCalls().GetVersion(*version);
}

WORD GetSystemDefaultLangID()
{
  return userLanguage(LC_MESSAGES, LC_MESSAGES_MASK);
}

DWORD GetThreadLocale()
{
  return userLanguage(LC_TIME, LC_TIME_MASK);
}
