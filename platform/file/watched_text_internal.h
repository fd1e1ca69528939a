// The whole text of a file that other programs may replace at any time.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/file/descriptor_internal.h"
#include "platform/file/durable_file_internal.h"

namespace zp {

// Makes the folders that a host file needs; 0 or the host's error number.
int MakeFoldersFor(std::string const & hostFile);

class WatchedText {
 public:
  explicit WatchedText(std::string hostFile) : m_strFile(std::move(hostFile)) {}

  // Reads the file if it isn't the one read before, at the price of one fstat if it is. True if it was read anew. That the name
  // leads elsewhere because a folder or a link on its way was changed is noticed within a tenth of a second, all else at once.
  bool Refresh();

  std::string const & GetFile() const { return m_strFile; }
  std::string_view GetText() const { return m_Text; }  // empty for a missing file
  int GetError() const { return m_nError; }            // why an existing file can't be read, else 0

  // Replaces the file under a lock that the caller holds, and so the text; 0 or the host's error number.
  int Replace(FolderLock const & lock, std::string const & hostFile, std::string text);

 private:
  bool IsUnchanged(struct stat const & now) const;
  bool IsHeldUnchanged() const;
  bool Look();
  void Read();
  void Remember(struct stat const & now);

  std::string m_strFile;
  std::string m_Text;
  Descriptor m_Held;        // the file that was read
  long long m_nLooked = 0;  // when its name led to it last, in nanoseconds of the steady clock
  struct stat m_Stamp = {};
  int m_nError = 0;
  bool m_bKnown = false;  // the stamp is that of the text, and no later write can bear the same one
};

}  // namespace zp
