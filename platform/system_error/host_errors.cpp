// What errno means to the platform: the cause of a file exception, and the system's error number.

#include <zpbase/platform/file.h>
#include <zpbase/platform/system_error.h>

#include <cerrno>

namespace {

struct Meaning {
  int nError;
  int nCause;
  LONG nSystem;
};

constexpr Meaning meanings[] = {
    {ENOENT, CFileException::fileNotFound, 2},
    {ENOTDIR, CFileException::badPath, 3},
    {ENAMETOOLONG, CFileException::badPath, 3},
    {ELOOP, CFileException::badPath, 3},
    {EMFILE, CFileException::tooManyOpenFiles, 4},
    {ENFILE, CFileException::tooManyOpenFiles, 4},
    {EACCES, CFileException::accessDenied, 5},
    {EPERM, CFileException::accessDenied, 5},
    {EROFS, CFileException::accessDenied, 19},
    {EEXIST, CFileException::accessDenied, 183},
    {EISDIR, CFileException::accessDenied, 5},
    {EBADF, CFileException::invalidFile, 6},
    {ESPIPE, CFileException::badSeek, 25},
    {EIO, CFileException::hardIO, 1117},
    {EWOULDBLOCK, CFileException::sharingViolation, 32},
    {ENOSPC, CFileException::diskFull, 112},
    {EDQUOT, CFileException::diskFull, 112},
};

Meaning const * meaningOf(int error)
{
  for (Meaning const & meaning : meanings)
    if (meaning.nError == error) return &meaning;
  return nullptr;
}

}  // namespace

namespace zp {

int CauseOfError(int error)
{
  Meaning const * const meaning = meaningOf(error);
  return meaning != nullptr ? meaning->nCause : CFileException::genericException;
}

LONG SystemErrorOfError(int error)
{
  Meaning const * const meaning = meaningOf(error);
  return meaning != nullptr ? meaning->nSystem : 31;
}

}  // namespace zp
