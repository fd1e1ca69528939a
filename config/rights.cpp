// The rights levels: their names and marks, the user's level from the settings, and the level for loading.

#include <zpbase/config.h>

#include <iterator>

#include "config/cached_settings_internal.h"

namespace {

struct Right {
  char const * pName;
  char cMark;
};

constexpr Right g_Rights[] = {{"None", '*'}, {"Case", 'c'},    {"Job", 'J'},    {"User", 'W'},
                              {"Mgr", 'M'},  {"PoolMgr", 'P'}, {"SysMax", 'S'}, {"ProgDog", '#'}};
constexpr int k_Levels = static_cast<int>(std::size(g_Rights));
constexpr int k_UserLevel = 3;

int g_nLoadLevel = 0;

}  // namespace

int GetSysAuthority(CString const & name)
{
  for (int level = 0; level < k_Levels; ++level)
    if (name == g_Rights[level].pName) return level;
  return k_UserLevel;
}

char GetAuthorityAppendChar(int level)
{
  return level >= 0 && level < k_Levels ? g_Rights[level].cMark : '\0';
}

int GetUserAuthority()
{
  return zp::KeptValue(zp::GetCachedSettings().m_nAuthority, 0, [] {
    CString name;
    GetSysString(name, GetAuthSectionKey(), GetAuthorityKey(), CString());
    return name.IsEmpty() ? k_UserLevel : GetSysAuthority(name);
  });
}

int GetLoadAuthority()
{
  return g_nLoadLevel;
}

int SetLoadAuthority(int level)
{
  int const former = g_nLoadLevel;
  g_nLoadLevel = level;
  return former;
}
