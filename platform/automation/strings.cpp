// BSTR: texts of 16-bit characters with their length, in bytes, in the four bytes in front of them.

#include <zpbase/platform/variants.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <zpbase/platform/encoding.h>

namespace {

constexpr size_t headSize = 8;  // of which the last four bytes are the length: so the text is as well aligned as the block
constexpr size_t lengthSize = 4;

char * headOf(BSTR text)
{
  return reinterpret_cast<char *>(text) - headSize;
}

}  // namespace

BSTR SysAllocStringLen(char16_t const * text, UINT length)
{
  DWORD const bytes = length * DWORD{sizeof(char16_t)};
  if (bytes / sizeof(char16_t) != length) return nullptr;
  auto * const block = static_cast<char *>(std::malloc(headSize + bytes + sizeof(char16_t)));
  if (block == nullptr) return nullptr;
  std::memcpy(block + headSize - lengthSize, &bytes, lengthSize);
  auto * const made = reinterpret_cast<BSTR>(block + headSize);
  if (text != nullptr) {
    std::memcpy(made, text, bytes);
  } else {
    std::memset(made, 0, bytes);
  }
  made[length] = u'\0';
  return made;
}

BSTR SysAllocString(char16_t const * text)
{
  if (text == nullptr) return nullptr;
  size_t const length = std::char_traits<char16_t>::length(text);
  return length <= UINT32_MAX ? SysAllocStringLen(text, static_cast<UINT>(length)) : nullptr;
}

void SysFreeString(BSTR text)
{
  if (text != nullptr) std::free(headOf(text));
}

UINT SysStringLen(BSTR text)
{
  if (text == nullptr) return 0;
  DWORD bytes;
  std::memcpy(&bytes, headOf(text) + headSize - lengthSize, lengthSize);
  return bytes / DWORD{sizeof(char16_t)};
}

namespace zp {

BSTR TextToBstr(std::string_view text)
{
  std::u16string const wide = TextToWide(text);
  BSTR const made = wide.size() <= UINT32_MAX ? SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size())) : nullptr;
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

CString BstrToText(BSTR text)
{
  std::string bytes;
  AppendWide(bytes, ViewOf(text));
  return CString(std::move(bytes));
}

HRESULT TellException(EXCEPINFO * record, HRESULT code, std::string_view source, std::string_view description)
{
  if (record == nullptr) return DISP_E_EXCEPTION;
  *record = {};
  record->scode = code;
  record->bstrSource = TextToBstr(source);
  record->bstrDescription = TextToBstr(description);
  return DISP_E_EXCEPTION;
}

}  // namespace zp
