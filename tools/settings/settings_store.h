// The store of an application's settings that the options of zp settings name: a profile file, or a branch of a hive.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/platform/registry.h>

#include "tools/settings/refusal.h"

struct SettingsOptions {
  std::string application = "Zephlow";
  std::string company;
  std::string profile;
  std::string hive;
  std::string section;
  std::optional<std::string> key;
  bool json = false;
};

// Whether a store that the command line names has to be there before, or its folder alone.
enum class Wanted { ToRead, ToChange };

// Makes the application that the options name the one whose settings are used. Raises Failure for a store that can't be read.
class SettingsStore {
 public:
  SettingsStore(SettingsOptions const & options, Wanted wanted);

  CWinApp & App() { return m_App; }
  bool IsRegistry() const { return m_bRegistry; }
  std::string const & Name() const { return m_strName; }
  CString Path() const { return "Software\\" + m_strCompany + "\\" + m_App.m_pszAppName; }
  CString Branch() const { return "HKEY_CURRENT_USER\\" + Path(); }

  // All settings, or those of a section.
  std::vector<zp::Setting> List(CString const & section);

  BOOL WriteBlock(CString const & section, CString const & key, std::string_view bytes);

  // Why a list is empty and where else settings may be: a line without its point.
  std::string TellEmpty(CString const & section) const;

  // Raises Failure with the cause for a change that was not made, SystemFailure where the host refused it. Texts are those that
  // should have been written.
  void Require(BOOL written, CString const & section, CString const & key, CString const & text = CString()) const;

  void RequireRemoved(BOOL removed, CString const & section) const;

  // Why the store refuses a setting of these names and this text, and why the removal of a setting or a section.
  Refusal FindRefusal(CString const & section, CString const & key, CString const & text) const;
  Refusal FindRefusalToRemove(CString const & section) const;

 private:
  [[noreturn]] void Fail(Refusal const & refusal) const;
  void UseHive(SettingsOptions const & options, Wanted wanted);
  void UseProfile(SettingsOptions const & options, Wanted wanted);

  CWinApp m_App;
  bool m_bRegistry;
  CString m_strCompany;
  std::string m_strName;
  std::string m_strFile;  // that the store is, as the host names it
};

bool IsTextType(DWORD type);

// The value of a REG_DWORD's four bytes.
int NumberOfBytes(CString const & data);
