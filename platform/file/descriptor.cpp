// Whole contents through an open file: what a call leaves over goes on with the next, and one that a signal has broken off is
// made again.

#include "platform/file/descriptor_internal.h"

#include <cerrno>

namespace zp {

int WriteAll(int file, std::string_view bytes)
{
  while (!bytes.empty()) {
    long const written = GetHostCalls().Write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
  }
  return 0;
}

int ReadAll(int file, std::string & bytes)
{
  char piece[65536];
  for (;;) {
    long const got = GetHostCalls().Read(file, piece, sizeof piece);
    if (got == 0) return 0;
    if (got > 0) bytes.append(piece, static_cast<size_t>(got));
    if (got < 0 && errno != EINTR) return errno;
  }
}

}  // namespace zp
