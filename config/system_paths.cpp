// Where the system's own files lie.

#include <zpbase/config.h>

#include <zpbase/platform/application.h>
#include <zpbase/platform/known_places.h>

#include "config/cached_settings_internal.h"

namespace {

constexpr char const * olderSystemKey = "ZP3System";
constexpr DWORD pathSize = 4096;
constexpr int rootLength = 3;  // drive, colon, backslash

}  // namespace

CString const GetSystemPathPrefix()
{
  CWinApp const * const app = AfxGetApp();
  char path[pathSize];
  DWORD const length = GetModuleFileName(app != nullptr ? app->m_hInstance : nullptr, path, pathSize);
  CString prefix(path, static_cast<int>(length));
  int const last = prefix.ReverseFind('\\');
  if (last > 0) prefix = prefix.Left(last + 1);
  if (!prefix.View().ends_with('\\')) prefix += '\\';
  return prefix;
}

CString const & GetSystemRootDirectory()
{
  return zp::GetCachedSettings().texts.rootDirectory = GetSystemPathPrefix().Left(rootLength);
}

CString const & GetZP3SystemPathPrefix()
{
  return zp::KeptText(zp::GetCachedSettings().texts.olderSystemPrefix, [](CString & prefix) {
    if (GetSysString(prefix, GetZPXDirSectionKey(), olderSystemKey, CString()) > 0) {
      prefix += '\\';
    } else {
      prefix = GetSystemPathPrefix();
    }
  });
}
