// The simulator's own search for a file among the job, work, pool and system directories.

#include <zpbase/text.h>

#include <zpbase/config.h>
#include <zpbase/platform/folders.h>
#include <zpbase/store.h>

namespace {

constexpr DWORD maxSearchedPath = 260;

bool takeIfThere(CString & found, CString const & candidate)
{
  if (!GPFile::Exists(candidate)) return false;
  found = candidate;
  return true;
}

bool searchSystem(CString & found, CString const & name)
{
  char path[maxSearchedPath];
  DWORD const length = SearchPathA(nullptr, name, nullptr, maxSearchedPath, path, nullptr);
  return length != 0 && length < maxSearchedPath && takeIfThere(found, CString(path));
}

bool locate(CString & found, CString const & name, bool asksSystem)
{
  if (name.Find('\\') != -1) return takeIfThere(found, name);
  return takeIfThere(found, job_path + name) || takeIfThere(found, workfile_path + name) ||
         takeIfThere(found, GetSystemPathPrefix() + name) || (asksSystem && searchSystem(found, name));
}

}  // namespace

int FindZephlowFile(CString & found, CString const & name)
{
  CString const wanted = name;
  found.Empty();
  if (FindExtension(wanted) != -1) return locate(found, wanted, true);
  return locate(found, wanted + GetUserExt(), false) || takeIfThere(found, poolfile_path + wanted + GetPoolExt()) ||
         takeIfThere(found, GetSystemPathPrefix() + wanted + GetSystemExt());
}
