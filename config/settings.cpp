// The store of settings: the application object's profile operations with the system's conventions for defaults, flags and
// numbers.

#include <zpbase/config.h>

#include <cstdint>
#include <memory>
#include <string>

#include <zpbase/platform/application.h>
#include <zpbase/platform/number_text.h>

namespace {

CString storedText(char const * section, char const * key)
{
  CWinApp * const app = AfxGetApp();
  return app != nullptr ? app->GetProfileString(section, key) : CString();
}

int writeText(char const * section, char const * key, char const * value)
{
  CWinApp * const app = AfxGetApp();
  return app != nullptr ? app->WriteProfileString(section, key, value) : 0;
}

std::string unsignedText(long value)
{
  return std::to_string(static_cast<uint32_t>(value));
}

int digitsUnlessZero(CString & out, int value, int keepZero)
{
  out = value == 0 && keepZero == 0 ? CString() : CString(std::to_string(value));
  return value;
}

}  // namespace

int GetSysString(CString & out, char const * section, char const * key, CString const & defaultValue)
{
  out = storedText(section, key);
  if (out.IsEmpty() && !defaultValue.IsEmpty()) {
    out = defaultValue;
    SetSysString(section, key, out);
  }
  return out.GetLength();
}

int SetSysString(char const * section, char const * key, CString const & value)
{
  return writeText(section, key, value);
}

int GetSysYes(char const * section, char const * key)
{
  return storedText(section, key).CompareNoCase(GetYesString()) == 0;
}

int GetSysNo(char const * section, char const * key)
{
  return storedText(section, key).CompareNoCase(GetNoString()) == 0;
}

void SetSysFlag(char const * section, char const * key, int flag)
{
  writeText(section, key, flag != 0 ? GetYesString() : GetNoString());
}

void RemoveSysKey(char const * section, char const * key)
{
  writeText(section, key, nullptr);
}

int GetSysInt(char const * section, char const * key, int defaultValue)
{
  CWinApp * const app = AfxGetApp();
  int const stored = app != nullptr ? static_cast<int>(app->GetProfileInt(section, key, defaultValue)) : defaultValue;
  return static_cast<int16_t>(stored);
}

int GetSysInt(CString & out, char const * section, char const * key, int keepZero, int defaultValue)
{
  return digitsUnlessZero(out, GetSysInt(section, key, defaultValue), keepZero);
}

int SetSysInt(char const * section, char const * key, int value)
{
  CWinApp * const app = AfxGetApp();
  return app != nullptr ? app->WriteProfileInt(section, key, value) : 0;
}

long GetSysLong(char const * section, char const * key, long defaultValue)
{
  CString text;
  GetSysString(text, section, key, defaultValue != 0 ? CString(unsignedText(defaultValue)) : CString());
  return zp::TextToInt(text.View());
}

long GetSysLong(CString & out, char const * section, char const * key, int keepZero, long defaultValue)
{
  return digitsUnlessZero(out, static_cast<int>(GetSysLong(section, key, defaultValue)), keepZero);
}

int SetSysLong(char const * section, char const * key, long value)
{
  return writeText(section, key, unsignedText(value).c_str());
}

int GetSysBinary(char const * section, CString & out, char const * key)
{
  out.Empty();
  CWinApp * const app = AfxGetApp();
  BYTE * bytes = nullptr;
  UINT length = 0;
  if (app != nullptr && app->GetProfileBinary(section, key, &bytes, &length)) {
    std::unique_ptr<BYTE[]> const block(bytes);
    out = CString(reinterpret_cast<char const *>(bytes), static_cast<int>(length));
  }
  return out.GetLength();
}

int SetSysBinary(char const * section, char const * key, CString const & value)
{
  CWinApp * const app = AfxGetApp();
  if (app == nullptr) return 0;
  auto const * const bytes = reinterpret_cast<BYTE const *>(value.GetString());
  return app->WriteProfileBinary(section, key, bytes, static_cast<UINT>(value.GetLength()) + 1);
}
