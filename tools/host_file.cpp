// Names and files.

#include "tools/host_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include "tools/program.h"

namespace {

bool saysMissing(int error)
{
  return error == ENOENT || error == ENOTDIR;
}

// The call, again as long as a signal breaks it off.
template <class Call>
auto untilDone(Call const & call)
{
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

std::optional<zp::HostStatus> lookAt(std::string const & name, int (*look)(char const *, zp::HostStatus &))
{
  zp::HostStatus status;
  if (untilDone([&] { return look(name.c_str(), status); }) == 0) return status;
  if (saysMissing(errno)) return std::nullopt;
  int const error = errno;
  throw SystemFailure(fmt::format("{}: can't be looked at: {}", name, std::strerror(error)), error);
}

}  // namespace

std::optional<zp::HostStatus> StatusOf(std::string const & name)
{
  return lookAt(name, zp::GetHostCalls().GetStatusOf);
}

bool FileExists(std::string const & name)
{
  return StatusOf(name).has_value();
}

bool IsFolder(std::string const & name)
{
  auto const status = StatusOf(name);
  return status && status->kind == zp::HostStatus::Folder;
}

bool IsRegularFile(std::string const & name)
{
  auto const status = StatusOf(name);
  return status && status->kind == zp::HostStatus::File;
}

unsigned long long SizeOf(std::string const & name)
{
  auto const status = StatusOf(name);
  return status ? static_cast<unsigned long long>(status->size) : 0;
}

bool IsLink(std::string const & name)
{
  auto const itself = lookAt(name, zp::GetHostCalls().GetStatusOfLink);
  auto const target = StatusOf(name);
  return itself && (!target || !itself->IsSameFile(*target));
}

void TakePermissions(std::string const & name, std::string const & other)
{
  auto const status = StatusOf(other);
  if (status && untilDone([&] { return zp::GetHostCalls().SetModeOf(name.c_str(), status->mode); }) == 0) return;
  throw Failure(fmt::format("{}: can't get the permissions of {}: {}", name, other, std::strerror(errno)));
}

bool LeadToOneFile(std::string const & first, std::string const & second)
{
  auto const one = StatusOf(first);
  auto const other = StatusOf(second);
  return one && other && one->IsSameFile(*other);
}

std::string FollowedName(std::string const & name)
{
  std::unique_ptr<char, decltype(&std::free)> const target(zp::GetHostCalls().ResolveLinks(name.c_str()), &std::free);
  if (target) return target.get();
  if (saysMissing(errno)) return name;
  int const error = errno;
  throw SystemFailure(fmt::format("{}: can't be looked at: {}", name, std::strerror(error)), error);
}

Removal TryToRemove(std::string const & name)
{
  if (untilDone([&] { return zp::GetHostCalls().Remove(name.c_str()); }) == 0) return Removal::Removed;
  if (saysMissing(errno)) return Removal::Missing;
  if (errno != EROFS) return Removal::Failed;
  zp::HostStatus status;  // a file system that can't be written says so of names that aren't there, too
  bool const isMissing =
      untilDone([&] { return zp::GetHostCalls().GetStatusOfLink(name.c_str(), status); }) != 0 && saysMissing(errno);
  errno = EROFS;
  return isMissing ? Removal::Missing : Removal::Failed;
}

bool RemoveFile(std::string const & name)
{
  Removal const result = TryToRemove(name);
  if (result != Removal::Failed) return result == Removal::Removed;
  throw Failure(fmt::format("{}: can't be removed: {}; remove it", name, std::strerror(errno)));
}

void DropFile(std::string const & name)
{
  if (TryToRemove(name) != Removal::Failed) return;
  int const error = errno;
  try {
    Tell(fmt::format("{}: was left behind and can't be removed: {}; remove it", name, std::strerror(error)));
  } catch (std::bad_alloc const &) {
    TellMemoryRanOut();
  }
}

bool HostFile::Open(std::string const & name, unsigned int how, unsigned int mode)
{
  Close();
  m_bBorrowed = false;
  m_nFile = untilDone([&] { return zp::GetHostCalls().Open(name.c_str(), how, mode); });
  return IsOpen();
}

long HostFile::Read(void * buffer, size_t count)
{
  return untilDone([&] { return zp::GetHostCalls().Read(m_nFile, buffer, count); });
}

bool HostFile::Write(std::string_view bytes)
{
  while (!bytes.empty()) {
    long const written = untilDone([&] { return zp::GetHostCalls().Write(m_nFile, bytes.data(), bytes.size()); });
    if (written == 0) errno = EIO;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

bool HostFile::Close()
{
  int const file = std::exchange(m_nFile, -1);
  return file < 0 || m_bBorrowed || zp::GetHostCalls().Close(file) == 0;
}
