// The texts of the system's error numbers.

#include <zpbase/platform/system_error.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

struct ErrorText {
  SystemError error;
  char const * text;
};

constexpr ErrorText texts[] = {
    {ERROR_SUCCESS, "The operation succeeded."},
    {ERROR_INVALID_FUNCTION, "The system has no such function."},
    {ERROR_FILE_NOT_FOUND, "The file does not exist."},
    {ERROR_PATH_NOT_FOUND, "The folder of this path does not exist."},
    {ERROR_TOO_MANY_OPEN_FILES, "Too many files are open."},
    {ERROR_ACCESS_DENIED, "Access was denied."},
    {ERROR_INVALID_HANDLE, "The file is not open."},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory."},
    {ERROR_INVALID_DATA, "The data is not valid."},
    {ERROR_INVALID_DRIVE, "There is no such drive."},
    {ERROR_NOT_SAME_DEVICE, "The file can't be moved to another device."},
    {ERROR_NO_MORE_FILES, "There are no more files."},
    {ERROR_WRITE_PROTECT, "The medium is write-protected."},
    {ERROR_SEEK, "A place outside the file was asked for."},
    {ERROR_WRITE_FAULT, "The device can't be written."},
    {ERROR_READ_FAULT, "The device can't be read."},
    {ERROR_GEN_FAILURE, "The device does not work."},
    {ERROR_SHARING_VIOLATION, "The file is in use by another program."},
    {ERROR_LOCK_VIOLATION, "A part of the file is locked by another program."},
    {ERROR_HANDLE_EOF, "The end of the file has been reached."},
    {ERROR_HANDLE_DISK_FULL, "The disk is full."},
    {ERROR_FILE_EXISTS, "The file exists already."},
    {ERROR_INVALID_PARAMETER, "A parameter is not valid."},
    {ERROR_DISK_FULL, "There is not enough space on the disk."},
    {ERROR_INVALID_NAME, "The name of the file or folder is not valid."},
    {ERROR_NEGATIVE_SEEK, "A place in front of the file's beginning was asked for."},
    {ERROR_DIR_NOT_EMPTY, "The folder is not empty."},
    {ERROR_NOT_LOCKED, "This part of the file is not locked."},
    {ERROR_BAD_PATHNAME, "The path is not valid."},
    {ERROR_ALREADY_EXISTS, "A file or folder of this name exists already."},
    {ERROR_FILENAME_EXCED_RANGE, "The name is too long."},
    {ERROR_FILE_TOO_LARGE, "The file may not grow that large."},
    {ERROR_MORE_DATA, "There is more than the buffer holds."},
    {ERROR_NO_MORE_ITEMS, "There are no more items."},
    {ERROR_DIRECTORY, "The name of the folder is not valid."},
    {ERROR_NOT_REGISTRY_FILE, "The file is no registry file."},
    {ERROR_IO_DEVICE, "The device failed."},
};

char const * textOf(DWORD error)
{
  auto const * const found = std::find_if(std::begin(texts), std::end(texts),
                                          [error](ErrorText const & row) { return static_cast<DWORD>(row.error) == error; });
  return found != std::end(texts) ? found->text : nullptr;
}

}  // namespace

DWORD FormatMessageA(DWORD flags, void const *, DWORD error, DWORD, char * buffer, DWORD size, va_list *)
{
  char const * const text = (flags & FORMAT_MESSAGE_FROM_SYSTEM) != 0 ? textOf(error) : nullptr;
  if (text == nullptr) return 0;
  size_t const length = std::strlen(text);
  if ((flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0) {
    char * const block = strdup(text);
    if (block == nullptr) return 0;
    std::memcpy(buffer, &block, sizeof block);
  } else {
    if (length >= size) return 0;
    std::memcpy(buffer, text, length + 1);
  }
  return static_cast<DWORD>(length);
}

void LocalFree(void * block)
{
  std::free(block);
}
