// A file that is written piece by piece and takes its place whole, or not at all.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

// name is a host name; "-" stands for standard output. A file that exists is replaced by Commit, at once, and keeps its
// permissions; without Commit it stands as it was. A pipe or a device gets the pieces as they come. Failures are raised.
class OutputFile {
 public:
  explicit OutputFile(std::string const & name);
  ~OutputFile();
  OutputFile(OutputFile const &) = delete;
  OutputFile & operator=(OutputFile const &) = delete;

  void Write(std::string_view bytes);
  void Commit();

 private:
  struct CloseFile {
    void operator()(std::FILE * file) const { std::fclose(file); }
  };

  [[noreturn]] void Fail(int error) const;
  void TakeOver() const;

  std::string m_strName;
  std::string m_strTarget;     // what the name leads to
  std::string m_strTemporary;  // empty for a device and for standard output
  std::unique_ptr<std::FILE, CloseFile> m_pFile;
};
