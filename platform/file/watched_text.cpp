// Keeps the text of a file in memory and notices, with one system call, when the file has become another.

#include "platform/file/watched_text_internal.h"

#include <cerrno>

#include "platform/file/file_internal.h"

namespace zp {
namespace {

// How long the name of a file is taken to lead to the file that is held.
constexpr LONGLONG trustNanos = 100'000'000;

constexpr unsigned int newFolderMode = 0777;

// From the lowest folder that is there upwards. Another program may be making them at the same time; 0 or the host's error
// number.
int makeFoldersFor(std::string const & hostFile)
{
  size_t const slash = hostFile.rfind('/');
  if (slash == std::string::npos || slash == 0) return 0;
  std::string const folder = hostFile.substr(0, slash);
  if (IsFolder(folder)) return 0;
  if (int const error = makeFoldersFor(folder); error != 0) return error;
  if (GetHostCalls().MakeFolder(folder.c_str(), newFolderMode) == 0) return 0;
  int const error = errno;
  if (error != EEXIST) return error;
  return IsFolder(folder) ? 0 : ENOTDIR;
}

}  // namespace

void WatchedText::Remember(HostStatus const & now)
{
  m_Stamp = now;
  m_bKnown = !IsJustWritten(now.modified);
}

// A file that was replaced or removed has no name any more, and a renamed one another time of change.
bool WatchedText::IsHeldUnchanged() const
{
  HostStatus now;
  return m_bKnown && m_Held.Get() >= 0 && GetHostCalls().SteadyClock() - m_nLooked < trustNanos &&
         GetHostCalls().GetStatus(m_Held.Get(), now) == 0 && now.links != 0 && IsUnchanged(now, m_Stamp);
}

void WatchedText::Refresh()
{
  Look();
  Settle();
}

void WatchedText::Settle()
{
  if (m_bDue) m_Changed();
  m_bDue = false;
}

// Follows the name, and reads the text anew if the file may have become another. Most often only its time couldn't tell that it
// hasn't, and the text is the same.
void WatchedText::Look()
{
  if (IsHeldUnchanged()) return;
  HostStatus now;
  bool const isThere = GetHostCalls().GetStatusOf(m_strFile.c_str(), now) == 0;
  if (isThere) {
    m_nLooked = GetHostCalls().SteadyClock();
    if (m_bKnown && IsUnchanged(now, m_Stamp)) return;
  } else {
    m_nError = SaysMissing(errno) ? 0 : errno;
    m_Stamp = {};
    m_bKnown = false;
    m_Held.Close();
  }
  std::string text = isThere ? Read() : std::string();
  if (text == m_Text) return;
  m_Text = std::move(text);
  m_bDue = true;
}

// Opening can't wait for the writer of a pipe, and only a regular file has a whole text.
std::string WatchedText::Read()
{
  m_Held = Descriptor(GetHostCalls().Open(m_strFile.c_str(), hostRead | hostNoWait, 0));
  if (m_Held.Get() < 0) {
    m_nError = errno;
    m_bKnown = false;
    return {};
  }
  HostStatus now;
  std::string text;
  m_nError = GetHostCalls().GetStatus(m_Held.Get(), now) != 0 ? errno : 0;
  if (m_nError == 0) {
    Remember(now);
    m_nError = now.kind == HostStatus::File ? ReadAll(m_Held.Get(), text) : EINVAL;
  }
  if (m_nError == 0) return text;
  m_bKnown = false;
  m_Held.Close();
  return {};
}

int WatchedText::Replace(FolderLock const & lock, std::string const & hostFile, std::string text)
{
  int const error = ReplaceLockedFile(lock, hostFile, text);
  if (error != 0) return error;
  m_Text = std::move(text);
  m_bDue = true;
  m_Held = Descriptor(GetHostCalls().Open(hostFile.c_str(), hostRead, 0));
  m_nLooked = GetHostCalls().SteadyClock();
  HostStatus now;
  if (GetHostCalls().GetStatus(m_Held.Get(), now) == 0) Remember(now);
  return 0;
}

// A file that can't be read isn't replaced: its content would be lost.
int WatchedText::Change(std::function<bool(std::string & changed)> const & edit, std::function<bool()> const & settle)
{
  std::string const target = FollowLinks(m_strFile);
  if (int const error = makeFoldersFor(target); error != 0) return error;
  FolderLock const lock(target);
  if (lock.GetError() != 0) return lock.GetError();
  Look();
  if (m_nError != 0) return m_nError;
  std::string changed;
  if (!edit(changed) || changed == m_Text) return 0;
  bool const wasDue = m_bDue;
  int const error = Replace(lock, target, std::move(changed));
  if (error == 0) m_bDue = wasDue || !settle();
  return error;
}

}  // namespace zp
