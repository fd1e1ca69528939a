#include "tests/faults/ProgramInside.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

namespace {

int fileOf(int descriptor)
{
  static int const files[] = {memfd_create("out", MFD_CLOEXEC), memfd_create("err", MFD_CLOEXEC)};
  return files[descriptor - 1];
}

}  // namespace

Silence::Silence() : m_Kept{dup(1), dup(2)}
{
  std::fflush(nullptr);
  for (int const i : {1, 2}) {
    [[maybe_unused]] int const failed = ftruncate(fileOf(i), 0);
    lseek(fileOf(i), 0, SEEK_SET);
    dup2(fileOf(i), i);
  }
}

Silence::~Silence()
{
  std::fflush(nullptr);
  for (int const i : {1, 2}) {
    dup2(m_Kept[static_cast<size_t>(i - 1)], i);
    close(m_Kept[static_cast<size_t>(i - 1)]);
  }
}

std::string Silence::Written(int descriptor)
{
  std::fflush(nullptr);
  std::string text(static_cast<size_t>(lseek(fileOf(descriptor), 0, SEEK_CUR)), '\0');
  return pread(fileOf(descriptor), text.data(), text.size(), 0) < 0 ? "" : text;
}
