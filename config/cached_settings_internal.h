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
  CString text;  // empty: not read
  bool fromSettings = false;
};

// The texts in memory: what FlushSysINIValues empties, whole.
struct CachedTexts {
  CString rootDirectory;
  CachedText olderSystemPrefix;
  CString shortDate;  // empty: not read
  CachedText cfrValue;
  CachedText propertyValue;
};

struct CachedSettings {
  CachedSettings() { colours.fill(notRead); }

  unsigned int showExcel = notRead;
  unsigned int isVBServer = notRead;
  unsigned int compSelectBy = notRead;
  std::array<unsigned int, colourCount> colours;
  std::array<int, switchCount> switches = {};  // 0: not read
  std::array<double, baseCount> bases = {};    // 0.0: not read
  CachedTexts texts;
  int authority = 0;  // 0: not read
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
  if (!cache.text.IsEmpty() && (cache.fromSettings || !canRead)) return cache.text;
  read(cache.text);
  cache.fromSettings = canRead;
  return cache.text;
}

}  // namespace zp
