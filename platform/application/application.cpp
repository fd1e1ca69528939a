// The application object: who it is, and the road of its settings to the store it has chosen.

#include <zpbase/platform/application.h>

#include <algorithm>

#include <zpbase/platform/known_places.h>
#include <zpbase/platform/paths.h>

#include "platform/application/settings_back_end_internal.h"

namespace {

constinit CWinApp * g_pApplication = nullptr;

constexpr DWORD pathSize = 4096;

CString programName()
{
  char path[pathSize];
  std::string_view const file(path, GetModuleFileName(nullptr, path, pathSize));
  std::string_view const name = file.substr(file.rfind('\\') + 1);
  return CString(name.substr(0, name.rfind('.')));
}

std::unique_ptr<zp::SettingsBackEnd> defaultSettings(CString const & name)
{
  std::string const folder = GetUserConfigFolder();
  return folder.empty() ? nullptr : zp::MakeProfileSettings(folder + '/' + name.GetString() + ".ini");
}

}  // namespace

CWinApp::CWinApp(char const * name)
    : m_strName(name != nullptr ? CString(name) : programName()), m_pSettings(defaultSettings(m_strName))
{
  m_pszAppName = m_strName;
  g_pApplication = this;
}

CWinApp::~CWinApp()
{
  while (!m_Templates.IsEmpty()) delete m_Templates.RemoveHead();
  if (g_pApplication == this) g_pApplication = nullptr;
}

void CWinApp::SetRegistryKey(char const * company)
{
  m_pSettings = zp::MakeRegistrySettings(company, m_strName.View());
}

void CWinApp::SetProfileFile(char const * path)
{
  std::string file;
  m_pSettings = ToHostPath(path, file) ? zp::MakeProfileSettings(std::move(file)) : nullptr;
}

UINT CWinApp::GetProfileInt(char const * section, char const * key, int defaultValue)
{
  auto const value = m_pSettings ? m_pSettings->GetInt(section, key) : std::nullopt;
  return static_cast<UINT>(value.value_or(defaultValue));
}

CString CWinApp::GetProfileString(char const * section, char const * key, char const * defaultValue)
{
  auto value = m_pSettings ? m_pSettings->GetText(section, key) : std::nullopt;
  return value ? CString(std::move(*value)) : CString(defaultValue);
}

BOOL CWinApp::GetProfileBinary(char const * section, char const * key, BYTE ** bytes, UINT * length)
{
  *bytes = nullptr;
  *length = 0;
  auto const value = m_pSettings ? m_pSettings->GetBinary(section, key) : std::nullopt;
  if (!value) return FALSE;
  auto block = std::make_unique<BYTE[]>(value->size());
  std::copy(value->begin(), value->end(), block.get());
  *length = static_cast<UINT>(value->size());
  *bytes = block.release();
  return TRUE;
}

BOOL CWinApp::WriteProfileInt(char const * section, char const * key, int value)
{
  return m_pSettings && m_pSettings->SetInt(section, key, value);
}

BOOL CWinApp::WriteProfileString(char const * section, char const * key, char const * value)
{
  if (!m_pSettings) return FALSE;
  if (key == nullptr) return m_pSettings->RemoveSection(section);
  return value != nullptr ? m_pSettings->SetText(section, key, value) : m_pSettings->Remove(section, key);
}

BOOL CWinApp::WriteProfileBinary(char const * section, char const * key, BYTE const * bytes, UINT length)
{
  return m_pSettings && m_pSettings->SetBinary(section, key, {reinterpret_cast<char const *>(bytes), length});
}

std::vector<zp::Setting> CWinApp::ListSettings()
{
  return m_pSettings ? m_pSettings->List() : std::vector<zp::Setting>();
}

CWinApp * AfxGetApp()
{
  return g_pApplication;
}
