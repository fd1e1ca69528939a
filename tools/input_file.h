// A file or standard input, read from its begin to its end.
#pragma once

#include <fstream>
#include <istream>
#include <string>

class InputFile {
 public:
  // name is a host name; "-" stands for standard input. Raises Failure for a folder and for what can't be opened.
  explicit InputFile(std::string const & name);

  std::istream & GetStream() { return *m_pStream; }

  // All of it. Raises Failure as soon as there are more than atMost bytes; what says what holds no more, such as "a record".
  std::string ReadAll(size_t atMost, std::string const & what);

  // Raises Failure if the reading has come to an end by an error.
  void RequireRead() const;

 private:
  std::string m_strName;
  std::ifstream m_File;
  std::istream * m_pStream;
};
