// Keeps the text of a file in memory and notices, with one system call, when the file has become another.

#include "platform/file/watched_text_internal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <filesystem>

namespace zp {
namespace {

constexpr long long nanosPerSecond = 1'000'000'000;

// File times advance in the kernel's ticks, 10 ms at most: two writes within one tick bear the same time.
constexpr long long tickNanos = 20'000'000;

bool sameTime(timespec const & a, timespec const & b)
{
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// How long the name of a file is taken to lead to the file that is held.
constexpr long long trustNanos = 100'000'000;

long long steadyNanos()
{
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * nanosPerSecond + now.tv_nsec;
}

bool isJustWritten(timespec const & written)
{
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  long long const seconds = now.tv_sec - written.tv_sec;
  if (seconds < -1 || seconds > 1) return false;
  long long const age = seconds * nanosPerSecond + (now.tv_nsec - written.tv_nsec);
  return age > -tickNanos && age < tickNanos;
}

int readWhole(int file, std::string & text)
{
  char piece[65536];
  for (;;) {
    ssize_t const got = read(file, piece, sizeof piece);
    if (got == 0) return 0;
    if (got > 0) text.append(piece, static_cast<size_t>(got));
    if (got < 0 && errno != EINTR) return errno;
  }
}

}  // namespace

int MakeFoldersFor(std::string const & hostFile)
{
  std::error_code error;
  std::filesystem::path const folder = std::filesystem::path(hostFile).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder, error);
  return error.value();
}

bool WatchedText::IsUnchanged(struct stat const & now) const
{
  return now.st_ino == m_Stamp.st_ino && now.st_dev == m_Stamp.st_dev && now.st_size == m_Stamp.st_size &&
         sameTime(now.st_mtim, m_Stamp.st_mtim) && sameTime(now.st_ctim, m_Stamp.st_ctim);
}

void WatchedText::Remember(struct stat const & now)
{
  m_Stamp = now;
  m_bKnown = !isJustWritten(now.st_mtim);
}

// A file that was replaced or removed has no name any more, and a renamed one another time of change.
bool WatchedText::IsHeldUnchanged() const
{
  struct stat now;
  return m_bKnown && m_Held.Get() >= 0 && steadyNanos() - m_nLooked < trustNanos && fstat(m_Held.Get(), &now) == 0 &&
         now.st_nlink != 0 && IsUnchanged(now);
}

bool WatchedText::Refresh()
{
  return !IsHeldUnchanged() && Look();
}

// Follows the name.
bool WatchedText::Look()
{
  struct stat now;
  if (stat(m_strFile.c_str(), &now) != 0) {
    now = {};
    m_nError = errno == ENOENT || errno == ENOTDIR ? 0 : errno;
    bool const wasThere = m_Stamp.st_ino != 0;
    m_Stamp = now;
    m_bKnown = false;
    m_Held.Close();
    m_Text.clear();
    return wasThere;
  }
  m_nLooked = steadyNanos();
  if (m_bKnown && IsUnchanged(now)) return false;
  Read();
  return true;
}

// Opening can't wait for the writer of a pipe, and only a regular file has a whole text.
void WatchedText::Read()
{
  m_Text.clear();
  m_Held = Descriptor(open(m_strFile.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (m_Held.Get() < 0) {
    m_nError = errno;
    m_bKnown = false;
    return;
  }
  struct stat now;
  m_nError = fstat(m_Held.Get(), &now) != 0 ? errno : 0;
  if (m_nError == 0) {
    Remember(now);
    m_nError = S_ISREG(now.st_mode) ? readWhole(m_Held.Get(), m_Text) : EINVAL;
  }
  if (m_nError == 0) return;
  m_Text.clear();
  m_Held.Close();
}

int WatchedText::Replace(FolderLock const & lock, std::string const & hostFile, std::string text)
{
  int const error = ReplaceLockedFile(lock, hostFile, text);
  if (error != 0) return error;
  m_Text = std::move(text);
  m_Held = Descriptor(open(hostFile.c_str(), O_RDONLY | O_CLOEXEC));
  m_nLooked = steadyNanos();
  struct stat now;
  if (fstat(m_Held.Get(), &now) == 0) Remember(now);
  return 0;
}

}  // namespace zp
