// A file that doesn't outlive the program where SIGINT, SIGTERM or SIGHUP end it.
#pragma once

#include <atomic>
#include <string>

class UnfinishedFile {
 public:
  // The file need not be there yet. A signal that is ignored, or held back by an InterruptGuard, stays so.
  explicit UnfinishedFile(std::string hostName);
  ~UnfinishedFile();
  UnfinishedFile(UnfinishedFile const &) = delete;
  UnfinishedFile & operator=(UnfinishedFile const &) = delete;

 private:
  static void RemoveAllAndEnd(int signal);
  static void Watch(int signal);

  static std::atomic<UnfinishedFile *> m_pFirst;

  std::string const m_strName;
  std::atomic<UnfinishedFile *> m_pNext;
};
