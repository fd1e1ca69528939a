// A file that is written piece by piece and takes its place whole, or not at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/unfinished_file.h"

// The bytes can't be kept, whatever they are.
class OutputFailure : public SystemFailure {
 public:
  using SystemFailure::SystemFailure;
};

// name is a host name; "-" stands for standard output. A file that exists is replaced by Commit, at once, and keeps its
// permissions; without Commit, and where a signal ends the program before, it stands as it was. A pipe or a device gets the
// pieces as they come. Raises OutputFailure, and other Failures from the looks at names.
class OutputFile {
 public:
  explicit OutputFile(std::string const & name);
  ~OutputFile();
  OutputFile(OutputFile const &) = delete;
  OutputFile & operator=(OutputFile const &) = delete;

  void Write(std::string_view bytes);

  // The bytes are in the file, and it has their length. Until Commit it can be read under the name.
  void Finish();
  std::string const & GetWrittenName() const { return m_strTemporary.empty() ? m_strTarget : m_strTemporary; }

  void Commit();

 private:
  [[noreturn]] void Fail(int error) const;
  bool TakeOver(zp::HostStatus const & former) const;
  void WriteGathered();

  std::string m_strName;
  std::string m_strTarget;     // what the name leads to
  std::string m_strTemporary;  // empty for a device and for standard output
  std::optional<UnfinishedFile> m_Unfinished;
  bool m_bDevice = false;
  std::string m_Gathered;
  HostFile m_File;
  unsigned long long m_nBytes = 0;  // that were given
};
