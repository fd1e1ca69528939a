// What the system is: family, version and language, and the locale of dates.

#include <zpbase/system.h>

#include <algorithm>
#include <iterator>

static_assert(sizeof(COSVersionInfo) == 148);

namespace {

constexpr DWORD userDefaultLocale = 0x0400;

struct Language {
  WORD id;
  char const * name;
};

// The published language identifiers in ascending order, each name padded to 25 characters.
constexpr Language languages[] = {
    {0x0000, "Language-Neutral         "},
    {0x0400, "Process Default Language "},
    {0x0401, "Arabic                   "},
    {0x0402, "Bulgarian                "},
    {0x0403, "Catalan                  "},
    {0x0404, "Traditional Chinese      "},
    {0x0405, "Czech                    "},
    {0x0406, "Danish                   "},
    {0x0407, "German                   "},
    {0x0408, "Greek                    "},
    {0x0409, "U.S. English             "},
    {0x040A, "Castilian Spanish        "},
    {0x040B, "Finnish                  "},
    {0x040C, "French                   "},
    {0x040D, "Hebrew                   "},
    {0x040E, "Hungarian                "},
    {0x040F, "Icelandic                "},
    {0x0410, "Italian                  "},
    {0x0411, "Japanese                 "},
    {0x0412, "Korean                   "},
    {0x0413, "Dutch                    "},
    {0x0414,
     "Norwegian -- Bokm\xE5"
     "l      "},
    {0x0415, "Polish                   "},
    {0x0416, "Brazilian Portuguese     "},
    {0x0417, "Rhaeto-Romanic           "},
    {0x0418, "Romanian                 "},
    {0x0419, "Russian                  "},
    {0x041A, "Croato-Serbian (Latin)   "},
    {0x041B, "Slovak                   "},
    {0x041C, "Albanian                 "},
    {0x041D, "Swedish                  "},
    {0x041E, "Thai                     "},
    {0x041F, "Turkish                  "},
    {0x0420, "Urdu                     "},
    {0x0421, "Bahasa                   "},
    {0x0804, "Simplified Chinese       "},
    {0x0807, "Swiss German             "},
    {0x0809, "U.K. English             "},
    {0x080A, "Mexican Spanish          "},
    {0x080C, "Belgian French           "},
    {0x0810, "Swiss Italian            "},
    {0x0813, "Belgian Dutch            "},
    {0x0814, "Norwegian -- Nynorsk     "},
    {0x0816, "Portuguese               "},
    {0x081A, "Serbo-Croatian (Cyrillic)"},
    {0x0C09, "Australian English       "},
    {0x0C0A, "Modern Spanish           "},
    {0x0C0C, "Canadian French          "},
    {0x1009, "Canadian English         "},
    {0x100C, "Swiss French             "},
};

unsigned long g_nLCID = 0;  // 0: not found yet

CString familyName(DWORD platform)
{
  switch (platform) {
    case VER_PLATFORM_WIN32s:
      return "Win32s on Windows 3.1";
    case VER_PLATFORM_WIN32_WINDOWS:
      return "Win32 on Windows 95";
    case VER_PLATFORM_WIN32_NT:
      return "Windows NT";
    default: {
      CString name;
      name.Format("Unknown Platform %u", platform);
      return name;
    }
  }
}

}  // namespace

COSVersionInfo::COSVersionInfo() : OSVERSIONINFOA{}
{
  dwOSVersionInfoSize = sizeof(OSVERSIONINFOA);
  if (!GetVersionExA(this)) dwPlatformId = VER_PLATFORM_WIN32s;
}

int OSIsWin32s()
{
  return GetOSPlatformID() == VER_PLATFORM_WIN32s;
}

int OSIsWin95()
{
  return GetOSPlatformID() == VER_PLATFORM_WIN32_WINDOWS;
}

int OSIsWinNT()
{
  return GetOSPlatformID() == VER_PLATFORM_WIN32_NT;
}

unsigned long GetOSPlatformID()
{
  return COSVersionInfo().dwPlatformId;
}

unsigned long GetOSMajorVersion()
{
  return COSVersionInfo().dwMajorVersion;
}

unsigned long GetOSMinorVersion()
{
  return COSVersionInfo().dwMinorVersion;
}

void GetOSVersionString(CString & text)
{
  COSVersionInfo const version;
  text.Format("%s - Version %u:%u:%u", familyName(version.dwPlatformId).GetString(), version.dwMajorVersion,
              version.dwMinorVersion, version.dwBuildNumber);
}

void GetOSModsString(CString & text)
{
  text = COSVersionInfo().szCSDVersion;
}

unsigned long VerLanguageNameA(unsigned long language, CString & name)
{
  auto const * const found =
      std::find_if(std::begin(languages), std::end(languages), [language](Language const & row) { return row.id == language; });
  name = found != std::end(languages) ? found->name : "Unknown";
  return static_cast<unsigned long>(name.GetLength());
}

int GetOSLanguage(CString & name)
{
  return VerLanguageNameA(GetSystemDefaultLangID(), name) != 0;
}

unsigned long GetCurLCID()
{
  if (g_nLCID == 0) g_nLCID = OSIsWin32s() ? userDefaultLocale : GetThreadLocale();
  return g_nLCID;
}
