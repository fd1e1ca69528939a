// Files by their host names, through the table of host calls: what the commands ask of a name, and whole reads and writes from a
// file's begin on. What the system can't say is no missing file: it is raised.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <zpbase/platform/host_calls.h>

// The status of what the name leads to; none where there is nothing. Raises Failure.
std::optional<zp::HostStatus> StatusOf(std::string const & name);

bool FileExists(std::string const & name);
bool IsFolder(std::string const & name);
bool IsRegularFile(std::string const & name);

// The bytes of the file, 0 where there is none. Raises Failure.
unsigned long long SizeOf(std::string const & name);

// Whether the name is that of a link. Raises Failure.
bool IsLink(std::string const & name);

// Gives a file the permissions of another. Raises Failure.
void TakePermissions(std::string const & name, std::string const & other);

// Whether both lead to one file that exists. Raises Failure.
bool LeadToOneFile(std::string const & first, std::string const & second);

// The file that a link leads to; any other name as it is. Raises Failure.
std::string FollowedName(std::string const & name);

// Failed leaves the reason in errno.
enum class Removal { Removed, Missing, Failed };
Removal TryToRemove(std::string const & name);

// True if the file was there. Raises Failure.
bool RemoveFile(std::string const & name);

// Removes a file that nothing became of, if it is there; where it can't be removed that is told on standard error.
void DropFile(std::string const & name);

// A file that is read or written from its begin on. What a signal breaks off is done again; functions that give false or a
// negative number leave the reason in errno.
class HostFile {
 public:
  HostFile() = default;
  explicit HostFile(int standard) : m_nFile(standard), m_bBorrowed(true) {}  // 0 or 1, which stay open
  ~HostFile() { Close(); }
  HostFile(HostFile const &) = delete;
  HostFile & operator=(HostFile const &) = delete;

  bool Open(std::string const & name, unsigned int how, unsigned int mode = 0666);
  bool IsOpen() const { return m_nFile >= 0; }
  int Get() const { return m_nFile; }

  long Read(void * buffer, size_t count);  // 0 at the end
  bool Write(std::string_view bytes);      // all of them
  bool Close();

 private:
  int m_nFile = -1;
  bool m_bBorrowed = false;
};
