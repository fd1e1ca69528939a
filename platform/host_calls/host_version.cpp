// Reads the version out of what the host says of itself.

#include "platform/host_calls/host_version_internal.h"

#include <sys/utsname.h>

#include <charconv>
#include <string_view>

namespace zp {
namespace {

// The number at the head of text, which is moved behind it and one more character.
DWORD takeNumber(std::string_view & text)
{
  DWORD number = 0;
  char const * const end = text.data() + text.size();
  auto const [next, error] = std::from_chars(text.data(), end, number);
  text.remove_prefix(static_cast<size_t>(next - text.data()));
  if (error == std::errc() && !text.empty()) text.remove_prefix(1);
  return number;
}

}  // namespace

bool HostVersion(OSVERSIONINFOA & version)
{
  utsname host;
  if (uname(&host) != 0) return false;
  std::string_view release = host.release;
  version.dwMajorVersion = takeNumber(release);
  version.dwMinorVersion = takeNumber(release);
  version.dwBuildNumber = takeNumber(release);
  version.dwPlatformId = VER_PLATFORM_WIN32_NT;
  size_t const length = std::string_view(host.version).copy(version.szCSDVersion, sizeof version.szCSDVersion - 1);
  version.szCSDVersion[length] = '\0';
  return true;
}

}  // namespace zp
