// The preferences: flags, switches, base values and formats over the settings store, most of them read once.

#include <zpbase/config.h>

#include <zpbase/platform/number_text.h>
#include <zpbase/platform/time.h>

#include "config/cached_settings_internal.h"

namespace zp {

CachedSettings & GetCachedSettings()
{
  static CachedSettings settings;
  return settings;
}

void ForgetCachedSettings()
{
  GetCachedSettings() = CachedSettings();
}

}  // namespace zp

void FlushSysINIValues()
{
  zp::GetCachedSettings().texts = {};
}

namespace {

using namespace zp;

constexpr DWORD profileTextSize = 260;
constexpr unsigned int cfrValueFormatID = 43415;
constexpr unsigned int propertyValueFormatID = 43414;

// How a switch is read, and its two values in memory, 1 and 2.
struct SwitchSetting {
  char const * (*key)();
  bool onWhenUnset;
  int on;
};

constexpr SwitchSetting switches[switchCount] = {
    {GetAllowBeepKey, false, 2},        {GetAllowEnterKey, false, 1},        {GetAllowEscKey, true, 1},
    {GetKeshCalcOverrideKey, false, 2}, {GetKeshCompatibilityKey, false, 2}, {GetFlushMsgWinKey, true, 1},
};

struct BaseSetting {
  char const * key;
  double whenUnset;
};

constexpr BaseSetting bases[baseCount] = {
    {"KBase", 273.15},        // K, 0 degrees Celsius
    {"RBase", 459.67},        // R, 0 degrees Fahrenheit
    {"barBase", 1.01325},     // bar, the standard atmosphere
    {"kgcm2Base", 1.033227},  // kg/cm2, the same
    {"psiBase", 14.69594},    // psi, the same
};

int markOf(SwitchSetting const & setting, bool on)
{
  return on ? setting.on : 3 - setting.on;
}

int isOn(Switch which)
{
  SwitchSetting const & setting = switches[which];
  int const mark = KeptValue(GetCachedSettings().switches[which], 0, [&setting] {
    bool const on = setting.onWhenUnset ? !GetSysNo(misc, setting.key()) : GetSysYes(misc, setting.key()) != 0;
    return markOf(setting, on);
  });
  return mark == setting.on;
}

double baseValue(Base which)
{
  return KeptValue(GetCachedSettings().bases[which], 0.0, [which] {
    CString text;
    GetSysString(text, misc, bases[which].key, CString());
    return text.IsEmpty() ? bases[which].whenUnset : TextToDouble(text.View());
  });
}

int cachedFlag(unsigned int & cache, char const * key)
{
  auto const read = [key] { return static_cast<unsigned int>(GetSysYes(GetExcelSectionKey(), key)); };
  return static_cast<int>(KeptValue(cache, notRead, read));
}

int changeFlag(unsigned int & cache, char const * key, int flag)
{
  int const former = cachedFlag(cache, key);
  cache = flag != 0;
  SetSysFlag(GetExcelSectionKey(), key, flag);
  return former;
}

CString const & cachedFormat(CachedText & cache, char const * key, unsigned int resourceID)
{
  return KeptText(cache, [key, resourceID](CString & text) {
    if (GetSysString(text, misc, key, CString()) == 0) text.LoadString(resourceID);
  });
}

}  // namespace

int GetDefAcctFlag()
{
  return GetSysYes(misc, GetAcctFlagKey());
}

void SetDefAcctFlag(int flag)
{
  SetSysFlag(misc, GetAcctFlagKey(), flag);
}

void GetDefAcctCode(CString & code)
{
  GetSysString(code, misc, GetAcctCodeKey(), CString());
}

void SetDefAcctCode(CString const & code)
{
  SetSysString(misc, GetAcctCodeKey(), code);
}

int GetDefASCIIFlag()
{
  return GetSysYes(misc, GetASCIIReportFlagKey());
}

void SetDefASCIIFlag(int flag)
{
  SetSysFlag(misc, GetASCIIReportFlagKey(), flag);
}

void GetDefASCIIFile(CString & file)
{
  if (GetSysString(file, misc, GetASCIIFileKey(), CString()) == 0) file = GetDefOutFile();
}

void SetDefASCIIFile(CString const & file)
{
  SetSysString(misc, GetASCIIFileKey(), file);
}

int GetDefExcelFlag()
{
  return GetSysYes(GetExcelSectionKey(), GetExcelReportFlagKey());
}

void SetDefExcelFlag(int flag)
{
  SetSysFlag(GetExcelSectionKey(), GetExcelReportFlagKey(), flag);
}

int GetSaveAfterRunFlag()
{
  CString text;
  GetSysString(text, GetExcelSectionKey(), GetSaveAfterRunKey(), CString());
  return text.IsEmpty() || text.CompareNoCase(GetYesString()) == 0;
}

int GetShowExcelFlag()
{
  return cachedFlag(GetCachedSettings().showExcel, GetExcelShowFlagKey());
}

int SetShowExcelFlag(int flag)
{
  return changeFlag(GetCachedSettings().showExcel, GetExcelShowFlagKey(), flag);
}

int GetIsVBServerFlag()
{
  return cachedFlag(GetCachedSettings().isVBServer, GetExcelIsVBServerKey());
}

int SetIsVBServerFlag(int flag)
{
  return changeFlag(GetCachedSettings().isVBServer, GetExcelIsVBServerKey(), flag);
}

int AllowBeep()
{
  return isOn(switchBeep);
}

int AllowEnter()
{
  return isOn(switchEnter);
}

int AllowEsc()
{
  return isOn(switchEsc);
}

int UseKeshCalcSequence()
{
  return isOn(switchOldSequence);
}

void SetKeshCalcSequence(int flag)
{
  GetCachedSettings().switches[switchOldSequence] = markOf(switches[switchOldSequence], flag != 0);
  SetSysFlag(misc, GetKeshCalcOverrideKey(), flag);
}

int CalcAccordingToKesh()
{
  return isOn(switchOldCalculation);
}

int FlushMsgWin()
{
  return isOn(switchFlushMessages);
}

int GetCompSelectBy()
{
  auto const read = [] { return static_cast<unsigned int>(GetSysInt(misc, "CompSelectBy", 0)); };
  return static_cast<int>(KeptValue(GetCachedSettings().compSelectBy, notRead, read));
}

void SetCompSelectBy(int value)
{
  GetCachedSettings().compSelectBy = static_cast<unsigned int>(value);
  SetSysInt(misc, "CompSelectBy", value);
}

double GetKBase()
{
  return baseValue(baseKelvin);
}

double GetRBase()
{
  return baseValue(baseRankine);
}

double GetBarBase()
{
  return baseValue(baseBar);
}

double GetKgCm2Base()
{
  return baseValue(baseKgCm2);
}

double GetPsiBase()
{
  return baseValue(basePsi);
}

CString const & GetShortDateFormat()
{
  CString & format = GetCachedSettings().texts.shortDate;
  if (format.IsEmpty()) {
    char text[profileTextSize];
    GetProfileStringA("intl", "sShortDate", "", text, profileTextSize);
    format = text[0] != '\0' ? text : "mm/dd/yy";
  }
  return format;
}

CString const & GetSDBCFRValFormat()
{
  return cachedFormat(GetCachedSettings().texts.cfrValue, GetSDBCFRValFmtKey(), cfrValueFormatID);
}

CString const & GetSDBPropValFormat()
{
  return cachedFormat(GetCachedSettings().texts.propertyValue, GetSDBPropValFmtKey(), propertyValueFormatID);
}
