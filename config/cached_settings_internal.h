// Every preference that is kept in memory, in one place.
#pragma once

#include <array>

#include <zpbase/platform/application.h>
#include <zpbase/platform/string.h>

namespace zp {

constexpr unsigned int notRead = 0xFFFFFFFF;
constexpr char const * misc = "Misc";

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

// A text in memory; one without an application is read again when there is one.
struct CachedText {
  CString m_strText;  // empty: not read
  bool m_bFromSettings = false;
};

struct CachedSettings {
  CachedSettings() { m_Colours.fill(notRead); }

  unsigned int m_nShowExcel = notRead;
  unsigned int m_nIsVBServer = notRead;
  unsigned int m_nCompSelectBy = notRead;
  std::array<unsigned int, colourCount> m_Colours;
  std::array<int, switchCount> m_Switches = {};  // 0: not read
  std::array<double, baseCount> m_Bases = {};    // 0.0: not read
  CString m_strShortDate;                        // empty: not read
  CachedText m_CFRValue;
  CachedText m_PropertyValue;
  int m_nAuthority = 0;  // 0: not read
};

CachedSettings & GetCachedSettings();

// What cache holds, or else what read gives. That is kept if there is an application whose settings it can come from: without one
// it is the default, and a setting may still appear.
template <class Value, class Read>
Value KeptValue(Value & cache, Value unset, Read read)
{
  if (cache != unset) return cache;
  Value const value = read();
  if (AfxGetApp() != nullptr) cache = value;
  return value;
}

// The same for a text, which read puts into its argument; it stays where it is until the cache is emptied.
template <class Read>
CString const & KeptText(CachedText & cache, Read read)
{
  bool const canRead = AfxGetApp() != nullptr;
  if (!cache.m_strText.IsEmpty() && (cache.m_bFromSettings || !canRead)) return cache.m_strText;
  read(cache.m_strText);
  cache.m_bFromSettings = canRead;
  return cache.m_strText;
}

}  // namespace zp
