// The lock under which a whole file is read, changed and replaced.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/file/descriptor_internal.h"

namespace zp {

// Holds an exclusive lock on the folder of a host file, for which it waits up to ten seconds. Where the file system knows no
// locks, none is held.
class FolderLock {
 public:
  explicit FolderLock(std::string const & hostFile);

  int GetError() const { return m_nError; }  // 0, or why the folder couldn't be opened or locked
  bool Sync() const;                         // makes renames in the folder durable

 private:
  Descriptor m_Folder;
  int m_nError;
};

// The file that a host path leads to, through links; the path itself where there is none.
std::string FollowLinks(std::string const & hostFile);

// The work of ReplaceFileDurablyIf, without a question where there is none, under a lock that the caller holds; 0 or the host's
// error number. The path follows no links.
using MayReplace = std::function<bool(std::string const & written)>;
int ReplaceLockedFile(FolderLock const & lock, std::string const & hostFile, std::string_view content,
                      MayReplace const & mayReplace = nullptr);

}  // namespace zp
