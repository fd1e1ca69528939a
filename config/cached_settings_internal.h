// Every preference that is kept in memory, in one place.
#pragma once

#include <array>

#include <zpbase/platform/string.h>

namespace zp {

constexpr unsigned int k_NotRead = 0xFFFFFFFF;
constexpr char const * k_Misc = "Misc";

enum Switch { switchBeep, switchEnter, switchEsc, switchOldSequence, switchOldCalculation, switchFlushMessages, switchCount };
enum Colour {
  colourEULabel,
  colourRequired,
  colourReadOnly,
  colourFocus,
  colourFocusBack,
  colourUser,
  colourUserBack,
  colourCount
};
enum Base { baseKelvin, baseRankine, baseBar, baseKgCm2, basePsi, baseCount };

struct CachedSettings {
  CachedSettings() { m_Colours.fill(k_NotRead); }

  unsigned int m_nShowExcel = k_NotRead;
  unsigned int m_nIsVBServer = k_NotRead;
  unsigned int m_nCompSelectBy = k_NotRead;
  std::array<unsigned int, colourCount> m_Colours;
  std::array<int, switchCount> m_Switches = {};  // 0: not read
  std::array<double, baseCount> m_Bases = {};    // 0.0: not read
  CString m_strShortDate;                        // empty: not read
  CString m_strCFRValue;
  CString m_strPropertyValue;
  int m_nAuthority = 0;  // 0: not read
};

CachedSettings & GetCachedSettings();

}  // namespace zp
