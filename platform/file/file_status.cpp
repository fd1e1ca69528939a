// What the host says of names and files, and whether a file is as it was.

#include <zpbase/platform/file_status.h>

#include <cerrno>
#include <string>
#include <utility>

#include <zpbase/platform/paths.h>

#include "platform/file/file_internal.h"

namespace zp {
namespace {

constexpr LONGLONG nanosPerSecond = 1'000'000'000;

// File times advance in the kernel's ticks, 10 ms at most: two writes within one tick bear the same time.
constexpr LONGLONG tickNanos = 20'000'000;

void fillStatus(CFileStatus & status, HostStatus const & host, CString const & name)
{
  status.m_ctime = host.changed.seconds;
  status.m_mtime = host.modified.seconds;
  status.m_atime = host.accessed.seconds;
  status.m_size = host.size;
  status.m_attribute = CFileStatus::archive;
  if ((host.mode & ownerMayWrite) == 0) status.m_attribute |= CFileStatus::readOnly;
  if (host.kind == HostStatus::Folder) status.m_attribute |= CFileStatus::directory;
  status.m_szFullName = name;
}

}  // namespace

Presence GetPresence(char const * name, HostStatus & status)
{
  std::string hostPath;
  if (!ToHostPath(name, hostPath)) return Presence::Missing;
  if (GetHostCalls().GetStatusOf(hostPath.c_str(), status) == 0) return Presence::There;
  return SaysMissing(errno) ? Presence::Missing : Presence::Unknown;
}

Presence GetPresence(char const * name, CFileStatus & status)
{
  HostStatus host;
  Presence const presence = GetPresence(name, host);
  if (presence == Presence::There) fillStatus(status, host, CString(name));
  return presence;
}

bool IsSameFile(char const * first, char const * second)
{
  HostStatus one;
  HostStatus other;
  return GetPresence(first, one) == Presence::There && GetPresence(second, other) == Presence::There && one.IsSameFile(other);
}

bool AreDistinctFiles(char const * first, char const * second)
{
  HostStatus one;
  HostStatus other;
  Presence const a = GetPresence(first, one);
  Presence const b = GetPresence(second, other);
  if (a == Presence::Missing || b == Presence::Missing) return true;
  return a == Presence::There && b == Presence::There && !one.IsSameFile(other);
}

bool IsJustWritten(HostTime const & written)
{
  HostTime const now = GetHostCalls().WallClock();
  LONGLONG const seconds = now.seconds - written.seconds;
  if (seconds < -1 || seconds > 1) return false;
  LONGLONG const age = seconds * nanosPerSecond + (now.nanoseconds - written.nanoseconds);
  return age > -tickNanos && age < tickNanos;
}

bool IsUnchanged(HostStatus const & now, HostStatus const & before)
{
  return now.IsSameFile(before) && now.size == before.size && now.modified == before.modified && now.changed == before.changed;
}

void KeepTimesApart(char const * name, HostTime const & before)
{
  std::string hostPath;
  HostStatus now;
  if (!IsJustWritten(before) || !ToHostPath(name, hostPath) || GetHostCalls().GetStatusOf(hostPath.c_str(), now) != 0) return;
  if (std::pair(now.modified.seconds, now.modified.nanoseconds) > std::pair(before.seconds, before.nanoseconds)) return;
  bool const isLast = before.nanoseconds == nanosPerSecond - 1;
  HostTime const next{before.seconds + isLast, isLast ? 0 : before.nanoseconds + 1};
  GetHostCalls().SetTimesOf(hostPath.c_str(), nullptr, &next);
}

}  // namespace zp

BOOL CFile::GetStatus(CFileStatus & status) const
{
  zp::HostStatus host;
  if (m_hFile == hFileNull || zp::GetHostCalls().GetStatus(m_hFile, host) != 0) return FALSE;
  zp::fillStatus(status, host, m_strFileName);
  return TRUE;
}

BOOL CFile::GetStatus(char const * name, CFileStatus & status)
{
  return zp::GetPresence(name, status) == zp::Presence::There;
}
