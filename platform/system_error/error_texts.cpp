// The texts of the system's error numbers.

#include <zpbase/platform/system_error.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

// Numbers as the published system error codes have them; those that this library meets.
struct ErrorText {
  DWORD nError;
  char const * pText;
};

constexpr ErrorText texts[] = {
    {0, "The operation succeeded."},
    {1, "The system has no such function."},
    {2, "The file does not exist."},
    {3, "The folder of this path does not exist."},
    {4, "Too many files are open."},
    {5, "Access was denied."},
    {6, "The file is not open."},
    {8, "There is not enough memory."},
    {13, "The data is not valid."},
    {15, "There is no such drive."},
    {17, "The file can't be moved to another device."},
    {18, "There are no more files."},
    {19, "The medium is write-protected."},
    {25, "A place outside the file was asked for."},
    {29, "The device can't be written."},
    {30, "The device can't be read."},
    {31, "The device does not work."},
    {32, "The file is in use by another program."},
    {33, "A part of the file is locked by another program."},
    {38, "The end of the file has been reached."},
    {39, "The disk is full."},
    {80, "The file exists already."},
    {87, "A parameter is not valid."},
    {112, "There is not enough space on the disk."},
    {123, "The name of the file or folder is not valid."},
    {131, "A place in front of the file's beginning was asked for."},
    {145, "The folder is not empty."},
    {161, "The path is not valid."},
    {183, "A file or folder of this name exists already."},
    {206, "The name is too long."},
    {267, "The name of the folder is not valid."},
};

char const * textOf(DWORD error)
{
  auto const * const found =
      std::find_if(std::begin(texts), std::end(texts), [error](ErrorText const & row) { return row.nError == error; });
  return found != std::end(texts) ? found->pText : nullptr;
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
