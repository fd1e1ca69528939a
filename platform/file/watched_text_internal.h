// The whole text of a file that other programs may replace at any time.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/file/descriptor_internal.h"
#include "platform/file/durable_file_internal.h"

namespace zp {

class WatchedText {
 public:
  // changed is called when the text has become another since its last call, as soon as Refresh or Settle is.
  WatchedText(std::string hostFile, std::function<void()> changed) : m_strFile(std::move(hostFile)), m_Changed(std::move(changed))
  {
  }
  WatchedText(WatchedText const &) = delete;
  WatchedText & operator=(WatchedText const &) = delete;

  // Reads the file if it isn't the one read before, at the price of one look at its status if it is. That the name leads
  // elsewhere because a folder or a link on its way was changed is noticed within a tenth of a second, all else at once.
  void Refresh();

  // Makes the call of changed that is due, if one is; doesn't look at the file.
  void Settle();

  std::string const & GetFile() const { return m_strFile; }
  std::string_view GetText() const { return m_Text; }  // empty for a missing file
  int GetError() const { return m_nError; }            // why an existing file can't be read, else 0

  // Reads, edits and replaces the file under one lock, so that two programs can't lose each other's changes; folders that it
  // needs are made. edit finds the text refreshed, though not settled; it gives the changed one and true, or false to leave it.
  // settle is called when the text has been replaced: true if changed needn't be called for that. 0 or the host's error number.
  int Change(
      std::function<bool(std::string & changed)> const & edit, std::function<bool()> const & settle = [] { return false; });

 private:
  bool IsHeldUnchanged() const;
  void Look();
  int Replace(FolderLock const & lock, std::string const & hostFile, std::string text);
  std::string Read();
  void Remember(HostStatus const & now);

  std::string m_strFile;
  std::function<void()> m_Changed;
  std::string m_Text;
  Descriptor m_Held;       // the file that was read
  LONGLONG m_nLooked = 0;  // when its name led to it last, in nanoseconds of the steady clock
  HostStatus m_Stamp;
  int m_nError = 0;
  bool m_bDue = false;    // changed is still to be called
  bool m_bKnown = false;  // the stamp is that of the text, and no later write can bear the same one
};

}  // namespace zp
