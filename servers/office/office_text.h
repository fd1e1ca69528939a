// Texts on their way between the office's 16-bit characters, UTF-8 and BSTR.
#pragma once

#include <string>
#include <string_view>

#include <rtl/string.hxx>
#include <rtl/ustring.hxx>

namespace office {

inline rtl::OUString FromUtf8(std::string_view text)
{
  return rtl::OUString(text.data(), static_cast<sal_Int32>(text.size()), RTL_TEXTENCODING_UTF8);
}

inline std::string ToUtf8(rtl::OUString const & text)
{
  rtl::OString const bytes = rtl::OUStringToOString(text, RTL_TEXTENCODING_UTF8);
  return {bytes.getStr(), static_cast<size_t>(bytes.getLength())};
}

// The office's characters are automation's under another name.
inline std::u16string_view ViewOf(rtl::OUString const & text)
{
  return {reinterpret_cast<char16_t const *>(text.getStr()), static_cast<size_t>(text.getLength())};
}

inline rtl::OUString FromWide(std::u16string_view text)
{
  return rtl::OUString(reinterpret_cast<sal_Unicode const *>(text.data()), static_cast<sal_Int32>(text.size()));
}

}  // namespace office
