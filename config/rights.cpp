// The rights levels: their names and marks, the user's level from the settings, and the level for loading.

#include <zpbase/config.h>

#include <iterator>

#include "config/cached_settings_internal.h"

namespace {

struct Right {
  char const * name;
  char mark;
};

constexpr Right rights[] = {{"None", '*'}, {"Case", 'c'},    {"Job", 'J'},    {"User", 'W'},
                            {"Mgr", 'M'},  {"PoolMgr", 'P'}, {"SysMax", 'S'}, {"ProgDog", '#'}};
constexpr int levels = static_cast<int>(std::size(rights));
constexpr int userLevel = 3;

int g_nLoadLevel = 0;

}  // namespace

int GetSysAuthority(CString const & name)
{
  for (int level = 0; level < levels; ++level)
    if (name == rights[level].name) return level;
  return userLevel;
}

char GetAuthorityAppendChar(int level)
{
  return level >= 0 && level < levels ? rights[level].mark : '\0';
}

int GetUserAuthority()
{
  return zp::KeptValue(zp::GetCachedSettings().authority, 0, [] {
    CString name;
    GetSysString(name, GetAuthSectionKey(), GetAuthorityKey(), CString());
    return name.IsEmpty() ? userLevel : GetSysAuthority(name);
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
