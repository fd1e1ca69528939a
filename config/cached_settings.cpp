// The preferences: flags, switches, base values and formats over the settings store, most of them read once.

#include <zpbase/config.h>

#include <zpbase/platform/application.h>

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
  FlushSysINIValues();
}

}  // namespace zp

namespace {

using namespace zp;

constexpr DWORD k_ProfileTextSize = 260;
constexpr unsigned int k_CFRValueFormatID = 43415;
constexpr unsigned int k_PropertyValueFormatID = 43414;

// How a switch is read, and its two values in memory, 1 and 2.
struct SwitchSetting {
  char const * (*pKey)();
  bool bOnWhenUnset;
  int nOn;
};

constexpr SwitchSetting g_Switches[switchCount] = {
    {GetAllowBeepKey, false, 2},        {GetAllowEnterKey, false, 1},        {GetAllowEscKey, true, 1},
    {GetKeshCalcOverrideKey, false, 2}, {GetKeshCompatibilityKey, false, 2}, {GetFlushMsgWinKey, true, 1},
};

struct BaseSetting {
  char const * pKey;
  double fWhenUnset;
};

constexpr BaseSetting g_Bases[baseCount] = {
    {"KBase", 273.15},        // K, 0 degrees Celsius
    {"RBase", 459.67},        // R, 0 degrees Fahrenheit
    {"barBase", 1.01325},     // bar, the standard atmosphere
    {"kgcm2Base", 1.033227},  // kg/cm2, the same
    {"psiBase", 14.69594},    // psi, the same
};

int markOf(SwitchSetting const & setting, bool on)
{
  return on ? setting.nOn : 3 - setting.nOn;
}

int isOn(Switch which)
{
  SwitchSetting const & setting = g_Switches[which];
  int const mark = KeptValue(GetCachedSettings().m_Switches[which], 0, [&setting] {
    bool const on = setting.bOnWhenUnset ? !GetSysNo(k_Misc, setting.pKey()) : GetSysYes(k_Misc, setting.pKey()) != 0;
    return markOf(setting, on);
  });
  return mark == setting.nOn;
}

double baseValue(Base which)
{
  return KeptValue(GetCachedSettings().m_Bases[which], 0.0, [which] {
    CString text;
    GetSysString(text, k_Misc, g_Bases[which].pKey, CString());
    return text.IsEmpty() ? g_Bases[which].fWhenUnset : TextToDouble(text.View());
  });
}

int cachedFlag(unsigned int & cache, char const * key)
{
  auto const read = [key] { return static_cast<unsigned int>(GetSysYes(GetExcelSectionKey(), key)); };
  return static_cast<int>(KeptValue(cache, k_NotRead, read));
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
    if (GetSysString(text, k_Misc, key, CString()) == 0) text.LoadString(resourceID);
  });
}

}  // namespace

int GetDefAcctFlag()
{
  return GetSysYes(k_Misc, GetAcctFlagKey());
}

void SetDefAcctFlag(int flag)
{
  SetSysFlag(k_Misc, GetAcctFlagKey(), flag);
}

void GetDefAcctCode(CString & code)
{
  GetSysString(code, k_Misc, GetAcctCodeKey(), CString());
}

void SetDefAcctCode(CString const & code)
{
  SetSysString(k_Misc, GetAcctCodeKey(), code);
}

int GetDefASCIIFlag()
{
  return GetSysYes(k_Misc, GetASCIIReportFlagKey());
}

void SetDefASCIIFlag(int flag)
{
  SetSysFlag(k_Misc, GetASCIIReportFlagKey(), flag);
}

void GetDefASCIIFile(CString & file)
{
  if (GetSysString(file, k_Misc, GetASCIIFileKey(), CString()) == 0) file = GetDefOutFile();
}

void SetDefASCIIFile(CString const & file)
{
  SetSysString(k_Misc, GetASCIIFileKey(), file);
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
  return cachedFlag(GetCachedSettings().m_nShowExcel, GetExcelShowFlagKey());
}

int SetShowExcelFlag(int flag)
{
  return changeFlag(GetCachedSettings().m_nShowExcel, GetExcelShowFlagKey(), flag);
}

int GetIsVBServerFlag()
{
  return cachedFlag(GetCachedSettings().m_nIsVBServer, GetExcelIsVBServerKey());
}

int SetIsVBServerFlag(int flag)
{
  return changeFlag(GetCachedSettings().m_nIsVBServer, GetExcelIsVBServerKey(), flag);
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
  GetCachedSettings().m_Switches[switchOldSequence] = markOf(g_Switches[switchOldSequence], flag != 0);
  SetSysFlag(k_Misc, GetKeshCalcOverrideKey(), flag);
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
  auto const read = [] { return static_cast<unsigned int>(GetSysInt(k_Misc, "CompSelectBy", 0)); };
  return static_cast<int>(KeptValue(GetCachedSettings().m_nCompSelectBy, k_NotRead, read));
}

void SetCompSelectBy(int value)
{
  GetCachedSettings().m_nCompSelectBy = static_cast<unsigned int>(value);
  SetSysInt(k_Misc, "CompSelectBy", value);
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
  CString & format = GetCachedSettings().m_strShortDate;
  if (format.IsEmpty()) {
    char text[k_ProfileTextSize];
    GetProfileStringA("intl", "sShortDate", "", text, k_ProfileTextSize);
    format = text[0] != '\0' ? text : "mm/dd/yy";
  }
  return format;
}

CString const & GetSDBCFRValFormat()
{
  return cachedFormat(GetCachedSettings().m_CFRValue, GetSDBCFRValFmtKey(), k_CFRValueFormatID);
}

CString const & GetSDBPropValFormat()
{
  return cachedFormat(GetCachedSettings().m_PropertyValue, GetSDBPropValFmtKey(), k_PropertyValueFormatID);
}
