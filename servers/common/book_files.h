// Names of workbooks' files, and what is wrong with one before it is opened or written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace servers {

// The host's full path of an inside one, in the bytes that the host has, without "." and "..": what stands before a ".." is
// followed through links, as the host does. Other links stay, for a workbook is known by the name that it was opened by.
std::string HostPathOf(std::u16string_view path);

// The inside path of a host's.
std::u16string InsidePathOf(std::string const & file);

// Whether two names are one entry of a folder, or links that lead to one; not so for two hard links.
bool LeadToSameFile(std::string const & one, std::string const & other);

// Refuses what is no file, or isn't there.
void RequireFile(std::string const & file);

// By which another program's change of a file is known.
struct FileStamp {
  uint64_t device = 0;
  uint64_t number = 0;
  int64_t bytes = -1;  // of a file that isn't there
  int64_t seconds = 0;
  int64_t nanoseconds = 0;

  bool operator==(FileStamp const &) const = default;
  bool IsOfFile() const { return bytes >= 0; }
};
FileStamp StampOf(std::string const & file);

// Refuses a file that may not be written to.
void RequireWritable(std::string const & file);

// Refuses a file whose folder isn't there, and one that is.
void RequireNewFile(std::string const & file);
void RequireFolder(std::string const & file);

// Advice for the user that no exception carries: a sentence in UTF-8.
void Warn(std::string_view sentence);

}  // namespace servers
