// The application object: its document templates, its cursors and its settings, texts, integers and blocks of bytes under a
// section and a key, kept in the user's registry hive or in a profile file.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "collections.h"
#include "input.h"
#include "messages.h"
#include "string.h"
#include "types.h"

class CDocTemplate;

namespace zp {

class SettingsBackEnd;

// One setting with its type and bytes as the registry holds them; all those of a profile file are texts (REG_SZ).
struct Setting {
  CString section;
  CString key;
  DWORD type = 0;  // a REG_ type, see registry.h
  CString data;
};

}  // namespace zp

class ZP_API CWinApp : public CWinThread {
 public:
  // Becomes the application that AfxGetApp gives. Without a name it has that of the program's file. Its settings are those of
  // the profile file <name>.ini in the user's configuration folder until one of the next two chooses otherwise.
  explicit CWinApp(char const * name = nullptr);
  ~CWinApp() override;

  void SetRegistryKey(char const * company);  // HKEY_CURRENT_USER\Software\company\name\section
  void SetProfileFile(char const * path);     // either form of path; the file need not exist

  // Sections and keys compare without the case of ASCII letters. A missing setting, or one of another kind, is the default.
  UINT GetProfileInt(char const * section, char const * key, int defaultValue);
  CString GetProfileString(char const * section, char const * key, char const * defaultValue = nullptr);

  // A block of *length bytes that the caller releases with delete[]; FALSE, with null and 0, if there is none.
  BOOL GetProfileBinary(char const * section, char const * key, BYTE ** bytes, UINT * length);

  // FALSE if the store can't be written or can't hold the text. A null value removes the key, a null key its section and
  // those below it ("Misc\\Sub" is below "Misc"); the empty section can't be removed.
  BOOL WriteProfileInt(char const * section, char const * key, int value);
  BOOL WriteProfileString(char const * section, char const * key, char const * value);
  BOOL WriteProfileBinary(char const * section, char const * key, BYTE const * bytes, UINT length);

  // All settings that there are, in the store's order. Raises CFileException where the store can't be read.
  std::vector<zp::Setting> ListSettings();

  // Document templates, which the application owns, in the order of their registration.
  void AddDocTemplate(CDocTemplate * docTemplate);
  POSITION GetFirstDocTemplatePosition() const { return m_Templates.GetHeadPosition(); }
  CDocTemplate * GetNextDocTemplate(POSITION & position) const;
  BOOL SaveAllModified();    // asks about documents with changes; 0 as soon as one is to stay
  void CloseAllDocuments();  // without a question

  // A cursor resource, or one of the standard cursors by its name, IDC_ARROW and its kin; null if there is none.
  HCURSOR LoadCursor(UINT id) const;
  HCURSOR LoadStandardCursor(char const * name) const;

  HINSTANCE m_hInstance = nullptr;  // the program
  char const * m_pszAppName = nullptr;

 private:
  CString m_strName;
  std::unique_ptr<zp::SettingsBackEnd> m_pSettings;
  CObList m_Templates;
};

// The application object, or null.
ZP_API CWinApp * AfxGetApp();
