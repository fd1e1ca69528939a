// Directories: whether one is there, and making those on a path.

#include <zpbase/text.h>

#include <zpbase/messages.h>
#include <zpbase/platform/folders.h>
#include <zpbase/platform/resources.h>
#include <zpbase/platform/system_error.h>

namespace {

constexpr UINT directoryNotMadeID = 42915;

// False, with the message, for a directory that neither was there nor could be made.
bool makeDirectory(CString const & path)
{
  CSecurityAttributes security;
  if (CreateDirectoryA(path, &security)) return true;
  DWORD const error = GetLastError();
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED) return true;
  SystemErrorMsgBox(error, zp::FormatResource(directoryNotMadeID, {path.GetString()}));
  return false;
}

}  // namespace

int DirExists(CString const & dir)
{
  if (dir.IsEmpty()) return 0;
  CString const all = dir + (dir[dir.GetLength() - 1] == '\\' ? "*.*" : "\\*.*");
  HANDLE const search = FindFirstFileA(all, nullptr);
  if (search == INVALID_HANDLE_VALUE) return 0;
  FindClose(search);
  return 1;
}

int MakeParentDirectories(CString const & path)
{
  int separator = path.Find('\\');
  if (separator == -1) return 1;
  while ((separator = path.Find('\\', separator + 1)) != -1) {
    if (!makeDirectory(path.Left(separator))) return 0;
  }
  return makeDirectory(path);
}
