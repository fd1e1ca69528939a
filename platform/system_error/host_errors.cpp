// What errno means to the platform: the cause of a file exception, and the system's error number.

#include <zpbase/platform/system_error.h>

#include <cerrno>

#include <zpbase/platform/exceptions.h>

namespace {

struct Meaning {
  int error;
  CFileException::Cause cause;
  SystemError systemError;
};

constexpr Meaning meanings[] = {
    {ENOENT, CFileException::fileNotFound, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, CFileException::badPath, ERROR_PATH_NOT_FOUND},
    {ENAMETOOLONG, CFileException::badPath, ERROR_PATH_NOT_FOUND},
    {ELOOP, CFileException::badPath, ERROR_PATH_NOT_FOUND},
    {EMFILE, CFileException::tooManyOpenFiles, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, CFileException::tooManyOpenFiles, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, CFileException::accessDenied, ERROR_ACCESS_DENIED},
    {EPERM, CFileException::accessDenied, ERROR_ACCESS_DENIED},
    {EROFS, CFileException::accessDenied, ERROR_WRITE_PROTECT},
    {EEXIST, CFileException::accessDenied, ERROR_ALREADY_EXISTS},
    {EISDIR, CFileException::accessDenied, ERROR_ACCESS_DENIED},
    {EBADF, CFileException::invalidFile, ERROR_INVALID_HANDLE},
    {ESPIPE, CFileException::badSeek, ERROR_SEEK},
    {EIO, CFileException::hardIO, ERROR_IO_DEVICE},
    {EWOULDBLOCK, CFileException::sharingViolation, ERROR_SHARING_VIOLATION},
    {ENOSPC, CFileException::diskFull, ERROR_DISK_FULL},
    {EDQUOT, CFileException::diskFull, ERROR_DISK_FULL},
    {EFBIG, CFileException::genericException, ERROR_FILE_TOO_LARGE},
};

Meaning const * meaningOf(int error)
{
  for (Meaning const & meaning : meanings)
    if (meaning.error == error) return &meaning;
  return nullptr;
}

}  // namespace

namespace zp {

int CauseOfError(int error)
{
  Meaning const * const meaning = meaningOf(error);
  return meaning != nullptr ? meaning->cause : CFileException::genericException;
}

LONG SystemErrorOfError(int error)
{
  Meaning const * const meaning = meaningOf(error);
  return meaning != nullptr ? meaning->systemError : ERROR_GEN_FAILURE;
}

}  // namespace zp
